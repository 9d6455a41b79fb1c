#include "Shared/Cross/RenderAnim/AnimListGeneric.h"

#include "Tests/Shared/Cross/RenderAnim/ModelFixture.h"

namespace {

const ra::Name s_Hip("hip");
const ra::Name s_Knee("knee");

TEST(Anim, ANameThatIsThereGivesItsIndex) {
    Anim anim;
    for (const ra::Name& name : {s_Hip, s_Knee, s_Hip}) {
        const int32_t index = name == s_Knee;
        EXPECT_EQ(anim.AddBone(name), index);
        EXPECT_EQ(anim.AddCamera(name), index);
        EXPECT_EQ(anim.FindCamera(name), index);
    }
    EXPECT_EQ(anim.GetBoneCount(), 2u);
    EXPECT_EQ(anim.FindBone(ra::Name("tail")), -1);
    for (const int32_t index : {-1, 2}) {
        EXPECT_THROW(anim.GetBone(index), std::runtime_error);
        EXPECT_THROW(anim.GetCamera(index), std::runtime_error);
        EXPECT_THROW(anim.GetControl(index), std::runtime_error);
    }
}

TEST(Anim, OfBonesOfOneNameTheFirstIsFound) {
    Anim anim;
    anim.SetBoneCount(3);
    for (int32_t i = 0; i < 3; ++i)
        anim.SetBoneName(i, i == 2 ? s_Knee : s_Hip);
    EXPECT_EQ(anim.FindBone(s_Hip), 0);
    anim.SetBoneName(2, ra::Name("foot"));
    EXPECT_EQ(anim.FindBone(s_Knee), -1);
    EXPECT_EQ(anim.FindBone(ra::Name("foot")), 2);
    anim.SetBoneCount(1);
    EXPECT_EQ(anim.FindBone(ra::Name("foot")), -1);
    EXPECT_THROW(anim.SetBoneName(0, ra::Name::INVALID), std::runtime_error);
}

// The exporter knows what it drives by index first, and by name once the meshes and shaders stand.
TEST(Anim, ControlsAreToldApartByAllThatTheyDrive) {
    Anim anim;
    const ControlRef opacity{.type = ControlTarget_Shader, .m_index = 0, .channel = 4};
    const ControlRef offset{.type = ControlTarget_Shader, .m_index = 0, .channel = 4, .property = 1};
    const ControlRef mesh{.type = ControlTarget_Mesh, .m_index = 0};
    EXPECT_EQ(anim.AddControl(ra::Name::INVALID, opacity), 0);
    EXPECT_EQ(anim.AddControl(ra::Name::INVALID, offset), 1);
    EXPECT_EQ(anim.AddControl(ra::Name::INVALID, mesh), 2);
    EXPECT_EQ(anim.AddControl(ra::Name::INVALID, offset), 1);
    anim.SetControlIndex(1, 5);
    anim.SetControlName(1, ra::Name("Glass"));
    EXPECT_EQ(anim.FindControl(ra::Name::INVALID, offset), -1);
    ControlRef bound = offset;
    bound.m_index = 5;
    EXPECT_EQ(anim.FindControl(ra::Name("Glass"), bound), 1);
    EXPECT_EQ(anim.GetControlCount(), 3u);
}

class AnimMaps : public ModelFixture {
protected:
    AnimMaps() {
        const ShaderRef clay = MakeShader("Clay");
        const ShaderRef mud = MakeShader("Mud");
        m_Model.SetName("walker");
        m_Model.SetMeshGroup(MakeGroup({MakeMesh("Body", {clay, mud}), MakeMesh("Wheel", {clay})}));
        m_Model.SetSkeleton(MakeChain({"hip", "knee"}));
        m_Model.AddCamera({.name = ra::Name("Front")});
        m_Model.SetAnimList(std::make_unique<AnimListGeneric>(m_Model));
        auto pAnim = std::make_unique<Anim>();
        pAnim->SetName("run");
        for (const char* pBone : {"tail", "knee"})
            pAnim->AddBone(ra::Name(pBone));
        pAnim->AddCamera(ra::Name("Back"));
        pAnim->AddCamera(ra::Name("Front"));
        pAnim->AddControl(ra::Name("Wheel"), {.type = ControlTarget_Mesh});
        pAnim->AddControl(ra::Name("Mud"), {.type = ControlTarget_Shader});
        pAnim->AddControl(ra::Name("Glass"), {.type = ControlTarget_Shader});
        m_Anim.Set(std::move(pAnim));
    }
    std::unique_ptr<AnimListNode> MakeNode(const char* pXRefModel, uint32_t boneCount = 2) const {
        auto pNode = std::make_unique<AnimListNode>(boneCount, 1);
        pNode->SetAnim(m_Anim);
        pNode->SetXRefModel(ra::Name(pXRefModel));
        return pNode;
    }
    AnimListNode& Add(std::unique_ptr<AnimListNode> pNode) {
        AnimListNode& node = *pNode;
        m_Model.GetAnimList()->AddNode(std::move(pNode));
        return node;
    }

    RenderModel m_Model;
    AnimRef m_Anim;
};

TEST_F(AnimMaps, AnOwnAnimationHasTheModelsBonesAndMarksItsShaders) {
    const AnimListNode& node = Add(MakeNode(nullptr));
    EXPECT_THAT(node.m_BoneMappings, testing::ElementsAre(0, 1));
    EXPECT_THAT(node.m_CameraMappings, testing::ElementsAre(1));
    EXPECT_THAT(node.m_ControlMappings, testing::ElementsAre(1, 1, -1));
    AnimList& list = *m_Model.GetAnimList();
    EXPECT_EQ(list.FindNode("run"), 0);
    EXPECT_EQ(list.FindNode("jump"), -1);
    m_Model.GetMeshGroup()->AddShader(MakeShader("Late"), true);
    list.Finalise();
    EXPECT_EQ(list.GetShaderMarkCount(), 3u);
    for (uint32_t shader = 0; shader < 4; ++shader)
        EXPECT_EQ(list.IsShaderAnimated(shader), shader == 1);
    EXPECT_THROW(list.AddNode(std::make_unique<AnimListNode>(0, 0)), std::runtime_error);
    EXPECT_THROW(list.GetNode(1), std::runtime_error);
}

TEST_F(AnimMaps, TheBonesOfAnotherModelsAnimationAreFoundByName) {
    EXPECT_THAT(Add(MakeNode("art/other")).m_BoneMappings, testing::ElementsAre(-1, 1));
    EXPECT_THROW(Add(MakeNode("art/other", 3)), std::runtime_error);
}

TEST_F(AnimMaps, ControlsThatCameLaterAreTold) {
    std::unique_ptr<AnimListNode> pNode = MakeNode(nullptr);
    m_Anim->AddControl(ra::Name("Body"), {.type = ControlTarget_Mesh});
    EXPECT_THAT(Add(std::move(pNode)).m_ControlMappings, testing::ElementsAre(1, 1, -1, 0));
    EXPECT_TRUE(
        ReportCapture::HasWarning("walker: Animation run has mismatching control counts (node = 3, anim = 4)!"));
}

} // namespace
