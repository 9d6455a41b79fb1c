#include "Tests/Shared_Tools/PVXExport/ExportFixture.h"

#include <cstring>

#include "Shared/Cross/Glaze/PrimSet.h"
#include "Shared/Cross/Glaze/VertexSet.h"
#include "Shared/Cross/RenderAnim/MeshGroup.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"
#include "Shared/Cross/RenderAnim/Shader.h"
#include "Shared_Tools/PVXExport/ModuleResources.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class MeshExport : public ExportTest {
protected:
    void SetUp() override { m_pPaint = &AddMaterial("Paint"); }

    // Exports what must go well, and hands out the mesh of that number.
    void WithMesh(const std::function<void(const ra::Mesh&)>& look, uint32_t index = 0) {
        EXPECT_EQ(Export(), 1);
        EXPECT_THAT(m_Messages, IsEmpty());
        WithModel([&](const RenderModel& model) { look(*model.GetMeshGroup()->GetMesh(index).GetData()); });
    }
    void ExpectFailure(const std::vector<std::string>& messages) {
        EXPECT_EQ(Export(), 0);
        EXPECT_EQ(m_Messages, messages);
        EXPECT_FALSE(IsThere("Foo.pvx"));
    }

    static std::vector<glm::vec3> Vectors(const ra::Mesh& mesh, gz::VertexComponent component) {
        const gz::VertexSet& vertices = *mesh.GetVertexSet(ra::Mesh::Poly_High);
        const auto* pSource = static_cast<const char*>(vertices.GetData(component));
        std::vector<glm::vec3> result(vertices.GetSize());
        for (size_t i = 0; i < result.size(); ++i)
            std::memcpy(&result[i], pSource + i * vertices.GetStride(), 12);
        return result;
    }
    // The side of the first triangle that is seen from its front, from the corners' order.
    static glm::vec3 Facing(const ra::Mesh& mesh) {
        const std::vector<glm::vec3> p = Vectors(mesh, gz::VC_Position);
        const auto indices = mesh.GetPrimSet(0, ra::Mesh::Poly_High)->GetIndices();
        return glm::normalize(glm::cross(p[indices[1]] - p[indices[0]], p[indices[2]] - p[indices[0]]));
    }

    Mtl* m_pPaint = nullptr;
};

TEST_F(MeshExport, AQuadInTheGamesAxes) {
    scene::Node& node = scene::AddMesh(m_Scene, "Body", MakeQuad(2.0f), m_pPaint);
    node.SetLocal({10, 20, 30});
    WithMesh([](const ra::Mesh& mesh) {
        EXPECT_STREQ(mesh.GetName(), "Body");
        EXPECT_THAT(Vectors(mesh, gz::VC_Position),
                    UnorderedElementsAre(glm::vec3(-10, 30, -20), glm::vec3(-12, 30, -20), glm::vec3(-12, 30, -22),
                                         glm::vec3(-10, 30, -22)));
        EXPECT_EQ(mesh.GetPolyCount(ra::Mesh::Poly_High), 2u);
        EXPECT_EQ(mesh.GetPolyCount(ra::Mesh::Poly_Low), 0u);
        EXPECT_EQ(mesh.GetVertexSet(ra::Mesh::Poly_High)->GetFormat(), 0x25u);
        EXPECT_THAT(mesh.GetBoundVolume().GetBox().centre, glm::vec3(-11, 30, -21));
        const gz::PrimSet& set = *mesh.GetPrimSet(0, ra::Mesh::Poly_High);
        EXPECT_EQ(set.GetRange(), (gz::VertexRange{0, 4}));
        EXPECT_STREQ(mesh.GetShader(0)->GetName(), "Paint");
        EXPECT_FALSE(mesh.IsSkinned());
        EXPECT_TRUE(mesh.GetChildSelection());
        EXPECT_EQ(mesh.GetMinDetail(), 0);
    });
}

TEST_F(MeshExport, AMirroredNodeFacesAsItsTwin) {
    scene::AddMesh(m_Scene, "Plain", MakeQuad(), m_pPaint);
    scene::AddMesh(m_Scene, "Mirrored", MakeQuad(), m_pPaint).SetLocal({0, 0, 0}, {1, 0, 0, 0}, {-1, 1, 1});
    glm::vec3 plain;
    WithMesh([&](const ra::Mesh& mesh) { plain = Facing(mesh); });
    WithMesh([&](const ra::Mesh& mesh) { EXPECT_EQ(Facing(mesh), plain); }, 1);
}

TEST_F(MeshExport, WithoutTextureVerticesThereIsNoComponentForThem) {
    Mesh mesh = MakeQuad();
    mesh.setNumTVerts(0);
    mesh.setNumTVFaces(0);
    scene::AddMesh(m_Scene, "Bare", std::move(mesh), m_pPaint);
    WithMesh([](const ra::Mesh& made) { EXPECT_EQ(made.GetVertexSet(ra::Mesh::Poly_High)->GetFormat(), 0x05u); });
}

TEST_F(MeshExport, PropertiesOfTheNodeGoWithIt) {
    scene::Node& node = scene::AddMesh(m_Scene, "Body", MakeQuad(), m_pPaint);
    node.GetUserProperties().Add("MeshMinDetail", "medium");
    node.GetUserProperties().Add("No_Child_Selection", "");
    scene::AddMesh(m_Scene, "Low", MakeQuad(), m_pPaint).GetUserProperties().Add("MeshMinDetail", "Low");
    WithMesh([](const ra::Mesh& mesh) {
        EXPECT_EQ(mesh.GetMinDetail(), 1);
        EXPECT_FALSE(mesh.GetChildSelection());
    });
    WithMesh([](const ra::Mesh& mesh) { EXPECT_EQ(mesh.GetMinDetail(), 0); }, 1);
}

TEST_F(MeshExport, ShadersSplitTheMesh) {
    scene::StandardSettings glass;
    glass.transparency = TRANSP_FILTER;
    Mesh mesh = MakeQuad();
    mesh.faces[0].setMatID(0);
    mesh.faces[1].setMatID(7); // beyond the slots: the last one
    Mtl& multi = m_Scene.Make<scene::MultiMaterial>(
        "Multi", std::vector<Mtl*>{&AddMaterial("Glass", glass), &AddMaterial("Unused"), m_pPaint});
    scene::AddMesh(m_Scene, "Body", std::move(mesh), &multi);
    WithMesh([](const ra::Mesh& made) {
        ASSERT_EQ(made.GetShaderCount(), 2u);
        EXPECT_STREQ(made.GetShader(0)->GetName(), "Paint") << "opaque ones come first";
        EXPECT_STREQ(made.GetShader(1)->GetName(), "Glass");
        EXPECT_EQ(made.GetVertexSet(ra::Mesh::Poly_High)->GetSize(), 6) << "no vertex has two shaders";
        EXPECT_EQ(made.GetPrimSet(0, ra::Mesh::Poly_High)->GetIndices().size(), 3u);
    });
}

TEST_F(MeshExport, SlotsOfOneMaterialShareItsShader) {
    Mesh mesh = MakeQuad();
    mesh.faces[1].setMatID(1);
    scene::AddMesh(m_Scene, "Body", std::move(mesh),
                   &m_Scene.Make<scene::MultiMaterial>("Multi", std::vector<Mtl*>{m_pPaint, m_pPaint}));
    scene::AddMesh(m_Scene, "Other", MakeQuad(), m_pPaint);
    EXPECT_EQ(Export(), 1);
    WithModel([](const RenderModel& model) {
        EXPECT_EQ(model.GetMeshGroup()->GetShaderCount(), 1u);
        EXPECT_EQ(model.GetMeshGroup()->GetMesh(0)->GetVertexSet(ra::Mesh::Poly_High)->GetSize(), 4);
    });
}

TEST_F(MeshExport, BadFacesGoWithoutAWordToTheArtist) {
    Mesh mesh = MakeQuad();
    mesh.setNumFaces(3);
    mesh.setNumTVFaces(3);
    mesh.faces[2].setVerts(1, 1, 2);
    scene::AddMesh(m_Scene, "Body", std::move(mesh), m_pPaint);
    WithMesh([](const ra::Mesh& made) { EXPECT_EQ(made.GetPolyCount(ra::Mesh::Poly_High), 2u); });
    EXPECT_THAT(ReadBytes("Foo.log"), HasSubstr("Removing invalid face 2"));
}

TEST_F(MeshExport, WhatIsWrongWithAMeshIsTold) {
    Mesh empty = MakeQuad();
    empty.setNumFaces(0);
    scene::AddMesh(m_Scene, "Empty", std::move(empty), m_pPaint);
    scene::AddMesh(m_Scene, "NoMesh", std::unique_ptr<scene::MeshSource>(), m_pPaint);
    Mesh thin = MakeQuad(0.0f);
    scene::AddMesh(m_Scene, "Thin", std::move(thin), m_pPaint);
    Mesh twoSided = MakeQuad();
    twoSided.faces[0].setVerts(0, 1, 2);
    twoSided.faces[1].setVerts(0, 2, 1);
    scene::AddMesh(m_Scene, "TwoSided", std::move(twoSided), m_pPaint);
    scene::AddMesh(m_Scene, "Good", MakeQuad(), m_pPaint);
    const std::string noNormals =
        "Error   : 'TwoSided': Can't build vertex normals. Make sure there is no vertices floating around and that "
        "there's no triangles with two vertices on the same spot.";
    ExpectFailure({"Warning : 'Empty': has no faces!", "Error   : 'Empty': Unable to build mesh!",
                   "Error   : 'NoMesh': Unable to node to a mesh!", "Error   : 'NoMesh': Unable to build mesh!",
                   "Error   : 'Thin': Can't build vertex set.", "Error   : 'Thin': Unable to build mesh!", noNormals,
                   "Error   : 'TwoSided': Unable to build mesh!"});
    EXPECT_THAT(ReadBytes("Foo.log"), HasSubstr("Face 0 does not have the smoothing property set!"));
}

Mesh MeshOfPositions(int count, bool equal) {
    Mesh mesh;
    mesh.setNumVerts(count);
    for (int i = 0; i < count; ++i)
        mesh.verts[static_cast<size_t>(i)] = {equal ? 0.0f : static_cast<float>(i), 0.0f, 0.0f};
    mesh.setNumFaces(1);
    mesh.verts[0] = {0, 1, 0};
    mesh.verts[1] = {0, 0, 1};
    mesh.verts[2] = {1, 0, 1};
    mesh.faces[0].setVerts(0, 1, 2);
    return mesh;
}

TEST_F(MeshExport, TooManyPositionsAreRefusedByTheirCount) {
    scene::AddMesh(m_Scene, "Full", MeshOfPositions(65536, false), m_pPaint);
    WithMesh([](const ra::Mesh& mesh) { EXPECT_EQ(mesh.GetVertexSet(ra::Mesh::Poly_High)->GetSize(), 3); });
    scene::AddMesh(m_Scene, "Over", MeshOfPositions(65537, true), m_pPaint);
    EXPECT_EQ(Export("Bar.pvx"), 0);
    EXPECT_THAT(m_Messages,
                ElementsAre("Error   : 'Over': Too many vertices!", "Error   : 'Over': Can't build vertex set.",
                            "Error   : 'Over': Unable to build mesh!"));
}

TEST_F(MeshExport, MeshesHangOnTheirBones) {
    scene::Node& hip = scene::AddBone(m_Scene, "Hip");
    scene::AddBone(m_Scene, "Knee", &hip);
    scene::AddMesh(m_Scene, "OnHip", MakeQuad(), m_pPaint, &hip);
    scene::AddMesh(m_Scene, "Itself", MakeQuad(), m_pPaint).SetBoneNodeOnOff(true);
    scene::AddMesh(m_Scene, "Free", MakeQuad(), m_pPaint);
    EXPECT_EQ(Export(), 1);
    WithModel([](const RenderModel& model) {
        const ra::MeshGroup& group = *model.GetMeshGroup();
        EXPECT_EQ(group.GetParentBone(0), 0);
        EXPECT_EQ(group.GetParentBone(1), 2);
        EXPECT_EQ(group.GetParentBone(2), -1);
        EXPECT_TRUE(group.GetBoundVolume().IsValid());
    });
    hip.GetUserProperties().Add("Remove", "");
    EXPECT_EQ(Export(), 0);
    EXPECT_THAT(m_Messages, ElementsAre("Error   : Mesh 'OnHip' assigned to invalid bone! (Removed from Skeleton?)"));
    EXPECT_TRUE(IsThere("Foo.pvx"));
}

TEST_F(MeshExport, FallingIndicesGetARangeThatHolds) {
    // Two islands; whatever the order of the vertices, one of these four single triangles has only falling indices.
    Mesh mesh;
    mesh.setNumVerts(18);
    mesh.setNumFaces(6);
    std::vector<Mtl*> subs;
    for (uint32_t i = 0; i < 6; ++i) {
        const std::array<uint32_t, 3> corners[] = {{0, 1, 2}, {0, 2, 1}, {1, 0, 2}, {1, 2, 0}, {2, 0, 1}, {2, 1, 0}};
        for (uint32_t c = 0; c < 3; ++c)
            mesh.verts[i * 3 + c] = {static_cast<float>(c == 1), static_cast<float>(c == 2), static_cast<float>(i)};
        mesh.faces[i].setVerts(i * 3 + corners[i][0], i * 3 + corners[i][1], i * 3 + corners[i][2]);
        mesh.faces[i].setMatID(static_cast<uint16_t>(i));
        subs.push_back(&AddMaterial("Mat" + std::to_string(i)));
    }
    scene::AddMesh(m_Scene, "Islands", std::move(mesh), &m_Scene.Make<scene::MultiMaterial>("Multi", subs));
    WithMesh([](const ra::Mesh& made) {
        for (uint32_t s = 0; s < made.GetShaderCount(); ++s) {
            const gz::VertexRange range = made.GetPrimSet(s, ra::Mesh::Poly_High)->GetRange();
            EXPECT_GE(range.count, 1);
            EXPECT_LE(range.start + range.count, 18);
        }
    });
}

} // namespace
