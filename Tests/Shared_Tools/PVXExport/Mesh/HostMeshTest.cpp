#include "Shared_Tools/PVXExport/Mesh/HostMesh.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/Shared/Cross/Debug/ReportCapture.h"
#include "Tests/Shared_Tools/PVXExport/Mesh/MeshReference.h"
#include "Tests/Shared_Tools/PVXExport/Mesh/RandomMesh.h"

namespace {

using testing::ElementsAre;

Mesh Triangles(int count, int positions, int texVertices) {
    Mesh mesh;
    mesh.setNumVerts(positions);
    mesh.setNumFaces(count);
    mesh.setNumTVerts(texVertices);
    if (texVertices > 0)
        mesh.setNumTVFaces(count);
    return mesh;
}

TEST(HostMesh, AMirroredNodeKeepsItsCorners) {
    Matrix3 tm = IdentityMatrix();
    EXPECT_THAT(HostMesh::GetCornerOrder(tm), ElementsAre(2, 1, 0));
    tm[1] = -tm[1];
    EXPECT_THAT(HostMesh::GetCornerOrder(tm), ElementsAre(0, 1, 2));
    tm[1] = {0, 0, 0};
    EXPECT_THAT(HostMesh::GetCornerOrder(tm), ElementsAre(2, 1, 0)) << "flat";
}

TEST(HostMesh, IndicesBeyondTheListsAreRefused) {
    MeshForm form;
    std::vector<uint8_t> used = {1};
    Mesh mesh = Triangles(1, 2, 2);
    mesh.faces[0].setVerts(0, 1, 2);
    EXPECT_THROW(HostMesh::ReadFaces(mesh, {2, 1, 0}, used, form), std::runtime_error);
    mesh.faces[0].setVerts(0, 1, 1);
    EXPECT_TRUE(HostMesh::ReadFaces(mesh, {2, 1, 0}, used, form));
    mesh.tvFace[0].setTVerts(0, 2, 0);
    EXPECT_THROW(TexCoordReader().Read(mesh, {2, 1, 0}, std::vector<SlotMapping>(1), used, form), std::runtime_error);
}

Face FaceWithHidden(uint32_t hiddenEdge, uint32_t a, uint32_t b, uint32_t c) {
    Face face;
    face.setVerts(a, b, c);
    face.setEdgeVisFlags(Face::AllEdges & ~hiddenEdge);
    return face;
}

TEST(HostMesh, FaceMappingStartsAtTheHiddenEdge) {
    using V = glm::vec2;
    const auto mapping = [](const Face& face) { return HostMesh::GetFaceMapping(face); };
    EXPECT_THAT(mapping(FaceWithHidden(Face::EdgeA, 5, 6, 4)), ElementsAre(V(1, 1), V(0, 0), V(1, 0)));
    EXPECT_THAT(mapping(FaceWithHidden(Face::EdgeA, 5, 6, 7)), ElementsAre(V(0, 0), V(1, 1), V(0, 1)));
    EXPECT_THAT(mapping(FaceWithHidden(Face::EdgeB, 4, 5, 6)), ElementsAre(V(1, 0), V(1, 1), V(0, 0)));
    EXPECT_THAT(mapping(FaceWithHidden(Face::EdgeC, 4, 5, 6)), ElementsAre(V(0, 0), V(1, 0), V(1, 1)))
        << "the corner before edge 2 is number 1, which lies below number 2";
    EXPECT_EQ(mapping(FaceWithHidden(0, 4, 5, 6)), mapping(FaceWithHidden(Face::EdgeC, 4, 5, 6)));
}

// The coordinates corner by corner, as they are told for the slowest case.
void ReadPlainly(const Mesh& mesh, const CornerOrder& order, std::span<const SlotMapping> mappings, MeshForm& form) {
    form.cTexVertex.assign(form.cFace.size() * 3, glm::vec2(0.0f));
    for (size_t i = 0; i < form.cFace.size(); ++i) {
        const SlotMapping& mapping = mappings[form.cFace[i].iShader];
        for (size_t c = 0; c < 3; ++c) {
            const glm::vec2 uv = mapping.faceMapped ? HostMesh::GetFaceMapping(mesh.faces[i])[order[c]]
                                                    : glm::vec2(mesh.tVerts[mesh.tvFace[i].t[order[c]]]);
            const auto at = static_cast<uint16_t>(i * 3 + c);
            for (int k = 0; k < 2; ++k)
                form.cTexVertex[at][k] = uv.x * mapping.matrix[0][k] + uv.y * mapping.matrix[1][k] +
                                         0.0f * mapping.matrix[2][k] + mapping.matrix[3][k];
            form.cFace[i].t[c] = at;
        }
    }
    std::vector<uint32_t> remap;
    reference::Unique(form.cTexVertex, remap);
    for (MeshFace& face : form.cFace)
        for (uint16_t& t : face.t)
            t = static_cast<uint16_t>(remap[t]);
}

struct CoordinateKind {
    const char* pName;
    int faces;
    int texVertices;
    bool faceMapped;  // the second slot
    bool ownMatrices; // each slot has its own
};

constexpr CoordinateKind s_Kinds[] = {
    {"one matrix", 500, 300, false, false},
    {"more vertices than corners", 10, 3000, false, false},
    {"a matrix for each slot", 500, 300, false, true},
    {"a face-mapped slot", 500, 300, true, false},
    {"the last size whose corners all have an index", 21845, 9000, false, false},
    {"corners beyond the indices", 21846, 9000, false, false},
    {"corners far beyond the indices", 50000, 9000, false, false},
};

TEST(TexCoordReader, AgreesWithThePlainForm) {
    RandomMesh random(11);
    TexCoordReader reader;
    for (const CoordinateKind& kind : s_Kinds) {
        SCOPED_TRACE(kind.pName);
        Mesh mesh = Triangles(kind.faces, 100, kind.texVertices);
        for (Point3& p : mesh.tVerts)
            p = {static_cast<float>(random.Below(50)) / 7, -static_cast<float>(random.Below(50)) / 7, 5};
        for (int i = 0; i < kind.faces; ++i) {
            Face& face = mesh.faces[static_cast<size_t>(i)];
            face.setVerts(static_cast<uint32_t>(random.Below(100)), static_cast<uint32_t>(random.Below(100)), 3);
            face.setEdgeVisFlags(static_cast<uint32_t>(random.Below(8)));
            face.setMatID(static_cast<uint16_t>(random.Below(3)));
            for (uint32_t& t : mesh.tvFace[static_cast<size_t>(i)].t)
                t = static_cast<uint32_t>(random.Below(kind.texVertices));
        }
        std::vector<SlotMapping> mappings(3);
        mappings[1].faceMapped = kind.faceMapped;
        for (int slot = 0; slot < 3; ++slot) {
            glm::mat4& m = mappings[static_cast<size_t>(slot)].matrix;
            m[0] = {0.5f, kind.ownMatrices ? 0.1f * static_cast<float>(slot) : 0.25f, 0, 0};
            m[3] = {-1.5f, 2.0f, 0, 1};
        }

        const CornerOrder order = {2, 1, 0};
        MeshForm form;
        std::vector<uint8_t> used(3, 0);
        ASSERT_TRUE(HostMesh::ReadFaces(mesh, order, used, form));
        MeshForm expected = form;
        ASSERT_TRUE(reader.Read(mesh, order, mappings, used, form));
        ReadPlainly(mesh, order, mappings, expected);
        EXPECT_TRUE(reference::BytesOf(form.cTexVertex) == reference::BytesOf(expected.cTexVertex));
        for (size_t i = 0; i < form.cFace.size(); ++i)
            ASSERT_EQ(form.cFace[i].t, expected.cFace[i].t) << "face " << i;
    }
}

} // namespace
