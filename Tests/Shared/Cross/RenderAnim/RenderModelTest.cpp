#include "Tests/Shared/Cross/RenderAnim/ModelFixture.h"

namespace {

class RenderModelTest : public ModelFixture {
protected:
    void AddMarker(const char* pName, const char* pParent = nullptr) {
        Marker marker{.name = ra::Name(pName), .m_parentName = ra::Name(pParent)};
        marker.m_transform[3] = {1, 0, 0};
        m_Model.AddMarker(marker);
    }
    int32_t Find(const char* pName) const { return m_Model.FindMarker(ra::Name(pName)); }

    RenderModel m_Model;
};

TEST_F(RenderModelTest, BonesAreMarkersBehindTheMarkers) {
    EXPECT_EQ(Find("root"), -1); // nothing at all
    for (const char* pName : {"a", "b", "c"})
        AddMarker(pName);
    EXPECT_EQ(Find("root"), 0);
    m_Model.SetSkeleton(MakeChain({"hip", "knee"}));
    EXPECT_EQ(m_Model.GetMarkerCount(), 5);
    EXPECT_EQ(Find("b"), 1);
    EXPECT_EQ(Find("knee"), 4);
    EXPECT_EQ(Find("root"), 3);
    EXPECT_EQ(Find("tail"), -1);
    for (int i = 0; i < 100; ++i)
        EXPECT_THAT(Find("random"), testing::AllOf(testing::Ge(0), testing::Lt(5)));
}

TEST_F(RenderModelTest, MarkersHangOnBonesThatAreThere) {
    m_Model.SetSkeleton(MakeChain({"hip", "knee"}));
    AddMarker("free");
    AddMarker("held", "knee");
    AddMarker("lost", "tail");
    const glm::vec3 places[] = {{1, 0, 0}, {1, 2, 0}, {1, 0, 0}, {0, 1, 0}, {0, 2, 0}};
    for (int32_t i = 0; i < 5; ++i)
        EXPECT_EQ(m_Model.GetMarkerTransform(i)[3], places[i]) << i;
    EXPECT_THROW(m_Model.GetMarkerTransform(-1), std::runtime_error);
    EXPECT_THROW(m_Model.GetMarkerTransform(5), std::runtime_error);
}

TEST_F(RenderModelTest, TheMeshGroupGivesTheSelectionItsExtent) {
    m_Model.SetMeshGroup(MakeGroup({MakeMesh("box", {})}));
    const SelectionInfo& info = m_Model.GetSelectionInfo();
    EXPECT_EQ(info.mode, 1);
    EXPECT_EQ(info.extentX, 1);
    EXPECT_EQ(info.extentZ, 2);
    EXPECT_EQ(info.centreX, 0);
    EXPECT_EQ(info.centreZ, 1);
    EXPECT_EQ(info.box.halfExtents, glm::vec3(1, 1.5f, 2));
}

TEST_F(RenderModelTest, TheReferencePoseStartsFromColoursAndBones) {
    EXPECT_THROW(m_Model.BuildReferencePose(), std::runtime_error);
    const ShaderRef shader = MakeShader("skin");
    shader->SetChannelColour(CN_Diffuse, Colour{.b = 1, .g = 51, .r = 3, .a = 4});
    shader->SetChannelColour(CN_Opacity, Colour{.b = 1, .g = 2, .r = 3, .a = 102});
    m_Model.SetMeshGroup(MakeGroup({MakeMesh("box", {shader})}));
    m_Model.SetSkeleton(MakeChain({"hip"}));
    m_Model.BuildReferencePose();
    const ReferencePose* pPose = m_Model.GetReferencePose();
    ASSERT_EQ(pPose->GetShaderPoses().size(), 1u);
    EXPECT_FLOAT_EQ(pPose->GetShaderPoses()[0][CN_Diffuse].value, 0.2f);
    EXPECT_FLOAT_EQ(pPose->GetShaderPoses()[0][CN_Opacity].value, 0.4f);
    EXPECT_EQ(pPose->GetBoneMatrices()[0][3], glm::vec3(0, 1, 0));
    m_Model.BuildReferencePose();
    EXPECT_EQ(m_Model.GetReferencePose(), pPose);
}

} // namespace
