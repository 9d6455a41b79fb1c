#include "Tests/Shared_Tools/PVXExport/ExportFixture.h"

#include "Host/Sdk/ClassIds.h"
#include "Shared/Cross/RenderAnim/MeshGroup.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"
#include "Shared/Cross/RenderAnim/VertexWeight.h"

namespace {

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

class SkinExport : public ExportTest {
protected:
    using Influences = std::vector<scene::SkinWeights::Influence>;

    void SetUp() override {
        for (const char* pName : {"B0", "B1", "B2", "B3", "B4", "B5"})
            m_Bones.push_back(&scene::AddBone(m_Scene, pName));
    }
    // Puts a skin on top of what the node has. Vertices that are left out hang on bone 0.
    void AddSkin(scene::Node& node, const std::vector<Influences>& points) {
        scene::SkinWeights weights;
        for (size_t i = 0; i < 4; ++i)
            weights.AddPoint(i < points.size() ? points[i] : Influences{{0, 1.0f}});
        std::vector<scene::SkinBone> bones;
        for (scene::Node* pBone : m_Bones)
            bones.push_back({.pNode = pBone});
        scene::AddSkin(node, std::move(bones), std::make_unique<scene::ReadySkinSource>(std::move(weights)));
    }
    scene::Node& AddSkinned(const std::vector<Influences>& points) {
        scene::Node& node = AddQuad("Skin");
        AddSkin(node, points);
        return node;
    }
    scene::Node& AddSkinned(const Influences& first) { return AddSkinned(std::vector<Influences>{first}); }
    // The weights of the vertices that don't hang on bone 0 alone.
    std::vector<VertexWeight> ExportedWeights() {
        std::vector<VertexWeight> weights;
        WithModel([&](const RenderModel& model) {
            weights = ReadComponent<VertexWeight>(*model.GetMeshGroup()->GetMesh(0).GetData(), gz::VC_Weights);
        });
        std::erase(weights, VertexWeight{{1, 0, 0}, {0, 255, 255, 255}});
        return weights;
    }
    std::vector<std::string> BoneNames() {
        std::vector<std::string> names;
        WithModel([&](const RenderModel& model) {
            const ra::Mesh& mesh = *model.GetMeshGroup()->GetMesh(0).GetData();
            for (uint32_t i = 0; i < mesh.GetSkinnedTransformCount(); ++i)
                names.push_back(mesh.GetSkinnedTransform(i).bone.GetText());
            EXPECT_EQ(model.GetMeshGroup()->GetParentBone(0), -1);
        });
        return names;
    }
    std::vector<scene::Node*> m_Bones;
};

TEST_F(SkinExport, FourBonesInTheOrderOfTheirWeights) {
    AddSkinned({{{1, 0.125f}, {2, 0.5f}, {5, 0.0f}, {3, 0.25f}, {4, 0.125f}}, {{1, 0.25f}, {1, 0.25f}}});
    EXPECT_EQ(Export(), 1);
    EXPECT_THAT(ExportedWeights(), UnorderedElementsAre(VertexWeight{{0.5f, 0.25f, 0.125f}, {2, 3, 1, 4}},
                                                        VertexWeight{{1, 0, 0}, {1, 255, 255, 255}}))
        << "a bone that is there twice is one, and a small sum is filled up";
    EXPECT_THAT(BoneNames(), ElementsAre("B2", "B3", "B1", "B4", "B0"));
}

TEST_F(SkinExport, EveryBadVertexIsReported) {
    AddSkinned({{},
                {{0, -0.5f}, {2, 1.5f}, {1, 0.0f}},
                {{0, 0.5f}, {1, 0.125f}, {2, 0.125f}, {3, 0.125f}, {4, 0.125f}},
                {{0, 0.75f}, {1, 0.2500001f}}}); // a hair above 1
    EXPECT_EQ(Export(), 0);
    EXPECT_THAT(
        m_Messages,
        ElementsAre(
            "Error   : Mesh 'Skin', vertex 0 is not weighted to any bones!",
            "Error   : Mesh 'Skin', vertex 1 has an invalid weight!  Make sure it is normalized / weighted!",
            "Error   : Mesh 'Skin', vertex 1 has an invalid weight!  Make sure it is normalized / weighted!",
            "Error   : Mesh 'Skin', vertex 1 is not weighted to any bones!",
            "Error   : Mesh 'Skin', vertex 2 is weighted by too many bones!  A maximum of 4 bones is supported!",
            "Error   : Mesh 'Skin', vertex 3 has an invalid bone weight!  Make sure it is normalized!",
            "Error   : 'Skin': Can't build skinning info", "Error   : 'Skin': Unable to build mesh!"));
    EXPECT_FALSE(IsThere("Foo.pvx"));
}

// A Skin modifier of a host that hasn't got the module behind it.
class DeadSkin : public scene::MeshModifier {
public:
    Class_ID ClassID() const override { return SKIN_CLASSID; }
    void GetClassName(std::string& out) const override { out = "Missing Skin"; }
    void Deform(Mesh&, TimeValue, INode*) override {}
};

TEST_F(SkinExport, ASkinWithoutItsInterfaceFails) {
    scene::Node& node = AddQuad("Skin");
    auto& derived = m_Scene.Make<scene::DerivedObject>(node.GetObjectRef());
    derived.AddModifier(m_Scene.Make<DeadSkin>());
    node.SetObject(&derived);
    EXPECT_EQ(Export(), 0);
    EXPECT_EQ(m_Messages.front(), "Error   : ISkin modifier not installed. Cannot export weighted mesh!");
    EXPECT_FALSE(IsThere("Foo.pvx"));
}

TEST_F(SkinExport, OfSeveralSkinsTheLowestCounts) {
    const Influences lower{{2, 1.0f}};
    scene::Node& node = AddSkinned({lower, lower, lower, lower});
    AddSkin(node, {{{1, 1.5f}}});
    EXPECT_EQ(Export(), 1);
    EXPECT_THAT(BoneNames(), ElementsAre("B2"));
}

TEST_F(SkinExport, ARemovedBoneIsReplacedByTheFirst) {
    m_Bones[5]->GetUserProperties().Add("Remove", "");
    AddSkinned({{5, 0.25f}, {1, 0.75f}});
    EXPECT_EQ(Export(), 0);
    EXPECT_THAT(m_Messages, ElementsAre("Error   : Mesh 'Skin', vertex 0 is weighted by an invalid bone! (Removed "
                                        "from Skeleton?)"));
    EXPECT_THAT(ExportedWeights(), ElementsAre(VertexWeight{{0.75f, 0.25f, 0}, {1, 0, 255, 255}}));
}

TEST_F(SkinExport, BonesBeyondWhatABytesHoldsAreRefused) {
    while (m_Bones.size() < 257)
        m_Bones.push_back(&scene::AddBone(m_Scene, "B" + std::to_string(m_Bones.size())));
    AddSkinned({{254, 1.0f}});
    EXPECT_EQ(Export(), 1);
    EXPECT_THAT(ExportedWeights(), ElementsAre(VertexWeight{{1, 0, 0}, {254, 255, 255, 255}}));
    AddQuad("Hat", m_Bones[256]).GetUserProperties().Add("ForceSkinning", "");
    EXPECT_EQ(Export(), 0);
    EXPECT_THAT(m_Messages, Contains("Error   : Mesh 'Hat' is weighted by bone 'B256', number 257 of the skeleton!  "
                                     "Only the first 255 bones can be skinned to!"));
    EXPECT_THAT(m_Messages, Contains("Error   : 'Hat': Can't build skinning info"));
}

TEST_F(SkinExport, ForceSkinningLooksAtNoModifier) {
    scene::Node& node = AddSkinned({{1, 1.5f}});
    node.GetUserProperties().Add("ForceSkinning", "");
    EXPECT_EQ(Export(), 0);
    EXPECT_THAT(m_Messages, ElementsAre("Error   : Force Skinned Mesh 'Skin' is not a bone!"));
    EXPECT_TRUE(IsThere("Foo.pvx"));
    node.SetBoneNodeOnOff(true);
    EXPECT_EQ(Export(), 1);
    EXPECT_THAT(BoneNames(), ElementsAre("Skin"));
}

TEST_F(SkinExport, AForcedChildHangsWhollyOnItsParent) {
    AddQuad("Hat", m_Bones[3]).GetUserProperties().Add("ForceSkinning", "");
    EXPECT_EQ(Export(), 1);
    EXPECT_THAT(ExportedWeights(), Each(VertexWeight{{1, 0, 0}, {3, 255, 255, 255}}));
    EXPECT_THAT(BoneNames(), ElementsAre("B3"));
}

} // namespace
