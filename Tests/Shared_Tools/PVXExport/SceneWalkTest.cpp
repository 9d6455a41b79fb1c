#include "Shared_Tools/PVXExport/SceneWalk.h"

#include <algorithm>

#include "Shared/Cross/RenderAnim/Skeleton.h"
#include "Shared_Tools/PVXExport/ExportContext.h"
#include "Shared_Tools/PVXExport/NodeRoles.h"
#include "Tests/Shared_Tools/PVXExport/ExportFixture.h"

namespace {

using testing::ElementsAre;

class SceneWalkTest : public ExportTest {
protected:
    void Walk() {
        SceneWalk::Collect(m_Scene.GetRootNode(), m_Context, m_Collected);
        SceneWalk::SortMeshNodes(m_Collected);
    }
    static std::vector<std::string> TextsOf(const auto& nodes, const auto& toText) {
        std::vector<std::string> texts;
        std::ranges::transform(nodes, std::back_inserter(texts), toText);
        return texts;
    }
    static std::vector<std::string> NamesOf(const std::vector<INode*>& nodes) {
        return TextsOf(nodes, [](const INode* pNode) { return pNode->GetName(); });
    }
    std::vector<std::string> BoneNames() const {
        return TextsOf(m_Collected.m_BoneNodes,
                       [](const BoneNode& bone) { return bone.name + " < " + std::to_string(bone.parent); });
    }
    std::vector<std::string> MeshNames() const {
        return TextsOf(m_Collected.m_MeshNodes, [](const MeshNode& mesh) { return mesh.pNode->GetName(); });
    }

    ExportContext m_Context;
    ExportScene m_Collected;
};

TEST_F(SceneWalkTest, EachNodeGetsItsRoles) {
    scene::Node& view = scene::AddCamera(m_Scene, "View", {}, nullptr, &AddQuad("Body"));
    AddQuad("Below", &view);
    scene::AddLight(m_Scene, "Sun", scene::LightClass::Directional);
    scene::AddPoint(m_Scene, "Muzzle");
    scene::AddDummy(m_Scene, "Group");
    scene::AddBone(m_Scene, "Hip");
    AddQuad("Hidden").SetRenderable(false);
    AddQuad("BoneAndMesh").SetBoneNodeOnOff(true);
    scene::AddDummy(m_Scene, "Biped").GetController().SetClassID(BIPSLAVE_CONTROL_CLASS_ID);
    scene::AddPoint(m_Scene, "Slave").GetController().SetClassID(BIPSLAVE_CONTROL_CLASS_ID);
    Walk();
    EXPECT_THAT(MeshNames(), ElementsAre("Body", "Below", "BoneAndMesh"));
    EXPECT_THAT(BoneNames(), ElementsAre("Hip < -1", "BoneAndMesh < -1", "Slave < -1")) << "a dummy never is one";
    EXPECT_THAT(NamesOf(m_Collected.m_CameraNodes), ElementsAre("View"));
    EXPECT_THAT(NamesOf(m_Collected.m_LightNodes), ElementsAre("Sun"));
    EXPECT_THAT(NamesOf(m_Collected.m_MarkerNodes), ElementsAre("Muzzle", "Slave"));
    EXPECT_FALSE(PVXUtil::IsBone(nullptr, 0));
    EXPECT_FALSE(PVXUtil::IsBone(m_Scene.GetRootNode(), 0));
}

TEST_F(SceneWalkTest, BonesGetNamesOfTheirOwn) {
    for (const char* pName : {"Bip01", "bip01", "BIP01(2)", "Bip01", "bip01(2)"})
        scene::AddBone(m_Scene, pName);
    Walk();
    EXPECT_THAT(BoneNames(),
                ElementsAre("Bip01 < -1", "bip01(2) < -1", "BIP01(2)(2) < -1", "Bip01(3) < -1", "bip01(2)(3) < -1"));
}

TEST_F(SceneWalkTest, ABonesNumberedNameIsTakenInAnyCase) {
    for (const char* pName : {"Arm", "Arm", "arm(2)"})
        scene::AddBone(m_Scene, pName);
    Walk();
    EXPECT_THAT(BoneNames(), ElementsAre("Arm < -1", "Arm(2) < -1", "arm(2)(2) < -1"));
}

TEST_F(SceneWalkTest, ABoneHangsOnItsNearestBone) {
    scene::Node& removed = scene::AddBone(m_Scene, "Removed", &scene::AddBone(m_Scene, "Hip"));
    removed.GetUserProperties().Add("Remove", "");
    scene::Node& group = scene::AddDummy(m_Scene, "Group", &removed);
    scene::AddBone(m_Scene, "Knee", &group).GetUserProperties().Add("stale", "no");
    scene::AddBone(m_Scene, "Free");
    scene::AddBone(m_Scene, "Idle").GetUserProperties().Add("Inactive", "");
    Walk();
    EXPECT_THAT(BoneNames(), ElementsAre("Hip < -1", "Knee < 0", "Free < -1", "Idle < -1"));
    EXPECT_FALSE(m_Collected.m_BoneNodes[1].visible);
    EXPECT_TRUE(m_Collected.m_BoneNodes[2].visible);
    EXPECT_FALSE(m_Collected.m_BoneNodes[3].visible);
    EXPECT_EQ(m_Collected.m_BoneNodes.Find(&removed), -1);
}

TEST_F(SceneWalkTest, MeshesComeByRenderPriority) {
    const std::pair<const char*, const char*> meshes[] = {{"A", "5"}, {"B", ""}, {"C", "5"}, {"D", "-1"}, {"E", "x"}};
    for (const auto& [pName, pPriority] : meshes)
        AddQuad(pName).GetUserProperties().Add("RenderPriority", pPriority);
    AddQuad("F");
    Walk();
    EXPECT_THAT(MeshNames(), ElementsAre("D", "B", "E", "F", "A", "C"));
}

TEST_F(SceneWalkTest, ADeepTreeIsNoProblem) {
    constexpr int depth = 20000;
    scene::Node* pParent = nullptr;
    for (int i = 0; i < depth; ++i)
        pParent = &scene::AddBone(m_Scene, "Link", pParent);
    Walk();
    ASSERT_EQ(m_Collected.m_BoneNodes.size(), static_cast<size_t>(depth));
    EXPECT_EQ(m_Collected.m_BoneNodes[depth - 1].parent, depth - 2);
    EXPECT_EQ(m_Collected.m_BoneNodes[depth - 1].name, "Link(20000)");
}

} // namespace
