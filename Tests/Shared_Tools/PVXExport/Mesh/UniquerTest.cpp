#include "Shared_Tools/PVXExport/Mesh/Uniquer.h"

#include <cstring>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/Shared_Tools/PVXExport/Mesh/MeshReference.h"
#include "Tests/Shared_Tools/PVXExport/Mesh/RandomMesh.h"

namespace {

template <class T>
std::vector<char> BytesOf(const std::vector<T>& array) {
    std::vector<char> bytes(array.size() * sizeof(T));
    if (!bytes.empty())
        std::memcpy(bytes.data(), array.data(), bytes.size());
    return bytes;
}

template <class T>
void ExpectAsReference(Uniquer& uniquer, std::vector<T> array) {
    std::vector<T> expected = array;
    std::vector<uint32_t> expectedRemap;
    std::vector<uint32_t> remap;
    reference::Unique(expected, expectedRemap);
    uniquer.Run(array, remap);
    EXPECT_EQ(BytesOf(array), BytesOf(expected));
    EXPECT_EQ(remap, expectedRemap);
}

TEST(Uniquer, OrdersByTheBytesAndNotByTheValues) {
    // In memory 1 is 00 00 80 3f, 2 is 00 00 00 40 and -0 is 00 00 00 80.
    std::vector<glm::vec2> array = {{1, 0}, {2, 0}, {-0.0f, 0}, {0, 0}, {1, 0}};
    std::vector<uint32_t> remap;
    Uniquer().Run(array, remap);
    EXPECT_EQ(BytesOf(array), BytesOf(std::vector<glm::vec2>{{0, 0}, {2, 0}, {-0.0f, 0}, {1, 0}}));
    EXPECT_THAT(remap, testing::ElementsAre(3, 1, 2, 0, 3));
}

TEST(Uniquer, KeepsWhatDiffersInOneBit) {
    std::vector<glm::vec3> array = {{1, 1, 1}, {1, 1, std::nextafter(1.0f, 2.0f)}, {1, 1, 1}};
    std::vector<uint32_t> remap;
    Uniquer().Run(array, remap);
    EXPECT_EQ(array.size(), 2u);
    EXPECT_EQ(remap[0], remap[2]);
    EXPECT_NE(remap[0], remap[1]);
}

// One object for all of them, so that nothing of a larger array may show in a smaller one.
TEST(Uniquer, AgreesWithAPlainSortOfPairs) {
    Uniquer uniquer;
    RandomMesh random(1);
    for (const int size : {70000, 0, 1, 2, 15, 16, 17, 18, 33, 300, 5000}) {
        for (const int grid : {1, 2, 40, 1 << 20}) {
            SCOPED_TRACE(testing::Message() << size << " elements, grid " << grid);
            const auto positions = random.Make({"", size, 0, grid, 0}).cVertex;
            ExpectAsReference(uniquer, positions);
            std::vector<glm::vec2> coordinates;
            std::vector<VertexWeight> weights;
            for (const glm::vec3& p : positions) {
                coordinates.push_back({p.x, p.y});
                weights.push_back({{p.z, p.y, p.x}, {static_cast<uint8_t>(random.Below(3)), 1, 2, 255}});
            }
            ExpectAsReference(uniquer, coordinates);
            ExpectAsReference(uniquer, weights);
        }
    }
}

TEST(Uniquer, CountsIn16Bits) {
    std::vector<glm::vec3> array;
    array.reserve(65538);
    for (int i = 0; i < 65538; ++i)
        array.push_back({static_cast<float>(i), 0, 0});
    std::vector<uint32_t> remap;
    Uniquer().Run(array, remap);
    EXPECT_EQ(array.size(), 65538u);
    EXPECT_EQ(std::ranges::count(remap, 0u), 2);
    EXPECT_EQ(*std::ranges::max_element(remap), 65535u);
}

} // namespace
