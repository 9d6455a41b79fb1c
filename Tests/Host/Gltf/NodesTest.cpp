#include "Tests/Host/Gltf/GltfFixture.h"

#include "Host/Sdk/ClassIds.h"

#include <algorithm>

namespace {

class GltfNodes : public GltfFixture {
protected:
    std::vector<std::string> Names() const {
        std::vector<std::string> names;
        for (const auto& pNode : m_pScene->GetNodes())
            names.push_back(pNode->GetName());
        return names;
    }
    static void ExpectNear(const Point3& a, const Point3& b) {
        EXPECT_LT(glm::length(a - b), 1e-5f) << a.x << ' ' << a.y << ' ' << a.z;
    }
};

TEST_F(GltfNodes, NamesAreUniqueAndNeverEmpty) {
    Load({.nodes = R"({"name":"Arm"},{"name":"arm"},{"name":"Arm"},{},{"mesh":0},{"mesh":0},{"camera":0},{"name":""})",
          .meshes = "{\"name\":\"Rock\",\"primitives\":[]}",
          .cameras = R"({"name":"Eye","type":"perspective","perspective":{"yfov":1,"znear":0.1}})"});
    EXPECT_THAT(Names(),
                testing::ElementsAre("Arm", "arm001", "Arm002", "Node001", "Rock", "Rock001", "Eye", "Node002"));
}

TEST_F(GltfNodes, NamesThatNoReaderOfAModelTakesAreRefused) {
    const std::string longest(259, 'n');
    const std::string start = std::string(120, 'n') + "...\": its name has ";
    const std::string end = " bytes; a name holds at most 259, with the number that tells it from others: shorten it";
    const auto named = [](const std::string& name, const std::string& more = "") {
        return "{\"name\":\"" + name + "\"" + more + "}";
    };
    const std::string eye = R"(,"type":"perspective","perspective":{"yfov":1,"znear":0.1})";
    AddFloats({0, 0, 0, 1, 0, 0, 0, 1, 0}, "VEC3");
    AddAccessor(R"({"componentType":5123,"count":65538,"type":"SCALAR"})"); // one face more than a node holds
    const std::string large = MeshOf(Primitive("\"POSITION\":0", 1));
    EXPECT_EQ(FaultOf({.nodes = named(longest), .materials = named(longest)}), "");
    for (const Lists& lists : {Lists{.nodes = named(longest + "n")},
                               Lists{.nodes = R"({"mesh":0})", .meshes = named(longest + "n", ",\"primitives\":[]")},
                               Lists{.nodes = R"({"camera":0})", .cameras = named(longest + "n", eye)},
                               Lists{.materials = named(longest + "n")}})
        EXPECT_EQ(FaultOf(lists),
                  std::string("scene.glb: ") + (lists.nodes.empty() ? "material \"" : "node \"") + start + "260" + end);
    // What the host makes of a name counts: numbers, and two bytes a letter.
    EXPECT_THAT(FaultOf({.nodes = named(longest) + "," + named(longest)}), testing::HasSubstr("has 262" + end));
    EXPECT_THAT(FaultOf({.materials = named(longest) + "," + named(longest)}), testing::HasSubstr("has 262" + end));
    EXPECT_THAT(FaultOf({.nodes = named(longest, ",\"mesh\":0"), .meshes = large}),
                testing::HasSubstr("has 261" + end));
    std::string letters;
    for (int i = 0; i < 130; ++i)
        letters += "\xc3\xa4";
    EXPECT_THAT(FaultOf({.nodes = named(letters)}), testing::HasSubstr("has 260" + end));
    // Nothing of what isn't loaded gets into a model.
    EXPECT_EQ(FaultOf({.nodes = named("A") + "," + named(longest + "n"), .scenes = R"({"nodes":[0]})"}), "");
}

TEST_F(GltfNodes, AReferenceLeadsNoFurtherThanThePathsOfTheSystem) {
    const auto withFile = [](size_t size) {
        return R"({"name":"Crew","extras":{"host":{"xref":")" + std::string(size, 'x') + "\"}}}";
    };
    const size_t room = 259 - At("").size() - 1;
    EXPECT_EQ(FaultOf({.nodes = withFile(room)}), "");
    EXPECT_EQ(
        FaultOf({.nodes = withFile(room + 1)}),
        "scene.glb: node \"Crew\": the path of its xref has 260 bytes; a path holds at most 259: give its folders "
        "shorter names");
}

TEST_F(GltfNodes, TenThousandEqualNamesTakeNoSquareOfTime) {
    std::string nodes = R"({"name":"Same"})";
    for (int i = 1; i < 10000; ++i)
        nodes += R"(,{"name":"Same"})";
    Load({.nodes = nodes});
    EXPECT_EQ(Names().back(), "Same9999");
}

TEST_F(GltfNodes, AxesChangeOnBothSides) {
    // Turned a quarter about glTF's up axis: +Z goes to +X.
    Load({.nodes = R"({"name":"Rest","translation":[1,2,3]},
                      {"name":"Turned","rotation":[0,0.70710678,0,0.70710678],"scale":[2,3,4],"children":[2]},
                      {"name":"Child","translation":[0,0,1]},
                      {"name":"Matrix","matrix":[1,0,0,0, 0,1,0,0, 0,0,1,0, 4,5,6,1]})"});
    const Matrix3 rest = Find("Rest").GetNodeTM(0);
    ExpectNear(rest[0], {1, 0, 0});
    ExpectNear(rest[1], {0, 1, 0});
    ExpectNear(rest[2], {0, 0, 1});
    ExpectNear(rest[3], {1, -3, 2});
    ExpectNear(Find("Matrix").GetNodeTM(0)[3], {4, -6, 5});
    // glTF's scale along Y is the host's along Z.
    const Matrix3 turned = Find("Turned").GetNodeTM(0);
    ExpectNear(turned[2], {0, 0, 3});
    EXPECT_NEAR(Length(turned[1]), 4.0f, 1e-5f);
    ExpectNear(Find("Child").GetNodeTM(0)[3], {4, 0, 0});
}

TEST_F(GltfNodes, CamerasAndLightsKeepTheirOwnFrame) {
    Load({.nodes = R"({"name":"Eye","camera":0,"children":[1]},{"name":"Below","translation":[1,2,3]},
                      {"name":"Lamp","extensions":{"KHR_lights_punctual":{"light":0}}})",
          .cameras = R"({"type":"perspective","perspective":{"yfov":0.5,"znear":0.25,"zfar":40}})",
          .more = R"("extensions":{"KHR_lights_punctual":{"lights":[{"type":"point"}]}})"});
    // A camera without rotation looks along glTF's -Z, which is the host's +Y.
    const Matrix3 eye = Find("Eye").GetNodeTM(0);
    ExpectNear(TransformVector({0, 0, -1}, eye), {0, 1, 0});
    ExpectNear(TransformVector({0, 1, 0}, eye), {0, 0, 1});
    ExpectNear(TransformVector({0, 0, -1}, Find("Lamp").GetNodeTM(0)), {0, 1, 0});
    // What hangs on the camera is where glTF has it, in a frame without rotation.
    const Matrix3 below = Find("Below").GetNodeTM(0);
    ExpectNear(below[3], {1, -3, 2});
    ExpectNear(below[1], {0, 1, 0});
}

TEST_F(GltfNodes, CamerasHaveTheirLens) {
    Load({.nodes = R"({"name":"A","camera":0},{"name":"B","camera":1},
                      {"name":"C","camera":2,"extras":{"host":{"target":"Aim"}}},{"name":"Aim","translation":[0,0,-4]},
                      {"name":"D","camera":3})",
          .cameras = R"({"type":"perspective","perspective":{"yfov":0.5,"znear":0.25,"zfar":40}},
                        {"type":"perspective","perspective":{"yfov":0.5,"znear":0.25},
                         "extras":{"host":{"clip":[2,3],"targetDistance":7}}},
                        {"type":"orthographic","orthographic":{"xmag":1,"ymag":4,"znear":0.1,"zfar":9}},
                        {"type":"perspective","perspective":{"yfov":0.5,"znear":0.25}})"});
    const auto camera = [&](const char* pName) { return static_cast<GenCamera*>(Find(pName).EvalWorldState(0).obj); };
    EXPECT_EQ(camera("A")->ClassID(), SIMPLE_CAM_CLASS_ID);
    EXPECT_EQ(camera("A")->GetFOV(0), 0.5f);
    EXPECT_TRUE(camera("A")->GetManualClip());
    EXPECT_EQ(camera("A")->GetClipDist(0, CAM_YON_CLIP), 40.0f);
    EXPECT_EQ(camera("A")->GetTDist(0), 1.0f);
    EXPECT_EQ(camera("B")->GetClipDist(0, CAM_HITHER_CLIP), 2.0f);
    EXPECT_EQ(camera("B")->GetTDist(0), 7.0f);
    EXPECT_EQ(camera("C")->ClassID(), LOOKAT_CAM_CLASS_ID);
    EXPECT_EQ(Find("C").GetTarget(), &Find("Aim"));
    EXPECT_NEAR(camera("C")->GetFOV(0), 2.0 * std::atan2(4.0, 4.0), 1e-6);
    EXPECT_FALSE(camera("D")->GetManualClip()) << "a plane of one side only";
}

TEST_F(GltfNodes, LightClassesFollowTypeAndTarget) {
    Load(
        {.nodes = R"({"name":"P","extensions":{"KHR_lights_punctual":{"light":0}}},
                      {"name":"S","extensions":{"KHR_lights_punctual":{"light":1}}},
                      {"name":"D","extensions":{"KHR_lights_punctual":{"light":2}}},
                      {"name":"ST","extensions":{"KHR_lights_punctual":{"light":1}},"extras":{"host":{"target":"P"}}},
                      {"name":"DT","extensions":{"KHR_lights_punctual":{"light":2}},"extras":{"host":{"target":"P"}}})",
         .more =
             R"("extensions":{"KHR_lights_punctual":{"lights":[{"type":"point"},{"type":"spot"},{"type":"directional"}]}})"});
    for (const auto& [pName, id] : {std::pair("P", OMNI_LIGHT_CLASS_ID),
                                    {"S", FSPOT_LIGHT_CLASS_ID},
                                    {"D", DIR_LIGHT_CLASS_ID},
                                    {"ST", SPOT_LIGHT_CLASS_ID},
                                    {"DT", TDIR_LIGHT_CLASS_ID}})
        EXPECT_EQ(ClassIdOf(Find(pName)), id) << pName;
}

TEST_F(GltfNodes, RolesFollowWhatANodeCarries) {
    const std::string mesh = TriangleMesh();
    const std::string points = MeshOf(Primitive("\"POSITION\":0", -1, ",\"mode\":0"));
    Load({.nodes =
              R"({"name":"Mesh","mesh":0},{"name":"Marker"},{"name":"Group","children":[3]},{"name":"Dots","mesh":1},
                      {"name":"Joint"},{"name":"JointMesh","mesh":0},{"name":"Skinned","mesh":0,"skin":0},
                      {"name":"Biped","extras":{"host":{"controller":"biped_root"}}})",
          .meshes = mesh + "," + points,
          .skins = R"({"joints":[4,5]})"});
    EXPECT_EQ(ClassIdOf(Find("Mesh")), EDITTRIOBJ_CLASS_ID);
    EXPECT_EQ(ClassIdOf(Find("Marker")), POINTHELP_CLASS_ID);
    EXPECT_EQ(ClassIdOf(Find("Group")), DUMMY_CLASS_ID);
    EXPECT_EQ(ClassIdOf(Find("Dots")), POINTHELP_CLASS_ID);
    EXPECT_EQ(ClassIdOf(Find("Joint")), BONE_OBJ_CLASS_ID);
    EXPECT_TRUE(Find("Joint").GetBoneNodeOnOff());
    EXPECT_EQ(ClassIdOf(Find("JointMesh")), EDITTRIOBJ_CLASS_ID);
    EXPECT_TRUE(Find("JointMesh").GetBoneNodeOnOff());
    EXPECT_FALSE(Find("Mesh").GetBoneNodeOnOff());
    EXPECT_EQ(ClassIdOf(Find("Biped")), BOXOBJ_CLASS_ID);
    EXPECT_EQ(Find("Biped").GetTMController()->ClassID(), BIPBODY_CONTROL_CLASS_ID);
    EXPECT_EQ(Find("Mesh").GetTMController()->ClassID(), PRS_CONTROL_CLASS_ID);
    EXPECT_THAT(m_Warnings, testing::Contains(testing::HasSubstr("mesh 1: its points and lines are left out")));
}

TEST_F(GltfNodes, WhatAnyAnimationMovesHasItsBoneSwitchOn) {
    AddFloats({0, 1}, "SCALAR");
    AddFloats({0, 0, 0, 1, 0, 0}, "VEC3");
    const std::string moved = R"({"samplers":[{"input":0,"output":1}],"channels":[{"sampler":0,"target":{"node":)";
    Load({.nodes = R"({"name":"Still"},{"name":"Door","children":[2,3]},{"name":"Handle"},{"name":"Eye","camera":0},
                      {"name":"Other"},{"name":"Off","extras":{"host":{"bone":false}}})",
          .animations = moved + R"(1,"path":"translation"}}]},)" + moved + R"(4,"path":"translation"}},
                                   {"sampler":0,"target":{"node":5,"path":"scale"}}]})",
          .cameras = R"({"type":"perspective","perspective":{"yfov":1,"znear":0.1}})"});
    // "Other" is moved by the animation that isn't chosen.
    for (const auto& [pName, isOn] :
         {std::pair("Still", false), {"Door", true}, {"Handle", true}, {"Eye", false}, {"Other", true}, {"Off", false}})
        EXPECT_EQ(Find(pName).GetBoneNodeOnOff(), isOn) << pName;
}

TEST_F(GltfNodes, TheFilesSceneIsLoadedOtherwiseTheFirstOtherwiseAll) {
    Lists lists{.nodes = R"({"name":"A","children":[2]},{"name":"B"},{"name":"C"})"};
    Load(lists);
    EXPECT_THAT(Names(), testing::ElementsAre("A", "C", "B"));
    lists.scenes = R"({"nodes":[1]},{"nodes":[0],"extras":{"IgnoreShaders":true,"Count":3,"Who":"me","Half":0.5}})";
    Load(lists);
    EXPECT_THAT(Names(), testing::ElementsAre("B"));
    lists.more = "\"scene\":1";
    Load(lists);
    EXPECT_THAT(Names(), testing::ElementsAre("A", "C"));

    ASSERT_EQ(m_pScene->GetNumProperties(PROPSET_USERDEFINED), 4);
    const auto value = [&](int i) { return *m_pScene->GetPropertyVariant(PROPSET_USERDEFINED, i); };
    EXPECT_EQ(m_pScene->GetPropertySpec(PROPSET_USERDEFINED, 0)->name, "IgnoreShaders");
    EXPECT_TRUE(value(0).vt == VT_BOOL && value(0).boolVal);
    EXPECT_TRUE(value(1).vt == VT_I4 && value(1).lVal == 3);
    EXPECT_TRUE(value(2).vt == VT_LPSTR && value(2).text == "me");
    EXPECT_TRUE(value(3).vt == VT_R8 && value(3).dblVal == 0.5);
}

TEST_F(GltfNodes, JointsBelongToTheSceneWhereverTheyAre) {
    Load(
        {.nodes =
             R"({"name":"Skinned","mesh":0,"skin":0},{"name":"Root","children":[2,3]},{"name":"Joint"},{"name":"Not"})",
         .meshes = TriangleMesh(),
         .skins = R"({"joints":[2]})",
         .scenes = R"({"nodes":[0]})"});
    EXPECT_THAT(Names(), testing::ElementsAre("Skinned", "Root", "Joint"));
    EXPECT_EQ(Find("Joint").GetParentNode(), &Find("Root"));
}

TEST_F(GltfNodes, NodesThatHangADeepWayDownAreLoaded) {
    std::string nodes = "{\"children\":[1]}";
    for (int i = 2; i < 20000; ++i)
        nodes += ",{\"children\":[" + std::to_string(i) + "]}";
    Load({.nodes = nodes + ",{}"});
    EXPECT_EQ(m_pScene->GetNodes().size(), 20000u);
}

TEST_F(GltfNodes, ExtrasAreUserProperties) {
    Load(
        {.nodes =
             R"({"name":"N","extras":{"MeshMinDetail":"High","RenderPriority":7,"Big":4294967296,"Half":0.5,"Tenth":0.1,
                       "Whole":3.0,"No":false,"List":[1,2],"host":{"renderable":false}}})"});
    const auto value = [&](const char* pKey) {
        std::string text = "missing";
        Find("N").GetUserPropString(pKey, text);
        return text;
    };
    constexpr const char* values[][2] = {{"meshmindetail", "High"}, {"RenderPriority", "7"}, {"Big", "4294967296"},
                                         {"Half", "0.5"},           {"Tenth", "0.1"},        {"Whole", "3"},
                                         {"No", "false"},           {"List", "[1,2]"},       {"host", "missing"}};
    for (const auto& [pKey, pValue] : values)
        EXPECT_EQ(value(pKey), pValue) << pKey;
    EXPECT_FALSE(Find("N").Renderable());
}

TEST_F(GltfNodes, HostExtrasSayWhatGltfCant) {
    Load({.nodes =
              R"({"name":"A","extras":{"host":{"class":"box","bone":true,"wireColor":[255,128,0],"xref":"art/ref.max",
                       "visibility":[[0,1],[1,0]]}}},
                      {"name":"B","extras":{"host":{"class":"dummy","controller":"biped_slave"}}},
                      {"name":"C","mesh":0,"extras":{"host":{"class":"patch"}}})",
          .meshes = TriangleMesh()});
    EXPECT_EQ(Find("A").GetObjectRef()->ClassID(), XREFOBJ_CLASS_ID);
    EXPECT_STREQ(static_cast<XRefObject*>(Find("A").GetObjectRef())->GetFileName(false),
                 OSFile::FromNative((m_Folder / "art/ref.max").string()).c_str());
    EXPECT_EQ(ClassIdOf(Find("A")), BOXOBJ_CLASS_ID);
    EXPECT_TRUE(Find("A").GetBoneNodeOnOff());
    EXPECT_EQ(Find("A").GetWireColor(), 0x0080ffu);
    EXPECT_FLOAT_EQ(Find("A").GetVisibility(1200), 0.75f);
    EXPECT_EQ(ClassIdOf(Find("B")), DUMMY_CLASS_ID);
    EXPECT_EQ(Find("B").GetTMController()->ClassID(), BIPSLAVE_CONTROL_CLASS_ID);
    EXPECT_EQ(ClassIdOf(Find("C")), PATCHOBJ_CLASS_ID);
    EXPECT_THAT(m_Warnings, testing::IsEmpty());
}

TEST_F(GltfNodes, WrongAndUnknownMembersAreWarnings) {
    constexpr const char* members[][2] = {
        {"\"class\":\"sphere\"", "\"extras.host.class\" has the wrong type"},
        {"\"bone\":1", "\"extras.host.bone\" has the wrong type"},
        {"\"renderable\":\"no\"", "\"extras.host.renderable\" has the wrong type"},
        {"\"wireColor\":[1,2]", "\"extras.host.wireColor\" has the wrong type"},
        {"\"wireColor\":[1,2,256]", "\"extras.host.wireColor\" has the wrong type"},
        {"\"smoothing\":[-1]", "\"extras.host.smoothing\" has the wrong type"},
        {"\"visibility\":[1,2]", "\"extras.host.visibility\" has the wrong type"},
        {"\"colour\":1", "\"extras.host.colour\" is unknown"},
        {"\"target\":\"Nobody\"", "\"extras.host.target\" names \"Nobody\""},
    };
    for (const auto& [pMember, pExpected] : members) {
        Load({.nodes = R"({"name":"Arm_L","extras":{"host":{)" + std::string(pMember) + "}}}"});
        ASSERT_EQ(m_Warnings.size(), 1u) << pMember;
        EXPECT_THAT(m_Warnings[0],
                    testing::StartsWith("scene.glb: node \"Arm_L\": the member " + std::string(pExpected)));
        EXPECT_THAT(m_Warnings[0], testing::HasSubstr("; "));
    }
}

} // namespace
