#include "Tests/Shared/Cross/RenderAnim/ModelFixture.h"

namespace {

class MeshGroupTest : public ModelFixture {
protected:
    ra::MeshGroup m_Group;
};

TEST_F(MeshGroupTest, SettingMeshesGathersTotalsAndShaders) {
    const ShaderRef red = MakeShader("red");
    const ShaderRef blue = MakeShader("blue");
    m_Group.SetMeshCount(3);
    m_Group.SetXRefName(0, ra::Name("art/other"));
    m_Group.SetMesh(0, MakeMesh("far", {blue}));
    m_Group.SetMesh(1, MakeMesh("near", {red}, 5));
    EXPECT_EQ(m_Group.GetPolyCount(ra::Mesh::Poly_High), 2u + 3);
    ASSERT_EQ(m_Group.GetShaderCount(), 2u);
    EXPECT_EQ(m_Group.GetShader(0), blue);
    EXPECT_FALSE(m_Group.IsShaderOwned(0)); // the other model has it
    EXPECT_TRUE(m_Group.IsShaderOwned(1));
    m_Group.SetMesh(2, MakeMesh("both", {red, blue}));
    EXPECT_EQ(m_Group.GetShaderCount(), 2u);
    EXPECT_TRUE(m_Group.IsShaderOwned(0));
    EXPECT_EQ(m_Group.FindShader("red"), 1);
    EXPECT_EQ(m_Group.FindShader("Red"), 1);
    EXPECT_EQ(m_Group.FindShader("green"), -1);
    m_Group.AddShader(MakeShader("Red"), true);
    EXPECT_EQ(m_Group.FindShader("Red"), 2);
    EXPECT_EQ(m_Group.FindShader("RED"), 1);
    EXPECT_FALSE(m_Group.IsSkinned());
    EXPECT_THROW(m_Group.SetMesh(0, MeshRef()), std::runtime_error);
    EXPECT_THROW(m_Group.SetParentBone(3, 0), std::runtime_error);
}

TEST_F(MeshGroupTest, MeshesAreFoundByTheirFirstName) {
    m_Group.SetMeshCount(3);
    m_Group.SetMeshName(1, ra::Name("wheel"));
    m_Group.SetMeshName(2, ra::Name("wheel"));
    EXPECT_EQ(m_Group.FindMesh(ra::Name("wheel")), 1);
    m_Group.SetMeshName(0, ra::Name("wheel"));
    EXPECT_EQ(m_Group.FindMesh(ra::Name("wheel")), 0);
    EXPECT_EQ(m_Group.FindMesh(ra::Name("door")), -1);
}

TEST_F(MeshGroupTest, SkinningIsBoundByBoneNames) {
    const MeshRef mesh = MakeMesh("skin", {});
    mesh->SetSkinnedTransformCount(2);
    mesh->SetSkinnedTransform(0, ra::Name("knee"), 7);
    mesh->SetSkinnedTransform(1, ra::Name("tail"), 8);
    m_Group.SetMeshCount(1);
    m_Group.SetMesh(0, mesh);
    m_Group.SetMeshName(0, ra::Name("skin"));
    EXPECT_TRUE(m_Group.IsSkinned());
    EXPECT_EQ(m_Group.GetSkinnedBone(0, 0), -1);
    m_Group.BindSkinning(*MakeChain({"hip", "knee"}), "Walker");
    EXPECT_EQ(m_Group.GetSkinnedBone(0, 0), 1);
    EXPECT_EQ(m_Group.GetSkinnedBone(0, 1), -1);
    EXPECT_TRUE(
        ReportCapture::HasWarning("'Walker': Mesh 'skin' requires bone 'tail' for skinning, but it is missing!"));
}

TEST_F(MeshGroupTest, MeshesAreFoundByWhateverNameTheyHave) {
    const MeshRef mesh = MakeMesh("Arm.L:2\\x", {});
    MeshRef found;
    EXPECT_TRUE(found.Find("arm.l:2\\X"));
    EXPECT_EQ(found, mesh);
}

} // namespace
