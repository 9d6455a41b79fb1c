#include "Host/Scene/Node.h"

#include "Host/Sdk/Core.h"
#include "Tests/Host/Scene/SceneFixture.h"

#include <glm/gtc/constants.hpp>
#include <gtest/gtest.h>

#include <set>

namespace {

using scene::Node;
using scene::Scene;

TEST(SceneTree, ChildrenKeepTheirOrderAndTheRootIsANode) {
    Scene scene;
    Node& a = scene.AddNode("a");
    Node& b = scene.AddNode("b");
    Node& c = scene.AddNode("c", &a);
    INode& root = *scene.GetRootNode();
    EXPECT_TRUE(root.IsRootNode());
    EXPECT_EQ(root.GetParentNode(), nullptr);
    ASSERT_EQ(root.NumberOfChildren(), 2);
    EXPECT_EQ(root.GetChildNode(0), &a);
    EXPECT_EQ(root.GetChildNode(1), &b);
    EXPECT_EQ(root.GetChildNode(2), nullptr);
    EXPECT_EQ(root.GetChildNode(-1), nullptr);
    EXPECT_EQ(c.GetParentNode(), &a);
    EXPECT_FALSE(c.IsRootNode());
    EXPECT_EQ(scene.FindNode("c"), &c);
    EXPECT_EQ(scene.FindNode("C"), nullptr);
}

TEST(SceneTree, AttachRefusesCyclesAndSecondParents) {
    Scene scene;
    Node& a = scene.MakeNode("a");
    Node& b = scene.MakeNode("b");
    Node& c = scene.MakeNode("c");
    EXPECT_FALSE(scene.Attach(a, a));
    EXPECT_TRUE(scene.Attach(a, b));
    EXPECT_TRUE(scene.Attach(b, c));
    EXPECT_FALSE(scene.Attach(c, a));
    EXPECT_FALSE(scene.Attach(a, c));
    EXPECT_FALSE(scene.Attach(a, scene.GetRoot()));
    EXPECT_TRUE(scene.Attach(scene.GetRoot(), a));
    EXPECT_EQ(a.NumberOfChildren(), 1);
}

TEST(SceneNode, UserPropertiesIgnoreTheCaseOfKeys) {
    Scene scene;
    Node& node = scene.AddNode("n");
    node.GetUserProperties().Add("RenderPriority", " +12abc");
    node.GetUserProperties().Add("renderpriority", "13");
    node.GetUserProperties().Add("Empty", "");
    node.GetUserProperties().Add("Huge", "99999999999");
    int number = 5;
    std::string text = "old";
    EXPECT_TRUE(node.UserPropExists("RENDERPRIORITY"));
    EXPECT_FALSE(node.UserPropExists("Render"));
    EXPECT_TRUE(node.GetUserPropInt("renderPriority", number));
    EXPECT_EQ(number, 12);
    for (const char* pKey : {"Empty", "Huge", "Missing"})
        EXPECT_FALSE(node.GetUserPropInt(pKey, number)) << pKey;
    EXPECT_EQ(number, 12);
    EXPECT_FALSE(node.GetUserPropString("Missing", text));
    EXPECT_EQ(text, "old");
    EXPECT_TRUE(node.GetUserPropString("empty", text));
    EXPECT_EQ(text, "");
}

TEST(SceneNode, VisibilityRunsStraightBetweenKeys) {
    Scene scene;
    Node& node = scene.AddNode("n");
    EXPECT_EQ(node.GetVisibility(0), 1.0f);
    node.SetVisibility(scene::FloatTrack({{200, 0.0f}, {100, 1.0f}, {300, 0.0f}, {300, 0.5f}}));
    const std::pair<TimeValue, float> cases[] = {{-5, 1.0f},  {100, 1.0f}, {150, 0.5f}, {200, 0.0f},
                                                 {299, 0.0f}, {300, 0.5f}, {9999, 0.5f}};
    for (const auto& [t, value] : cases)
        EXPECT_EQ(node.GetVisibility(t), value) << t;
}

TEST(SceneTransforms, AreWorldSpaceWithTheOffsetForTheObject) {
    Scene scene;
    Node& parent = scene.AddNode("p");
    Node& child = scene.AddNode("c", &parent);
    const glm::dquat quarter = glm::angleAxis(glm::half_pi<double>(), glm::dvec3(0, 0, 1));
    parent.SetLocal({1, 2, 3}, quarter, {2, 2, 2});
    child.SetLocal({1, 0, 0});
    child.SetObjectOffset(scene::ComposeTransform({0, 0, 5}, {1, 0, 0, 0}, {1, 1, 1}));
    // X turns into Y, doubled.
    EXPECT_EQ(GetRow(child.GetNodeTM(0), 3), Point3(1, 4, 3));
    EXPECT_EQ(TransformPoint({1, 0, 0}, child.GetNodeTM(0)), Point3(1, 6, 3));
    EXPECT_EQ(GetRow(child.GetObjectTM(0), 3), Point3(1, 4, 13));
    EXPECT_EQ(child.GetObjTMAfterWSM(0), child.GetObjectTM(0));
    Matrix3 target(7.0f);
    EXPECT_FALSE(parent.GetTargetTM(0, target));
    EXPECT_EQ(target, Matrix3(7.0f));
    parent.SetTarget(&child);
    EXPECT_TRUE(parent.GetTargetTM(0, target));
    EXPECT_EQ(target, child.GetNodeTM(0));
}

TEST(SceneTransforms, ALaterChangeReachesTheChildren) {
    Scene scene;
    Node& parent = scene.AddNode("p");
    Node& child = scene.AddNode("c", &parent);
    EXPECT_EQ(GetRow(child.GetNodeTM(0), 3), Point3(0, 0, 0));
    parent.SetLocal({1, 2, 3});
    EXPECT_EQ(GetRow(child.GetNodeTM(0), 3), Point3(1, 2, 3));
    Node& late = scene.AddNode("l", &child);
    EXPECT_EQ(GetRow(late.GetNodeTM(0), 3), Point3(1, 2, 3));
}

// One chain of moving nodes, each a child of the one before.
class SceneAnimation : public testing::Test {
protected:
    void MakeChain(int length) {
        Node* pParent = &m_Scene.AddNode("still");
        pParent->SetLocal({1000, 0, 0});
        for (int i = 0; i < length; ++i) {
            pParent = &m_Scene.AddNode("bone", pParent);
            auto pController = std::make_unique<SlideController>([](TimeValue t) { return 0.5 * t; });
            m_Controllers.push_back(pController.get());
            pParent->SetController(std::move(pController));
            m_Chain.push_back(pParent);
        }
    }

    Scene m_Scene;
    std::vector<Node*> m_Chain;
    std::vector<SlideController*> m_Controllers;
};

TEST_F(SceneAnimation, EveryNodeIsEvaluatedOncePerTick) {
    MakeChain(100);
    const int ticks = GetTicksPerFrame();
    m_Scene.SetAnimRange({-10 * ticks, 19 * ticks});
    Node& hanging = m_Scene.AddNode("hanging", m_Chain.back());
    for (int frame = -10; frame < 20; ++frame) {
        for (Node* pNode : m_Chain)
            pNode->GetNodeTM(frame * ticks);
        EXPECT_EQ(GetRow(m_Chain[49]->GetNodeTM(frame * ticks), 3), Point3(1000 + 25 * frame * ticks, 0, 0));
        EXPECT_EQ(GetRow(hanging.GetNodeTM(frame * ticks), 3), Point3(1000 + 50 * frame * ticks, 0, 0));
    }
    for (const SlideController* pController : m_Controllers)
        EXPECT_EQ(pController->GetCalls(), 30);
    EXPECT_EQ(m_Scene.GetEvaluator().GetTimeCount(), 30u) << "none beyond the range";
    // The run of the last frame is still known.
    m_Chain[0]->GetNodeTM(17 * ticks);
    m_Chain[0]->GetNodeTM(19 * ticks);
    EXPECT_EQ(m_Scene.GetEvaluator().GetTimeCount(), 30u);
    // Beyond the range, and between frames, every time is one of its own.
    for (const TimeValue t : {20 * ticks, 21 * ticks, 2, 2 + ticks, 0})
        EXPECT_EQ(GetRow(m_Chain[0]->GetNodeTM(t), 3).x, 1000.0f + 0.5f * static_cast<float>(t)) << t;
}

TEST_F(SceneAnimation, StillNodesCostNothing) {
    MakeChain(1);
    Node& still = m_Scene.AddNode("other");
    still.SetLocal({5, 0, 0});
    for (TimeValue t = 0; t < 1000; ++t)
        EXPECT_EQ(GetRow(still.GetNodeTM(t), 3), Point3(5, 0, 0));
    EXPECT_EQ(m_Controllers[0]->GetCalls(), 0);
}

TEST_F(SceneAnimation, AThrowingControllerLeavesNoHalfATick) {
    bool fail = true;
    Node& node = m_Scene.AddNode("n");
    node.SetController(std::make_unique<SlideController>([&fail](TimeValue) {
        if (fail)
            throw std::runtime_error("bad track");
        return 3.0;
    }));
    EXPECT_THROW(node.GetNodeTM(0), std::runtime_error);
    fail = false;
    EXPECT_EQ(GetRow(node.GetNodeTM(0), 3), Point3(3, 0, 0));
}

TEST(SceneTransforms, DepthIsNoLimit) {
    Scene scene;
    Node* pNode = nullptr;
    for (int i = 0; i < 100000; ++i) {
        pNode = &scene.AddNode("n", pNode);
        pNode->SetLocal({1, 0, 0});
    }
    EXPECT_EQ(GetRow(pNode->GetNodeTM(0), 3), Point3(100000, 0, 0));
}

TEST(SceneProperties, OnlyTheUserDefinedSetIsFilled) {
    Scene scene;
    PROPVARIANT flag;
    flag.vt = VT_BOOL;
    flag.boolVal = true;
    scene.AddFileProperty("IgnoreShaders", flag);
    scene.AddFileProperty(17, {});
    EXPECT_EQ(scene.GetNumProperties(PROPSET_USERDEFINED), 2);
    EXPECT_EQ(scene.GetNumProperties(PROPSET_SUMMARYINFO), 0);
    EXPECT_EQ(scene.GetPropertySpec(4, 0)->ulKind, PRSPEC_LPWSTR);
    EXPECT_EQ(scene.GetPropertySpec(4, 0)->name, "IgnoreShaders");
    EXPECT_TRUE(scene.GetPropertyVariant(4, 0)->boolVal);
    EXPECT_EQ(scene.GetPropertySpec(4, 1)->ulKind, PRSPEC_PROPID);
    EXPECT_EQ(scene.GetPropertySpec(4, 1)->propid, 17u);
    EXPECT_EQ(scene.GetPropertySpec(4, 2), nullptr);
    EXPECT_EQ(scene.GetPropertyVariant(1, 0), nullptr);
}

} // namespace
