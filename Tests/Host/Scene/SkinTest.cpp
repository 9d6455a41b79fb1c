#include "Host/Scene/Modifiers.h"

#include "Tests/Host/Scene/SceneFixture.h"

#include <gtest/gtest.h>

namespace {

using scene::Node;
using scene::Scene;
using scene::SkinWeights;

// A source that counts who still holds what it made.
class WatchedSource : public scene::SkinSource {
public:
    explicit WatchedSource(SkinWeights weights, std::weak_ptr<const SkinWeights>& watched)
        : m_Weights(std::move(weights)), m_Watched(watched) {}
    std::shared_ptr<const SkinWeights> Build() const override {
        auto pWeights = std::make_shared<const SkinWeights>(m_Weights);
        m_Watched = pWeights;
        return pWeights;
    }

private:
    SkinWeights m_Weights;
    std::weak_ptr<const SkinWeights>& m_Watched;
};

// A line of four points under two bones; the second bone stands at x = 10 and moves along X with the time.
class SkinTest : public testing::Test {
protected:
    SkinTest() {
        Mesh mesh;
        mesh.setNumVerts(4);
        mesh.verts = {{0, 0, 0}, {5, 0, 0}, {10, 0, 0}, {0, 9, 0}};
        m_pNode = &AddMesh(m_Scene, "skinned", std::move(mesh), nullptr, &m_Scene.AddNode("moved"));
        m_pNode->SetLocal({100, 100, 100});
        m_pHip = &AddBone(m_Scene, "hip");
        m_pKnee = &AddBone(m_Scene, "knee", m_pHip);
        m_pKnee->SetController(std::make_unique<SlideController>([](TimeValue t) { return 10.0 + t; }));

        SkinWeights weights;
        weights.AddPoint(std::vector<SkinWeights::Influence>{{0, 1.0f}});
        weights.AddPoint(std::vector<SkinWeights::Influence>{{0, 0.25f}, {1, 0.75f}});
        weights.AddPoint(std::vector<SkinWeights::Influence>{{1, 1.0f}, {9, 0.5f}});
        weights.AddPoint({});
        Matrix3 inverseKnee = IdentityMatrix();
        SetRow(inverseKnee, 3, {-10, 0, 0});
        m_pSkin = &AddSkin(*m_pNode, {{m_pHip, IdentityMatrix()}, {m_pKnee, inverseKnee}},
                           std::make_unique<WatchedSource>(std::move(weights), m_Watched));
    }

    Scene m_Scene;
    Node* m_pNode = nullptr;
    Node* m_pHip = nullptr;
    Node* m_pKnee = nullptr;
    scene::SkinModifier* m_pSkin = nullptr;
    std::weak_ptr<const SkinWeights> m_Watched;
};

TEST_F(SkinTest, TheMeshFollowsItsBonesInWorldSpace) {
    EXPECT_EQ(m_pNode->GetObjectTM(0), IdentityMatrix());
    EXPECT_EQ(GetRow(m_pNode->GetNodeTM(0), 3), Point3(100, 100, 100)) << "children still hang on it";
    const std::vector<Point3> rest = {{0, 0, 0}, {5, 0, 0}, {10, 0, 0}, {0, 9, 0}};
    EXPECT_EQ(GetMesh(*m_pNode)->verts, rest);
    const std::vector<Point3> moved = {{0, 0, 0}, {5 + 6, 0, 0}, {10 + 8, 0, 0}, {0, 9, 0}};
    EXPECT_EQ(GetMesh(*m_pNode, 8)->verts, moved);
    EXPECT_TRUE(m_Watched.expired());
}

TEST_F(SkinTest, AModuleFindsTheModifierAndReadsIt) {
    ASSERT_EQ(m_pNode->GetObjectRef()->SuperClassID(), 2u);
    auto& derived = static_cast<IDerivedObject&>(*m_pNode->GetObjectRef());
    EXPECT_EQ(m_pNode->EvalWorldState(0).obj->ClassID(), TRIOBJ_CLASS_ID);
    ASSERT_EQ(derived.NumModifiers(), 1);
    EXPECT_EQ(derived.GetModifier(1), nullptr);
    Modifier* pModifier = derived.GetModifier(0);
    EXPECT_EQ(pModifier->ClassID(), Class_ID(0x95c723, 0x15666));
    EXPECT_EQ(pModifier->GetInterface(1), nullptr);
    auto* pSkin = static_cast<ISkin*>(pModifier->GetInterface(0x10000));
    ASSERT_NE(pSkin, nullptr);
    EXPECT_EQ(pSkin->GetNumBones(), 2);
    EXPECT_EQ(pSkin->GetBone(1), m_pKnee);
    EXPECT_EQ(pSkin->GetBone(2), nullptr);
    Matrix3 bind = IdentityMatrix();
    EXPECT_EQ(pSkin->GetBoneInitTM(m_pKnee, bind), ISkin::Ok);
    EXPECT_EQ(GetRow(bind, 3), Point3(10, 0, 0));
    EXPECT_EQ(pSkin->GetBoneInitTM(m_pNode, bind), ISkin::Failed);

    EXPECT_EQ(pSkin->GetContextInterface(m_pKnee), nullptr);
    ISkinContextData* pContext = pSkin->GetContextInterface(m_pNode);
    ASSERT_NE(pContext, nullptr);
    EXPECT_EQ(pContext->GetNumPoints(), 4);
    EXPECT_EQ(pContext->GetNumAssignedBones(1), 2);
    EXPECT_EQ(pContext->GetAssignedBone(1, 1), 1);
    EXPECT_EQ(pContext->GetBoneWeight(1, 1), 0.75f);
    EXPECT_EQ(pContext->GetAssignedBone(2, 1), -1) << "the modifier has no bone 9";
    EXPECT_EQ(pContext->GetNumAssignedBones(3), 0);
    EXPECT_EQ(pContext->GetNumAssignedBones(4), 0);
    EXPECT_EQ(pContext->GetAssignedBone(-1, 0), -1);
    EXPECT_EQ(pContext->GetBoneWeight(0, 1), 0.0f);
    EXPECT_FALSE(m_Watched.expired());
    pModifier->ReleaseInterface(0x10000, pSkin);
    EXPECT_TRUE(m_Watched.expired());
}

// Scales everything.
class ScaleModifier : public scene::MeshModifier {
public:
    explicit ScaleModifier(float factor) : m_Factor(factor) {}
    Class_ID ClassID() const override { return {1, 2}; }
    void GetClassName(std::string& out) const override { out = "Scale"; }
    void Deform(Mesh& mesh, TimeValue, INode*) override {
        for (Point3& point : mesh.verts)
            point = point * m_Factor + Point3(1.0f);
    }

private:
    float m_Factor;
};

TEST_F(SkinTest, ModifiersWorkFromTheLowestUpAndAreListedFromTheTop) {
    Node& node = AddBox(m_Scene, "box", {2, 2, 2});
    auto& lower = m_Scene.Make<ScaleModifier>(2.0f);
    auto& upper = m_Scene.Make<ScaleModifier>(10.0f);
    auto& inner = m_Scene.Make<scene::DerivedObject>(node.GetObjectRef());
    inner.AddModifier(lower);
    auto& outer = m_Scene.Make<scene::DerivedObject>(&inner);
    outer.AddModifier(upper);
    outer.AddModifier(lower);
    node.SetObject(&outer);
    EXPECT_EQ(outer.GetModifier(0), &lower);
    EXPECT_EQ(outer.GetModifier(1), &upper);
    // 1 -> 3 -> 31 -> 63
    EXPECT_EQ(GetMesh(node)->verts[7], Point3(63.0f));

    Node& camera = AddCamera(m_Scene, "camera", {});
    camera.SetObject(&m_Scene.Make<scene::DerivedObject>(camera.GetObjectRef()));
    EXPECT_EQ(camera.EvalWorldState(0).obj->ClassID(), SIMPLE_CAM_CLASS_ID);
}

} // namespace
