#include "Shared_Tools/PVXExport/Mesh/VertexKeys.h"

#include <algorithm>
#include <numeric>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/Shared_Tools/PVXExport/Mesh/MeshReference.h"
#include "Tests/Shared_Tools/PVXExport/Mesh/RandomMesh.h"

namespace {

class VertexKeysTest : public testing::Test {
protected:
    // The remap that changes nothing.
    std::vector<uint32_t> Same(size_t count) {
        std::vector<uint32_t> remap(count);
        std::iota(remap.begin(), remap.end(), 0u);
        return remap;
    }

    void ExpectAsReference(const MeshForm& form, const VertexRemaps& remaps) {
        m_Keys.Build(form, remaps);
        const reference::Vertices expected = reference::BuildVertices(form, remaps);
        EXPECT_TRUE(std::ranges::equal(m_Keys.GetVertices(), expected.keys));
        std::vector<uint32_t> cornerVertex;
        for (size_t i = 0; i < form.cFace.size() * 3; ++i)
            cornerVertex.push_back(m_Keys.GetVertexIndex(i / 3, i % 3));
        EXPECT_EQ(cornerVertex, expected.cornerVertex);
    }

    VertexKeys m_Keys;
};

MeshForm Triangle(uint16_t a, uint16_t b, uint16_t c) {
    MeshForm form;
    form.cVertex.resize(size_t{std::max({a, b, c})} + 1);
    form.cFace.resize(1);
    form.cFace[0].v = {a, b, c};
    return form;
}

TEST_F(VertexKeysTest, LowByteOfThePositionComesFirst) {
    const MeshForm form = Triangle(1, 0x0200, 0x0001 + 0x0100);
    m_Keys.Build(form, {Same(form.cVertex.size()), {}});
    EXPECT_EQ(m_Keys.GetVertexIndex(0, 0), 1u);
    EXPECT_EQ(m_Keys.GetVertexIndex(0, 1), 0u);
    EXPECT_EQ(m_Keys.GetVertexIndex(0, 2), 2u);
}

TEST_F(VertexKeysTest, AVertexIsNeverSharedAcrossShaders) {
    MeshForm form = Triangle(0, 1, 2);
    form.cFace.push_back(form.cFace[0]);
    const std::vector<uint32_t> same = Same(3);
    m_Keys.Build(form, {same, {}});
    EXPECT_EQ(m_Keys.GetVertices().size(), 3u);
    form.cFace[1].iShader = 1;
    m_Keys.Build(form, {same, {}});
    EXPECT_EQ(m_Keys.GetVertices().size(), 6u);
}

TEST_F(VertexKeysTest, ListsThatAreNotThereDoNotCount) {
    MeshForm form = Triangle(0, 1, 1);
    form.cFace[0].t = {5, 6, 7};
    form.cFace[0].n = {5, 6, 7};
    const std::vector<uint32_t> same = Same(2);
    m_Keys.Build(form, {same, {}});
    EXPECT_TRUE(std::ranges::equal(m_Keys.GetVertices(), std::vector<VertexKey>{{0, 0, 0, 0, 0}, {1, 0, 0, 0, 0}}));
}

struct KeyKind {
    RandomMeshKind mesh;
    int coordinates;
    bool weights;
};

constexpr KeyKind s_KeyKinds[] = {
    {{"small", 20, 40, 9, 1}, 10, false},           {{"weights", 300, 900, 50, 1}, 50, true},
    {{"no coordinates", 300, 900, 50, 1}, 0, true}, {{"low and high bytes", 5000, 20000, 50, 2}, 3000, true},
    {{"a hub", 2, 900, 50, 3}, 900, false},         {{"all but one hub", 70, 3000, 50, 3}, 20, true},
};

TEST_F(VertexKeysTest, AgreeWithThePlainForm) {
    RandomMesh random(3);
    for (const KeyKind& kind : s_KeyKinds) {
        SCOPED_TRACE(kind.mesh.pName);
        MeshForm form = random.Make(kind.mesh);
        form.cNormal.resize(form.cFace.size() % 2 ? 0 : 40);
        form.cTexVertex.resize(static_cast<size_t>(kind.coordinates));
        std::vector<uint32_t> positions = Same(form.cVertex.size());
        std::vector<uint32_t> weights;
        for (uint32_t& position : positions)
            position = static_cast<uint32_t>(random.Below(static_cast<int>(positions.size())));
        for (size_t i = 0; kind.weights && i < positions.size(); ++i)
            weights.push_back(static_cast<uint32_t>(random.Below(3)));
        for (MeshFace& face : form.cFace)
            for (size_t c = 0; c < 3; ++c) {
                face.n[c] = static_cast<uint16_t>(random.Below(40));
                face.t[c] = static_cast<uint16_t>(random.Below(std::max(kind.coordinates, 1)));
            }
        ExpectAsReference(form, {positions, weights});
    }
}

} // namespace
