#include "Shared/Cross/RenderAnim/MeshGroup.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"
#include "Shared/Cross/RenderAnim/Shader.h"
#include "Tests/Shared_Tools/PVXExport/ExportFixture.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class MeshExport : public ExportTest {
protected:
    scene::Node& Add(const std::string& name, Mesh mesh) {
        return scene::AddMesh(m_Scene, name, std::move(mesh), m_pPaint);
    }
    // Exports what must go well, and hands out the meshes.
    void WithMeshes(const std::function<void(const ra::MeshGroup&)>& look) {
        EXPECT_EQ(Export(), 1);
        EXPECT_THAT(m_Messages, IsEmpty());
        WithModel([&](const RenderModel& model) { look(*model.GetMeshGroup()); });
    }
    static size_t CountVertices(const ra::Mesh& mesh) { return mesh.GetVertexSet(ra::Mesh::Poly_High)->GetSize(); }
    // The side of the first triangle that is seen from its front, from the corners' order.
    static glm::vec3 Facing(const ra::Mesh& mesh) {
        const auto p = ReadComponent<glm::vec3>(mesh, gz::VC_Position);
        const auto indices = mesh.GetPrimSet(0, ra::Mesh::Poly_High)->GetIndices();
        return glm::normalize(glm::cross(p[indices[1]] - p[indices[0]], p[indices[2]] - p[indices[0]]));
    }
};

TEST_F(MeshExport, AQuadInTheGamesAxes) {
    Add("Body", MakeQuad(2.0f)).SetLocal({10, 20, 30});
    WithMeshes([](const ra::MeshGroup& group) {
        const ra::Mesh& mesh = *group.GetMesh(0).GetData();
        EXPECT_STREQ(mesh.GetName(), "Body");
        EXPECT_THAT(ReadComponent<glm::vec3>(mesh, gz::VC_Position),
                    UnorderedElementsAre(glm::vec3(-10, 30, -20), glm::vec3(-12, 30, -20), glm::vec3(-12, 30, -22),
                                         glm::vec3(-10, 30, -22)));
        EXPECT_EQ(mesh.GetPolyCount(ra::Mesh::Poly_High), 2u);
        EXPECT_EQ(mesh.GetPolyCount(ra::Mesh::Poly_Low), 0u);
        EXPECT_EQ(mesh.GetVertexSet(ra::Mesh::Poly_High)->GetFormat(), 0x25u);
        EXPECT_EQ(mesh.GetBoundVolume().GetBox().centre, glm::vec3(-11, 30, -21));
        EXPECT_EQ(mesh.GetPrimSet(0, ra::Mesh::Poly_High)->GetRange(), (gz::VertexRange{0, 4}));
        EXPECT_STREQ(mesh.GetShader(0)->GetName(), "Paint");
        EXPECT_FALSE(mesh.IsSkinned());
        EXPECT_TRUE(mesh.GetChildSelection());
        EXPECT_EQ(mesh.GetMinDetail(), 0);
    });
}

TEST_F(MeshExport, AMirroredNodeFacesAsItsTwin) {
    AddQuad("Plain");
    AddQuad("Mirrored").SetLocal({0, 0, 0}, {1, 0, 0, 0}, {-1, 1, 1});
    WithMeshes([](const ra::MeshGroup& group) {
        EXPECT_EQ(Facing(*group.GetMesh(0).GetData()), Facing(*group.GetMesh(1).GetData()));
    });
}

TEST_F(MeshExport, WhatANodeSaysAndWhatItsMeshLacks) {
    Mesh mesh = MakeQuad();
    mesh.setNumTVerts(0);
    mesh.setNumTVFaces(0);
    mesh.setNumFaces(3);
    mesh.faces[2].setVerts(1, 1, 2); // taken out without a word to the artist
    scene::Node& node = Add("Body", std::move(mesh));
    node.GetUserProperties().Add("MeshMinDetail", "medium");
    node.GetUserProperties().Add("No_Child_Selection", "");
    AddQuad("Low").GetUserProperties().Add("MeshMinDetail", "Low");
    AddQuad("Fine").GetUserProperties().Add("MeshMinDetail", "high");
    WithMeshes([](const ra::MeshGroup& group) {
        EXPECT_EQ(group.GetMesh(0)->GetMinDetail(), 1);
        EXPECT_FALSE(group.GetMesh(0)->GetChildSelection());
        EXPECT_EQ(group.GetMesh(0)->GetVertexSet(ra::Mesh::Poly_High)->GetFormat(), 0x05u) << "no coordinates";
        EXPECT_EQ(group.GetMesh(0)->GetPolyCount(ra::Mesh::Poly_High), 2u);
        EXPECT_EQ(group.GetMesh(1)->GetMinDetail(), 0);
        EXPECT_EQ(group.GetMesh(2)->GetMinDetail(), 2);
    });
    EXPECT_THAT(ReadBytes("Foo.log"), HasSubstr("Removing invalid face 2"));
}

TEST_F(MeshExport, ShadersSplitTheMesh) {
    scene::StandardSettings glass;
    glass.transparency = TRANSP_FILTER;
    Mesh mesh = MakeQuad();
    mesh.faces[0].setMatID(0);
    mesh.faces[1].setMatID(7); // beyond the slots: the last one
    Mtl& multi = m_Scene.Make<scene::MultiMaterial>(
        "Multi", std::vector<Mtl*>{&AddMaterial("Glass", glass), &AddMaterial("Unused"), m_pPaint});
    scene::AddMesh(m_Scene, "Body", mesh, &multi);
    scene::AddMesh(m_Scene, "OneForAll", mesh,
                   &m_Scene.Make<scene::MultiMaterial>("Same", std::vector<Mtl*>{m_pPaint, m_pPaint}));
    WithMeshes([](const ra::MeshGroup& group) {
        const ra::Mesh& made = *group.GetMesh(0).GetData();
        ASSERT_EQ(made.GetShaderCount(), 2u);
        EXPECT_STREQ(made.GetShader(0)->GetName(), "Paint") << "opaque ones come first";
        EXPECT_STREQ(made.GetShader(1)->GetName(), "Glass");
        EXPECT_EQ(CountVertices(made), 6u) << "no vertex has two shaders";
        EXPECT_EQ(made.GetPrimSet(0, ra::Mesh::Poly_High)->GetIndices().size(), 3u);
        EXPECT_EQ(CountVertices(*group.GetMesh(1).GetData()), 4u);
        EXPECT_EQ(group.GetShaderCount(), 2u);
    });
}

TEST_F(MeshExport, WhatIsWrongWithAMeshIsTold) {
    Mesh empty = MakeQuad();
    empty.setNumFaces(0);
    Add("Empty", std::move(empty));
    scene::AddMesh(m_Scene, "NoMesh", std::unique_ptr<scene::MeshSource>(), m_pPaint);
    Add("Thin", MakeQuad(0.0f));
    Mesh twoSided = MakeQuad();
    twoSided.faces[0].setVerts(0, 1, 2);
    twoSided.faces[1].setVerts(0, 2, 1);
    Add("TwoSided", std::move(twoSided));
    AddQuad("Good");
    EXPECT_EQ(Export(), 0);
    EXPECT_THAT(
        m_Messages,
        ElementsAre("Warning : 'Empty': has no faces!", "Error   : 'Empty': Unable to build mesh!",
                    "Error   : 'NoMesh': Unable to node to a mesh!", "Error   : 'NoMesh': Unable to build mesh!",
                    "Error   : 'Thin': Can't build vertex set.", "Error   : 'Thin': Unable to build mesh!",
                    "Error   : 'TwoSided': Can't build vertex normals. Make sure there is no vertices floating around "
                    "and that there's no triangles with two vertices on the same spot.",
                    "Error   : 'TwoSided': Unable to build mesh!"));
    EXPECT_FALSE(IsThere("Foo.pvx"));
    EXPECT_THAT(ReadBytes("Foo.log"), HasSubstr("Face 0 does not have the smoothing property set!"));
}

TEST_F(MeshExport, AnEmptyPlaceAmongTheMaterialsIsAMistake) {
    scene::AddMesh(m_Scene, "Body", MakeQuad(),
                   &m_Scene.Make<scene::MultiMaterial>("Multi", std::vector<Mtl*>{nullptr, m_pPaint}));
    EXPECT_EQ(Export(), 0);
    EXPECT_THAT(m_Listener.GetText(), HasSubstr("pMtl"));
}

Mesh MeshOfPositions(int count, bool equal) {
    Mesh mesh;
    mesh.setNumVerts(count);
    for (int i = 0; i < count; ++i)
        mesh.verts[static_cast<size_t>(i)] = {equal ? 0.0f : static_cast<float>(i), 0.0f, 0.0f};
    mesh.setNumFaces(1);
    mesh.verts[1].y = mesh.verts[2].z = 1.0f;
    mesh.faces[0].setVerts(0, 1, 2);
    return mesh;
}

TEST_F(MeshExport, TooManyPositionsAreRefusedByTheirCount) {
    Add("Full", MeshOfPositions(65536, false));
    WithMeshes([](const ra::MeshGroup& group) { EXPECT_EQ(CountVertices(*group.GetMesh(0).GetData()), 3u); });
    Add("Over", MeshOfPositions(65537, true));
    EXPECT_EQ(Export(), 0);
    EXPECT_THAT(m_Messages,
                ElementsAre("Error   : 'Over': Too many vertices!", "Error   : 'Over': Can't build vertex set.",
                            "Error   : 'Over': Unable to build mesh!"));
}

TEST_F(MeshExport, MeshesHangOnTheirBones) {
    scene::Node& hip = scene::AddBone(m_Scene, "Hip");
    scene::AddBone(m_Scene, "Knee", &hip);
    AddQuad("OnHip", &hip);
    AddQuad("Itself").SetBoneNodeOnOff(true);
    AddQuad("Free");
    WithMeshes([](const ra::MeshGroup& group) {
        EXPECT_EQ(group.GetParentBone(0), 0);
        EXPECT_EQ(group.GetParentBone(1), 2);
        EXPECT_EQ(group.GetParentBone(2), -1);
        EXPECT_TRUE(group.GetBoundVolume().IsValid());
    });
    hip.GetUserProperties().Add("Remove", "");
    EXPECT_EQ(Export(), 0);
    EXPECT_THAT(m_Messages, ElementsAre("Error   : Mesh 'OnHip' assigned to invalid bone! (Removed from Skeleton?)"));
}

TEST_F(MeshExport, FallingIndicesGetARangeThatHolds) {
    // Whatever the order of the vertices, one of these single triangles has only falling indices.
    const std::array<uint32_t, 3> corners[] = {{0, 1, 2}, {0, 2, 1}, {1, 0, 2}, {1, 2, 0}, {2, 0, 1}, {2, 1, 0}};
    Mesh mesh;
    mesh.setNumVerts(18);
    mesh.setNumFaces(6);
    std::vector<Mtl*> subs;
    for (uint32_t i = 0; i < 6; ++i) {
        for (uint32_t c = 0; c < 3; ++c)
            mesh.verts[i * 3 + c] = {static_cast<float>(c == 1), static_cast<float>(c == 2), static_cast<float>(i)};
        mesh.faces[i].setVerts(i * 3 + corners[i][0], i * 3 + corners[i][1], i * 3 + corners[i][2]);
        mesh.faces[i].setMatID(static_cast<uint16_t>(i));
        subs.push_back(&AddMaterial("Mat" + std::to_string(i)));
    }
    scene::AddMesh(m_Scene, "Islands", std::move(mesh), &m_Scene.Make<scene::MultiMaterial>("Multi", subs));
    WithMeshes([](const ra::MeshGroup& group) {
        for (uint32_t s = 0; s < 6; ++s) {
            const gz::VertexRange range = group.GetMesh(0)->GetPrimSet(s, ra::Mesh::Poly_High)->GetRange();
            EXPECT_GE(range.count, 1);
            EXPECT_LE(range.start + range.count, 18);
        }
    });
}

} // namespace
