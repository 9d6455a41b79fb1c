#include "Tests/Host/Gltf/GltfFixture.h"

#include "Host/Scene/Materials.h"
#include "Host/Sdk/ClassIds.h"
#include "Host/Sdk/Material.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class GltfMaterials : public GltfFixture {
protected:
    static constexpr const char* s_Textures =
        R"("textures":[{"source":0},{"source":1,"sampler":0},{"source":2,"sampler":1},{"source":3,"sampler":2},{"source":0,"sampler":3}],
           "images":[{"uri":"art/a%20b.TGA"},{"uri":"c.png","name":"C"},{"uri":"data:image/jpeg;base64,AAAA"},{"uri":"d.bw"}],
           "samplers":[{"wrapS":33071,"wrapT":33648,"minFilter":9728},{"minFilter":9987,"wrapT":10497},{"magFilter":9729},
                       {"wrapS":33648,"wrapT":33648}])";

    // Makes a node for each material, named like its place in the list, and loads them.
    void LoadMaterials(const std::string& materials, int count) {
        AddFloats({0, 0, 0, 1, 0, 0, 0, 1, 0}, "VEC3");
        Lists lists{.materials = materials, .more = s_Textures};
        for (int i = 0; i < count; ++i) {
            const std::string number = std::to_string(i);
            lists.nodes.append(i ? "," : "").append(R"({"name":")").append(number);
            lists.nodes.append(R"(","mesh":)").append(number).append("}");
            lists.meshes += (i ? "," : "") + MeshOf(Primitive("\"POSITION\":0", -1, ",\"material\":" + number));
        }
        Load(lists);
    }
    Mtl& Get(int index) { return *Find(std::to_string(index)).GetMtl(); }
    StdMat& GetStandard(int index) {
        EXPECT_EQ(Get(index).ClassID(), DMTL_CLASS_ID);
        return static_cast<StdMat&>(Get(index));
    }
    static BitmapTex& Map(StdMat& material, int slot) {
        EXPECT_EQ(material.GetSubTexmap(slot)->ClassID(), BMTEX_CLASS_ID);
        return static_cast<BitmapTex&>(*material.GetSubTexmap(slot));
    }
};

TEST_F(GltfMaterials, AreStandardMaterials) {
    LoadMaterials(R"({"name":"Glass","doubleSided":true,"alphaMode":"BLEND","emissiveFactor":[0.1,0.2,0.3],
                      "pbrMetallicRoughness":{"baseColorFactor":[1,0.5,0.25,0.75],"roughnessFactor":0.25}},
                     {"name":"glass","alphaMode":"MASK"},{})",
                  3);
    StdMat& glass = GetStandard(0);
    EXPECT_EQ(glass.GetDiffuse(0), Color(1, 0.5f, 0.25f));
    EXPECT_EQ(glass.GetOpacity(0), 0.75f);
    EXPECT_EQ(glass.GetShininess(0), 0.75f);
    EXPECT_TRUE(glass.GetTwoSided());
    EXPECT_TRUE(glass.GetSelfIllumColorOn());
    EXPECT_EQ(glass.GetSelfIllumColor(0), Color(0.1f, 0.2f, 0.3f));
    EXPECT_EQ(glass.GetTransparencyType(), TRANSP_FILTER);
    EXPECT_EQ(glass.GetShinStr(0), 0.0f);
    EXPECT_FALSE(glass.MapEnabled(ID_DI));
    EXPECT_STREQ(Get(1).GetName(), "glass001");
    EXPECT_EQ(GetStandard(1).GetTransparencyType(), TRANSP_SUBTRACTIVE);
    EXPECT_EQ(GetStandard(1).GetShininess(0), 0.0f);
    EXPECT_STREQ(Get(2).GetName(), "Material001");
}

TEST_F(GltfMaterials, NodesWithoutOneKeepTheirNameForTheirShader) {
    AddFloats({0, 0, 0, 1, 0, 0, 0, 1, 0}, "VEC3");
    Load({.nodes = R"({"name":"Glass","mesh":0},{"name":"Window","mesh":1})",
          .meshes = MeshOf(Primitive("\"POSITION\":0", -1, "")) + "," +
                    MeshOf(Primitive("\"POSITION\":0", -1, ",\"material\":0")),
          .materials = R"({"name":"glass"})"});
    EXPECT_EQ(Find("Glass").GetMtl(), nullptr);
    EXPECT_STREQ(Find("Window").GetMtl()->GetName(), "glass001");
}

TEST_F(GltfMaterials, TexturesHaveTheirFileTilingAndFilter) {
    const auto base = [](int texture) {
        return R"({"pbrMetallicRoughness":{"baseColorTexture":{"index":)" + std::to_string(texture) + "}}}";
    };
    LoadMaterials(base(0) + "," + base(1) + "," + base(2) + "," + base(3) + R"(,{"emissiveTexture":{"index":0}})", 5);
    const auto file = [&](int i) { return std::string(Map(GetStandard(i), ID_DI).GetMapName()); };
    const auto tiling = [&](int i) { return Map(GetStandard(i), ID_DI).GetUVGen()->GetTextureTiling(); };
    const auto filter = [&](int i) { return Map(GetStandard(i), ID_DI).GetFilterType(); };
    EXPECT_THAT(file(0), testing::AllOf(testing::StartsWith("Z:\\"), testing::EndsWith("\\art\\a b.TGA")));
    EXPECT_THAT(file(1), testing::EndsWith("scene.textures\\C.tga"));
    EXPECT_THAT(file(2), testing::EndsWith("scene.textures\\image001.jpg"));
    EXPECT_THAT(file(3), testing::EndsWith("\\d.bw"));
    EXPECT_EQ(tiling(0), U_WRAP | V_WRAP);
    EXPECT_EQ(filter(0), FILTER_SAT);
    EXPECT_EQ(tiling(1), V_MIRROR);
    EXPECT_EQ(filter(1), FILTER_NADA);
    EXPECT_EQ(filter(2), FILTER_PYR);
    EXPECT_EQ(filter(3), FILTER_SAT);
    EXPECT_TRUE(GetStandard(4).MapEnabled(ID_SI));
    EXPECT_FALSE(GetStandard(4).MapEnabled(ID_DI));
}

TEST_F(GltfMaterials, TextureTransformsKeepTheirPlaceOnThePicture) {
    LoadMaterials(R"({"pbrMetallicRoughness":{"baseColorTexture":{"index":0,"extensions":{"KHR_texture_transform":
                      {"offset":[0.1,0.2],"rotation":0.5,"scale":[2,3]}}}}})",
                  1);
    Matrix3 m;
    Map(GetStandard(0), ID_DI).GetUVGen()->GetUVTransform(m);
    // In glTF: scaled, turned counter-clockwise on a v that runs down, moved.
    const float u = 0.3f;
    const float v = 0.6f;
    const float s = std::sin(0.5f);
    const float c = std::cos(0.5f);
    const float wantedU = 0.1f + c * 2 * u + s * 3 * v;
    const float wantedV = 0.2f - s * 2 * u + c * 3 * v;
    const Point3 host = TransformPoint({u, 1 - v, 0}, m);
    EXPECT_NEAR(host.x, wantedU, 1e-5f);
    EXPECT_NEAR(host.y, 1 - wantedV, 1e-5f);
}

TEST_F(GltfMaterials, OfMirroredCopiesTheHostCountsTwoAsATile) {
    const std::string texture = R"("pbrMetallicRoughness":{"baseColorTexture":{"index":4)";
    LoadMaterials("{" + texture + "}}},{" + texture +
                      R"(,"extensions":{"KHR_texture_transform":{"offset":[0.5,0],"scale":[2,4]}}}}},{)" + texture +
                      R"(}},"extras":{"host":{"maps":{"diffuse":{"mirror":"uv"}}}}})",
                  3);
    const auto place = [&](int i, const Point3& point) {
        StdUVGen& uv = *Map(GetStandard(i), ID_DI).GetUVGen();
        EXPECT_EQ(uv.GetTextureTiling(), U_MIRROR | V_MIRROR);
        Matrix3 m;
        uv.GetUVTransform(m);
        return TransformPoint(point, m);
    };
    EXPECT_EQ(place(0, {1, 1, 0}), Point3(0.5f, 0.5f, 0));
    EXPECT_EQ(place(1, {1, 1, 0}), Point3(1.25f, 0.5f, 0));
    EXPECT_EQ(place(2, {1, 1, 0}), Point3(1, 1, 0)) << "the host's own word";
}

TEST_F(GltfMaterials, APlaceInTheHostExtrasReplacesTheTextureTransform) {
    const auto material = [](const char* pPlace) {
        return R"({"pbrMetallicRoughness":{"baseColorTexture":{"index":0,"extensions":{"KHR_texture_transform":
                   {"offset":[0.1,0.2],"rotation":0.5,"scale":[2,3]}}}},"extras":{"host":{"maps":{"diffuse":{)" +
               std::string(pPlace) + "}}}}}";
    };
    LoadMaterials(material(R"("offset":[0.5,0.25])") + "," + material(R"("scale":[4,5])"), 2);
    const scene::UVSettings places[] = {{.uOffset = 0.5f, .vOffset = 0.25f}, {.uScale = 4.0f, .vScale = 5.0f}};
    for (int i = 0; i < 2; ++i) {
        Matrix3 made;
        Map(GetStandard(i), ID_DI).GetUVGen()->GetUVTransform(made);
        Matrix3 expected;
        scene::UVPlacement(places[i]).GetUVTransform(expected);
        EXPECT_EQ(made, expected) << i;
    }
}

TEST_F(GltfMaterials, HostExtrasSayWhatGltfCant) {
    LoadMaterials(R"({"name":"S","extras":{"host":{"class":"standard","faceMap":true,"twoSided":true,"supersample":true,
                      "diffuse":[0.1,0.2,0.3],"specular":[0.4,0.5,0.6],"shininess":0.7,"specularLevel":0.8,"opacity":0.9,
                      "selfIllum":0.5,"transparency":"additive",
                      "maps":{"opacity":{"texture":0,"amount":0.25,"tile":"u","mirror":"v","filter":"pyramidal",
                                         "offset":[0.5,0.25],"scale":[2,4],"channel":3,"environment":true},
                              "reflection":{"class":"Noise","enabled":false}},
                      "tracks":{"opacity":[[0,0],[1,1]],"opacity.amount":[[0,1],[2,0]],"opacity.vOffset":[[0,0],[1,3]]}}}},
                     {"name":"M","extras":{"host":{"class":"multi","subs":[0,null,2]}}},
                     {"name":"B","extras":{"host":{"class":"Blend"}}})",
                  3);
    EXPECT_THAT(m_Warnings, testing::IsEmpty());
    StdMat& s = GetStandard(0);
    EXPECT_EQ(s.Requirements(-1) & MTLREQ_FACEMAP, MTLREQ_FACEMAP);
    EXPECT_TRUE(s.GetTwoSided() && s.GetSamplingOn());
    EXPECT_EQ(s.GetDiffuse(0), Color(0.1f, 0.2f, 0.3f));
    EXPECT_EQ(s.GetSpecular(0), Color(0.4f, 0.5f, 0.6f));
    EXPECT_EQ(s.GetShininess(0), 0.7f);
    EXPECT_EQ(s.GetShinStr(0), 0.8f);
    EXPECT_FALSE(s.GetSelfIllumColorOn());
    EXPECT_EQ(s.GetSelfIllum(0), 0.5f);
    EXPECT_EQ(s.GetTransparencyType(), TRANSP_ADDITIVE);
    EXPECT_FLOAT_EQ(s.GetOpacity(2400), 0.5f) << "the track, not the constant";
    EXPECT_FLOAT_EQ(s.GetTexmapAmt(ID_OP, 4800), 0.5f);
    BitmapTex& map = Map(s, ID_OP);
    EXPECT_EQ(map.GetFilterType(), FILTER_PYR);
    EXPECT_EQ(map.GetUVGen()->GetTextureTiling(), U_WRAP | V_MIRROR);
    EXPECT_EQ(map.GetUVGen()->GetUOffs(0), 0.5f);
    EXPECT_FLOAT_EQ(map.GetUVGen()->GetVOffs(1600), 1.0f);
    EXPECT_EQ(map.GetUVGen()->GetVScl(0), 4.0f);
    EXPECT_EQ(map.GetUVGen()->GetMapChannel(), 3);
    EXPECT_EQ(map.GetUVGen()->GetCoordMapping(0), UVMAP_SPHERE_ENV);
    std::string className;
    s.GetSubTexmap(ID_RL)->GetClassName(className);
    EXPECT_EQ(className, "Noise");
    EXPECT_FALSE(s.MapEnabled(ID_RL));

    ASSERT_EQ(Get(1).ClassID(), MULTI_CLASS_ID);
    EXPECT_EQ(Get(1).GetSubMtl(0), &Get(0));
    EXPECT_EQ(Get(1).GetSubMtl(1), nullptr);
    EXPECT_EQ(Get(1).GetSubMtl(2), &Get(2));
    Get(2).GetClassName(className);
    EXPECT_EQ(className, "Blend");
}

TEST_F(GltfMaterials, WrongAndUnknownMembersAreWarnings) {
    constexpr const char* members[][2] = {
        {"\"opacity\":\"half\"", "\"extras.host.opacity\" has the wrong type"},
        {"\"diffuse\":[1]", "\"extras.host.diffuse\" has the wrong type"},
        {"\"selfIllum\":true", "\"extras.host.selfIllum\" has the wrong type"},
        {"\"class\":\"multi\",\"subs\":[9]", "\"extras.host.subs\" has the wrong type"},
        {"\"colour\":1", "\"extras.host.colour\" is unknown"},
        {"\"maps\":[]", "\"extras.host.maps\" has the wrong type"},
        {"\"maps\":{\"bump\":{}}", "\"extras.host.maps.bump\" is unknown"},
        {"\"maps\":{\"diffuse\":1}", "extras.host.maps.diffuse has the wrong type"},
        {"\"maps\":{\"diffuse\":{\"texture\":9}}", "\"extras.host.maps.diffuse.texture\" has the wrong type"},
        {"\"maps\":{\"diffuse\":{\"tile\":\"x\"}}", "\"extras.host.maps.diffuse.tile\" has the wrong type"},
        {"\"tracks\":{\"gloss\":[[0,0]]}", "\"extras.host.tracks.gloss\" is unknown"},
        {"\"tracks\":{\"opacity\":[]}", "\"extras.host.tracks.opacity\" has the wrong type"},
        {"\"tracks\":{\"diffuse.hue\":[[0,0]]}", "\"extras.host.tracks.diffuse.hue\" is unknown"},
    };
    for (const auto& [pMember, pExpected] : members) {
        LoadMaterials(R"({"name":"M","extras":{"host":{)" + std::string(pMember) + "}}}", 1);
        EXPECT_THAT(m_Warnings, ElementsAre(testing::AllOf(testing::StartsWith("scene.glb: material \"M\": "),
                                                           HasSubstr(pExpected))))
            << pMember;
    }
}

} // namespace
