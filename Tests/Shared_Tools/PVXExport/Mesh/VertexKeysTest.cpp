#include "Shared_Tools/PVXExport/Mesh/VertexKeys.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "Tests/Shared_Tools/PVXExport/Mesh/MeshReference.h"
#include "Tests/Shared_Tools/PVXExport/Mesh/RandomMesh.h"

namespace {

struct KeyKind {
    RandomMeshKind mesh;
    int coordinates;
    bool weights;
};

// An odd number of faces has no normals.
constexpr KeyKind s_KeyKinds[] = {
    {{"small", 20, 40, 9, 1}, 10, false},
    {{"weights", 300, 900, 50, 1}, 50, true},
    {{"positions alone", 300, 901, 50, 1}, 0, false},
    {{"low and high bytes", 5000, 20000, 50, 2}, 3000, true},
    {{"a hub", 2, 900, 50, 3}, 900, false},
    {{"all but one hub", 70, 3000, 50, 3}, 20, true},
};

// One object for all, so that nothing of one mesh may show in the next.
TEST(VertexKeys, AgreeWithThePlainForm) {
    RandomMesh random(3);
    VertexKeys keys;
    for (const KeyKind& kind : s_KeyKinds) {
        SCOPED_TRACE(kind.mesh.pName);
        MeshForm form = random.Make(kind.mesh);
        form.cNormal.resize(form.cFace.size() % 2 ? 0 : 40);
        form.cTexVertex.resize(static_cast<size_t>(kind.coordinates));
        std::vector<uint32_t> positions(form.cVertex.size());
        std::vector<uint32_t> weights(kind.weights ? positions.size() : 0);
        for (uint32_t& position : positions)
            position = static_cast<uint32_t>(random.Below(kind.mesh.positions));
        for (uint32_t& weight : weights)
            weight = static_cast<uint32_t>(random.Below(3));
        for (MeshFace& face : form.cFace)
            for (size_t c = 0; c < 3; ++c) {
                face.n[c] = static_cast<uint16_t>(random.Below(40));
                face.t[c] = static_cast<uint16_t>(random.Below(std::max(kind.coordinates, 1)));
            }

        keys.Build(form, {positions, weights});
        const reference::Vertices expected = reference::BuildVertices(form, {positions, weights});
        EXPECT_TRUE(std::ranges::equal(keys.GetVertices(), expected.keys));
        std::vector<uint32_t> cornerVertex;
        for (size_t i = 0; i < form.cFace.size() * 3; ++i)
            cornerVertex.push_back(keys.GetVertexIndex(i / 3, i % 3));
        EXPECT_EQ(cornerVertex, expected.cornerVertex);
    }
}

} // namespace
