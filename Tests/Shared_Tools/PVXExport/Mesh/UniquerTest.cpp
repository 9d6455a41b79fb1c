#include "Shared_Tools/PVXExport/Mesh/Uniquer.h"

#include <cmath>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/Shared_Tools/PVXExport/Mesh/MeshReference.h"
#include "Tests/Shared_Tools/PVXExport/Mesh/RandomMesh.h"

namespace {

template <class T>
void ExpectAsReference(Uniquer& uniquer, std::vector<T> array) {
    std::vector<T> expected = array;
    std::vector<uint32_t> expectedRemap;
    std::vector<uint32_t> remap;
    reference::Unique(expected, expectedRemap);
    uniquer.Run(array, remap);
    EXPECT_TRUE(reference::BytesOf(array) == reference::BytesOf(expected));
    EXPECT_EQ(remap, expectedRemap);
}

TEST(Uniquer, OrdersByTheBytesAndNotByTheValues) {
    // In memory 1 is 00 00 80 3f, the next number 01 00 80 3f, 2 is 00 00 00 40 and -0 is 00 00 00 80.
    const float next = std::nextafter(1.0f, 2.0f);
    std::vector<glm::vec2> array = {{1, 0}, {2, 0}, {-0.0f, 0}, {0, 0}, {1, 0}, {next, 0}};
    std::vector<uint32_t> remap;
    Uniquer().Run(array, remap);
    EXPECT_EQ(reference::BytesOf(array),
              reference::BytesOf(std::vector<glm::vec2>{{0, 0}, {2, 0}, {-0.0f, 0}, {1, 0}, {next, 0}}));
    EXPECT_THAT(remap, testing::ElementsAre(3, 1, 2, 0, 3, 4));
}

// One object for all of them, so that nothing of a larger array may show in a smaller one. The first ones have more
// elements than the indices count.
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

} // namespace
