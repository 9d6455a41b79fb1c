#include "Tests/Host/Gltf/GltfFixture.h"

#include "Host/Gltf/SkinData.h"
#include "Host/Sdk/ClassIds.h"
#include "Host/Sdk/Core.h"
#include "Host/Sdk/Object.h"
#include "Host/Sdk/Skin.h"

#include <algorithm>
#include <numeric>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class GltfAnimation : public GltfFixture {
protected:
    // An animation with one channel.
    static std::string Clip(const std::string& name, int input, int output, const std::string& path, int node,
                            const std::string& interpolation = "LINEAR") {
        return R"({"name":")" + name + R"(","samplers":[{"input":)" + std::to_string(input) + R"(,"output":)" +
               std::to_string(output) + R"(,"interpolation":")" + interpolation +
               R"("}],"channels":[{"sampler":0,"target":{"node":)" + std::to_string(node) + R"(,"path":")" + path +
               "\"}}]}";
    }
    Point3 PositionAt(const char* pName, double seconds) {
        return Find(pName).GetNodeTM(static_cast<TimeValue>(seconds * 4800))[3];
    }
};

TEST_F(GltfAnimation, TheRangeEndsAtTheLastKeyOfAChannelWithANode) {
    AddFloats({0, 1.05f}, "SCALAR"); // 31.5 frames of a thirtieth
    AddFloats({0, 0, 0, 1, 0, 0}, "VEC3");
    AddFloats({0, 3}, "SCALAR");
    const Lists lists{.nodes = R"({"name":"A"})",
                      .animations =
                          Clip("walk", 0, 1, "translation", 0) + "," +
                          R"({"name":"far","samplers":[{"input":2,"output":1},{"input":0,"output":1}],"channels":[
                                        {"sampler":0,"target":{"path":"translation"}},
                                        {"sampler":1,"target":{"node":0,"path":"scale"}}]})"};
    EXPECT_EQ(Load(lists).GetAnimRange(), Interval(0, 32 * 160));
    m_Options.clip = "far";
    EXPECT_EQ(Load(lists).GetAnimRange(), Interval(0, 32 * 160));
    m_Options.fps = 10;
    EXPECT_EQ(Load(lists).GetAnimRange(), Interval(0, 11 * 480));
    EXPECT_EQ(GetTicksPerFrame(), 480);
    m_Options = {.clip = "none", .fps = 30};
    EXPECT_EQ(Load(lists).GetAnimRange(), Interval(0, 0));
    EXPECT_EQ(PositionAt("A", 0.5), Point3(0, 0, 0));
}

TEST_F(GltfAnimation, AScaleOfZeroKeepsTheDirections) {
    AddFloats({0, 1}, "SCALAR");
    AddFloats({1, 1, 1, 0, 2, -0.0f}, "VEC3");
    Load({.nodes = R"({"name":"A","rotation":[0,0,1,0]})", .animations = Clip("hide", 0, 1, "scale", 0)});
    const Matrix3 m = Find("A").GetNodeTM(4800);
    for (int row = 0; row < 3; ++row)
        EXPECT_GT(glm::length(m[row]), 0.0f) << row;
    EXPECT_LT(glm::length(m[0]), 1e-5f);
    EXPECT_NEAR(glm::dot(m[0], Find("A").GetNodeTM(0)[0]) / glm::length(m[0]), 1.0f, 1e-3f);
}

TEST_F(GltfAnimation, ClipsAreChosenByNameOrIndex) {
    AddFloats({0, 1}, "SCALAR");
    AddFloats({0, 2}, "SCALAR");
    AddFloats({0, 0, 0, 1, 0, 0}, "VEC3");
    const Lists lists{.nodes = R"({"name":"A"})",
                      .animations = Clip("walk", 0, 2, "translation", 0) + "," + Clip("0", 1, 2, "translation", 0)};
    for (const auto& [clip, seconds] : {std::pair("", 1), {"walk", 1}, {"1", 2}, {"0", 2}}) {
        m_Options.clip = clip;
        EXPECT_EQ(Load(lists).GetAnimRange().End(), seconds * 4800) << clip;
    }
    for (const char* pClip : {"Walk", "2", "-1", "1x"}) {
        m_Options.clip = pClip;
        EXPECT_THAT(FaultOf(lists),
                    HasSubstr("it has no animation \"" + std::string(pClip) + "\"; it has \"walk\", \"0\""));
    }
    EXPECT_THAT(FaultOf({}), HasSubstr("it has none at all"));
}

TEST_F(GltfAnimation, BadKeysAreRefused) {
    AddFloats({0, 1}, "SCALAR");
    AddFloats({1, 0.5f}, "SCALAR");
    AddFloats({0, NAN}, "SCALAR");
    AddFloats({0, 4000}, "SCALAR");
    AddFloats({0, 0, 0, 1, 0, 0}, "VEC3");
    AddFloats({0, 0, 0}, "VEC3");
    const auto fault = [this](int input, int output, const char* pPath = "translation", const char* pKind = "LINEAR") {
        return FaultOf({.nodes = "{}", .animations = Clip("run", input, output, pPath, 0, pKind)});
    };
    EXPECT_THAT(fault(1, 4), HasSubstr("animation \"run\": the times of its keys do not ascend"));
    EXPECT_THAT(fault(2, 4), HasSubstr("do not ascend"));
    EXPECT_THAT(fault(4, 4), HasSubstr("are no list of seconds"));
    EXPECT_THAT(fault(3, 4), HasSubstr("more than 65535 frames; lower --fps"));
    EXPECT_THAT(fault(0, 5), HasSubstr("do not fit its 2 keys"));
    EXPECT_THAT(fault(0, 4, "rotation"), HasSubstr("do not fit its 2 keys"));
    EXPECT_THAT(fault(0, 4, "scale", "CUBICSPLINE"), HasSubstr("do not fit its 2 keys"));
    EXPECT_THAT(fault(0, 4, "scale", "MAGIC"), HasSubstr("its interpolation \"MAGIC\" is unknown"));
    EXPECT_EQ(fault(0, 4, "weights"), "");
    EXPECT_THAT(m_Warnings, ElementsAre(HasSubstr("it moves morph targets")));
}

class GltfSkin : public GltfFixture {
protected:
    // A triangle skinned to two joints, the second of which stands at (0, 1, 0) and moves to (0, 3, 0) in a second.
    Lists SkinnedTriangle(const std::vector<float>& weights) {
        AddFloats({0, 0, 0, 1, 0, 0, 0, 1, 0}, "VEC3");
        Add(std::vector<uint8_t>{0, 1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0}, 5121, "VEC4", 3);
        AddFloats(weights, "VEC4");
        AddFloats(
            {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, /**/ 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, -1, 0, 1},
            "MAT4");
        AddFloats({0, 1}, "SCALAR");
        AddFloats({0, 1, 0, 0, 3, 0}, "VEC3");
        return {.nodes = R"({"name":"Skin","mesh":0,"skin":0,"translation":[9,9,9]},{"name":"J0","children":[2]},
                            {"name":"J1","translation":[0,1,0]})",
                .meshes = MeshOf(Primitive("\"POSITION\":0,\"JOINTS_0\":1,\"WEIGHTS_0\":2")),
                .skins = R"({"joints":[1,2],"inverseBindMatrices":3})",
                .animations = R"({"samplers":[{"input":4,"output":5}],
                                  "channels":[{"sampler":0,"target":{"node":2,"path":"translation"}}]})"};
    }
    ISkin& GetSkin(INode& node) {
        auto* pDerived = static_cast<IDerivedObject*>(node.GetObjectRef());
        return *static_cast<ISkin*>(pDerived->GetModifier(0)->GetInterface(I_SKIN));
    }
    static float Sum(const std::vector<scene::SkinWeights::Influence>& influences) {
        return std::accumulate(influences.begin(), influences.end(), 0.0f,
                               [](float sum, const auto& influence) { return sum + influence.weight; });
    }
};

TEST_F(GltfSkin, TheMeshIsDeformedInWorldSpace) {
    Load(SkinnedTriangle({1, 0, 0, 0, 0.5f, 0.5f, 0, 0, 0, 1, 0, 0}));
    INode& node = Find("Skin");
    EXPECT_EQ(node.GetObjectTM(0), IdentityMatrix());
    const auto pRest = MeshAt(node);
    EXPECT_EQ(pRest->verts[2], Point3(0, 0, 1));
    const auto pMoved = MeshAt(node, 4800);
    EXPECT_EQ(pMoved->verts[0], Point3(0, 0, 0));
    EXPECT_EQ(pMoved->verts[1], Point3(1, 0, 1));
    EXPECT_EQ(pMoved->verts[2], Point3(0, 0, 3));
    ISkin& skin = GetSkin(node);
    ASSERT_EQ(skin.GetNumBones(), 2);
    EXPECT_EQ(skin.GetBone(1), &Find("J1"));
    ISkinContextData* pContext = skin.GetContextInterface(&node);
    ASSERT_EQ(pContext->GetNumPoints(), 3);
    EXPECT_EQ(pContext->GetNumAssignedBones(1), 2);
    EXPECT_EQ(pContext->GetBoneWeight(1, 0), 0.5f);
    EXPECT_FALSE(node.GetBoneNodeOnOff());
    EXPECT_THAT(m_Warnings, testing::IsEmpty());
}

TEST_F(GltfSkin, VerticesOfDifferentBonesStayApart) {
    AddFloats({0, 0, 0, 1, 0, 0, 0, 1, 0, /**/ 0, 0, 0, 1, 0, 0, 0, 1, 1}, "VEC3");
    Add(std::vector<uint8_t>{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, /**/ 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}, 5121, "VEC4",
        6);
    AddFloats({1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0}, "VEC4");
    Load({.nodes = R"({"name":"Skin","mesh":0,"skin":0},{},{},{"name":"Plain","mesh":0})",
          .meshes = MeshOf(Primitive("\"POSITION\":0,\"JOINTS_0\":1,\"WEIGHTS_0\":2")),
          .skins = R"({"joints":[1,2]})"});
    EXPECT_EQ(MeshAt(Find("Skin"))->numVerts, 5);
    EXPECT_EQ(MeshAt(Find("Plain"))->numVerts, 4);
    EXPECT_EQ(GetSkin(Find("Skin")).GetContextInterface(&Find("Skin"))->GetNumPoints(), 5);
}

TEST_F(GltfSkin, BadSkinsAreRefusedAndUnboundVerticesReported) {
    Lists lists = SkinnedTriangle({1, 0, 0, 0, 0, 0, 0, 0, -1, 0, 0, 0});
    Load(lists);
    EXPECT_THAT(m_Warnings, ElementsAre(HasSubstr("node \"Skin\": 2 vertices have no weights and hang on the skin's "
                                                  "first joint; weight them")));
    m_Buffer.replace(64, 4, m_Buffer.substr(48, 4)); // the second vertex's first weight
    Load(lists);
    EXPECT_THAT(m_Warnings, ElementsAre(HasSubstr("node \"Skin\": 1 vertex has no weights and hangs on the skin's "
                                                  "first joint; weight it")));
    lists.skins = R"({"joints":[1,2,1],"inverseBindMatrices":3})";
    EXPECT_THAT(FaultOf(lists), HasSubstr("skin 0: it has not one inverse bind matrix for each joint"));
    lists.skins = R"({"joints":[1,2]})";
    Add(std::vector<uint8_t>{9, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}, 5121, "VEC4", 3);
    const std::string firstSet = "\"POSITION\":0,\"JOINTS_0\":1,\"WEIGHTS_0\":2";
    lists.meshes = MeshOf(Primitive(firstSet) + "," + Primitive(firstSet + ",\"JOINTS_1\":6,\"WEIGHTS_1\":2"));
    EXPECT_THAT(FaultOf(lists), HasSubstr("a vertex hangs on joint 9 of a skin that has 2"));
    m_Buffer[36] = 7; // the first vertex's first joint
    EXPECT_THAT(FaultOf(lists), HasSubstr("a vertex hangs on joint 7 of a skin that has 2"));
}

TEST_F(GltfSkin, WeightsAddUpToOneInAnyOrder) {
    uint32_t random = 1;
    for (int turn = 0; turn < 2000; ++turn) {
        std::vector<scene::SkinWeights::Influence> influences;
        for (int i = 0; i < 1 + turn % 8; ++i) {
            random = random * 1664525u + 1013904223u;
            influences.push_back({.bone = i, .weight = static_cast<float>(random >> 8) / 3e6f});
        }
        gltf::SkinReport report;
        gltf::NormalizeInfluences(influences, false, report);
        EXPECT_EQ(Sum(influences), 1.0f);
        std::ranges::reverse(influences);
        EXPECT_EQ(Sum(influences), 1.0f);
        std::ranges::sort(influences, {}, &scene::SkinWeights::Influence::weight);
        EXPECT_EQ(Sum(influences), 1.0f);
    }
}

TEST_F(GltfSkin, MoreThanFourJointsOfAVertexAreReported) {
    AddFloats({0, 0, 0, 1, 0, 0, 0, 1, 0}, "VEC3");
    Add(std::vector<uint8_t>{0, 1, 2, 3, 0, 1, 2, 3, 0, 1, 2, 3}, 5121, "VEC4", 3);
    AddFloats(std::vector<float>(12, 0.2f), "VEC4");
    Add(std::vector<uint8_t>{4, 0, 0, 0, /**/ 4, 0, 0, 0, /**/ 3, 0, 0, 0}, 5121, "VEC4", 3);
    AddFloats({0.2f, 0, 0, 0, /**/ 0, 0, 0, 0, /**/ 0.2f, 0, 0, 0}, "VEC4");
    const Lists lists{.nodes = R"({"name":"Skin","mesh":0,"skin":0},{},{},{},{},{})",
                      .meshes =
                          MeshOf(Primitive(R"("POSITION":0,"JOINTS_0":1,"WEIGHTS_0":2,"JOINTS_1":3,"WEIGHTS_1":4)")),
                      .skins = R"({"joints":[1,2,3,4,5]})"};
    Load(lists);
    EXPECT_THAT(m_Warnings, ElementsAre(AllOf(HasSubstr("node \"Skin\": 1 vertex hangs on more than four joints"),
                                              HasSubstr("; weight it to four"), HasSubstr("--limit-influences"))));
    m_Options.limitInfluences = true;
    LoadFile("scene.glb");
    EXPECT_THAT(m_Warnings, ElementsAre(AllOf(HasSubstr("1 vertex kept only its four heaviest weights"),
                                              HasSubstr(" of its weight; weight it to four joints"))));
    m_Buffer[104] = 4; // a fifth joint for the third vertex
    Load(lists);
    EXPECT_THAT(m_Warnings, ElementsAre(AllOf(HasSubstr("2 vertices kept only their four heaviest weights"),
                                              HasSubstr(" of their weight; weight them to four joints"))));
}

TEST_F(GltfSkin, TheFourHeaviestStayWhenAsked) {
    std::vector<scene::SkinWeights::Influence> influences = {{0, 0.1f}, {1, 0.3f}, {2, -1.0f}, {3, 0.2f},
                                                             {4, 0.1f}, {1, 0.1f}, {5, 0.2f}};
    gltf::SkinReport report;
    gltf::NormalizeInfluences(influences, true, report);
    ASSERT_EQ(influences.size(), 4u);
    const int bones[] = {1, 3, 5, 0};
    for (size_t i = 0; i < 4; ++i)
        EXPECT_EQ(influences[i].bone, bones[i]);
    EXPECT_EQ(Sum(influences), 1.0f);
    EXPECT_EQ(report.limited, 1u);
    EXPECT_NEAR(report.largestLoss, 0.1f, 1e-6f);
}

} // namespace
