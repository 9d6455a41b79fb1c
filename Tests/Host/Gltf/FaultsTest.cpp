#include "Tests/Host/Gltf/GltfFixture.h"

#include "Host/Gltf/Uri.h"

namespace {

using GltfFaults = GltfFixture;
using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

TEST_F(GltfFaults, EveryBrokenFileIsOneLineWithTheFileAndTheReason) {
    const std::string asset = R"({"asset":{"version":"2.0"})";
    const std::pair<std::string, std::string> files[] = {
        {"", "it is not glTF"},
        {"solid cube", "it is not glTF"},
        {"[1]", "it is not glTF"},
        {"{\"a\":", "its JSON can't be read: "},
        {"{}", "it has no \"asset\""},
        {R"({"asset":{"version":"1.0"}})", "it is glTF version \"1.0\""},
        {"{\"asset\":" + std::string(200, '[') + std::string(200, ']') + "}", "its JSON nests deeper than"},
        {std::string(1000000, '{'), "its JSON can't be read"},
        {"{\"a\":" + std::string(1000000, '['), "its JSON nests deeper than"},
        {asset + R"(,"nodes":3})", "\"nodes\" is not an array"},
        {asset + R"(,"nodes":[{"name":"Arm_L","children":[0]}]})", "node \"Arm_L\": it is among its own ancestors"},
        {asset + R"(,"nodes":[{"children":[1]},{"children":[0]}]})", "it is among its own ancestors"},
        {asset + R"(,"nodes":[{"children":[2]},{"children":[2]},{"name":"X"}]})", "node \"X\": it is a child of both"},
        {asset + R"(,"nodes":[{"children":[7]}]})", "\"children\" is 7, but the file has only 1"},
        {asset + R"(,"nodes":[{"children":[-1]}]})", "\"children\" is not an index"},
        {asset + R"(,"nodes":[{"mesh":4294967296}]})", "\"mesh\" is not an index"},
        {asset + R"(,"nodes":[{"mesh":0}]})", "\"mesh\" is 0, but the file has only 0"},
        {asset + R"(,"nodes":[{"translation":[1,2]}]})", "\"translation\" is not an array of 3 numbers"},
        {asset + R"(,"nodes":[{"translation":[1,2,1e300]}]})", "\"translation\" is not an array of numbers"},
        {asset + R"(,"nodes":[{"name":5}]})", "\"name\" is not a string"},
        {asset + R"(,"nodes":[{"children":[1]},{"name":"Y"}],"scenes":[{"nodes":[0,1]}]})",
         "node \"Y\": it is a root of the scene and a child of"},
        {asset + R"(,"nodes":[{"name":"Z"}],"scenes":[{"nodes":[0]}],"scene":2})", "\"scene\" is 2"},
        {asset + R"(,"skins":[{"joints":[]}]})", "skin 0: it has no joints"},
        {asset + R"(,"extensionsRequired":["EXT_meshopt_compression"]})",
         "it requires the extension \"EXT_meshopt_compression\", which this host does not know"},
        {asset + R"(,"nodes":[{"extensions":{"KHR_lights_punctual":{"light":0}}}],
            "extensions":{"KHR_lights_punctual":{"lights":[{"type":"candle"}]}}})",
         "light 0: its type \"candle\" is unknown"},
        {asset + R"(,"nodes":[{"camera":0}],"cameras":[{"type":"fish"}]})", "camera 0: its type \"fish\" is unknown"},
    };
    for (const auto& [content, expected] : files) {
        Write("scene.gltf", content);
        const std::string fault = FaultOfFile("scene.gltf");
        EXPECT_THAT(fault, StartsWith("scene.gltf: ")) << content.substr(0, 100);
        EXPECT_THAT(fault, HasSubstr(expected));
        EXPECT_THAT(fault, HasSubstr("; ")) << "what to do";
        EXPECT_EQ(fault.find('\n'), std::string::npos);
    }
}

TEST_F(GltfFaults, KnownExtensionsMayBeRequired) {
    Write("scene.gltf", R"({"asset":{"version":"2.0"},"extensionsUsed":["KHR_materials_unlit","KHR_texture_transform"],
        "extensionsRequired":["KHR_materials_unlit","KHR_texture_transform","KHR_lights_punctual","KHR_mesh_quantization"]})");
    EXPECT_EQ(FaultOfFile("scene.gltf"), "");
    EXPECT_THAT(m_Warnings, testing::ElementsAre(HasSubstr("\"KHR_materials_unlit\", which is only approximated")));
}

TEST_F(GltfFaults, MissingFilesAreNamed) {
    EXPECT_THROW(gltf::Load(OSFile::FromNative("back\\slash.glb"), m_Options, nullptr), gltf::LoadError);
    // A scene with its folders, however many: any of them may be misspelled.
    const std::string folders = "Scnes/" + std::string(150, 'x') + "/";
    const std::string start = (m_Folder / "").string();
    EXPECT_THAT(FaultOfFile("gone.glb"), StartsWith("gone.glb: can't open \"" + start + "gone.glb\" (No such file"));
    EXPECT_THAT(FaultOfFile(folders + "gone.glb"), HasSubstr("can't open \"" + start + folders + "gone.glb\" ("));
    std::filesystem::create_directory(m_Folder / "folder.glb");
    for (const char* pName : {"folder.glb", "folder.glb/"})
        EXPECT_THAT(FaultOfFile(pName), AllOf(StartsWith("folder.glb: \"" + start + "folder.glb"),
                                              HasSubstr("\" is a folder; give a file")));

    const std::string mesh = TriangleMesh();
    Lists lists{.nodes = "{\"mesh\":0}", .meshes = mesh};
    for (const auto& [uri, expected] :
         {std::pair("data%20of%20it.bin", "buffer 0: can't open \"data of it.bin\""),
          std::pair("http://far/away.bin", "is not a file beside the scene"),
          std::pair("/etc/passwd", "is not a file beside the scene"),
          std::pair("data:application/octet-stream;base64,A?", "its data is not base64"),
          std::pair("data:application/octet-stream;base64,AAAA", "it is cut off: 3 of 36")}) {
        lists.more = BufferList(uri);
        Write("scene.gltf", MakeText(lists));
        EXPECT_THAT(FaultOfFile("scene.gltf"), HasSubstr(expected));
    }
    Write("data of it.bin", m_Buffer.substr(0, 35));
    lists.more = BufferList("data%20of%20it.bin");
    Write("scene.gltf", MakeText(lists));
    EXPECT_THAT(FaultOfFile("scene.gltf"), HasSubstr("buffer 0: it is cut off: 35 of 36"));
    Write("data of it.bin", m_Buffer);
    EXPECT_EQ(FaultOfFile("scene.gltf"), "");
    EXPECT_EQ(MeshAt(Find("Node001"))->numFaces, 1);
}

TEST_F(GltfFaults, EveryTruncationIsRefused) {
    const std::string whole = MakeGlb({.nodes = "{\"mesh\":0}", .meshes = TriangleMesh()});
    for (size_t size = 0; size < whole.size(); ++size) {
        Write("scene.glb", whole.substr(0, size));
        EXPECT_THAT(FaultOfFile("scene.glb"), StartsWith("scene.glb: ")) << "cut to " << size;
    }
    Write("scene.txt", whole);
    EXPECT_EQ(FaultOfFile("scene.txt"), "") << "the content counts, not the name";
}

TEST_F(GltfFaults, EverySingleChangedByteEndsWell) {
    AddFloats({0, 0, 1, 0, 0, 1, 0, 0, 1}, "VEC3");
    AddIndices({0, 1, 2});
    const std::string whole = MakeGlb({.nodes = R"({"mesh":0,"name":"N"},{"children":[0]})",
                                       .meshes = MeshOf(Primitive("\"POSITION\":0,\"NORMAL\":0", 1))});
    Write("scene.glb", whole);
    ASSERT_EQ(FaultOfFile("scene.glb"), "");
    ASSERT_EQ(MeshAt(Find("N"))->numFaces, 1);
    int taken = 0;
    int refused = 0;
    for (size_t i = 0; i < whole.size(); ++i)
        for (const char value : {'9', '}', '\xff'}) {
            std::string changed = whole;
            changed[i] = value;
            Write("scene.glb", changed);
            const std::string fault = FaultOfFile("scene.glb");
            if (!fault.empty()) {
                ASSERT_THAT(fault, StartsWith("scene.glb: ")) << "byte " << i;
                ++refused;
                continue;
            }
            for (const auto& pNode : m_pScene->GetNodes())
                MeshAt(*pNode);
            ++taken;
        }
    EXPECT_GT(taken, 0);
    EXPECT_GT(refused, 0);
}

TEST_F(GltfFaults, AccessorsThatClaimTooMuchAreRefused) {
    AddFloats(std::vector<float>(9, 0.5f), "VEC3");   // 0, view 0 of 36 bytes
    AddIndices({0, 1, 3});                            // 1, reaches beyond three vertices
    AddFloats({0, 0, 0, 1, 0, 0, 0, NAN, 0}, "VEC3"); // 2
    AddFloats({0, 0, 1, 1}, "VEC2");                  // 3: two elements
    AddView(8, 4294967295u);                          // 3
    AddView(0, 36, ",\"byteStride\":4");              // 4
    AddView(0, 36, ",\"byteStride\":4294967296");     // 5
    const auto accessor = [this](const std::string& members) {
        return AddAccessor(R"({"type":"VEC3","componentType":5126,)" + members + "}");
    };
    const std::pair<int, std::string> positions[] = {
        {99, "it refers to number 99 of \"accessors\""},
        {2, "POSITION holds something that is no number"},
        {3, "POSITION is not of three components"},
        {accessor(R"("bufferView":0,"count":4)"), "4 elements reach beyond its bufferView"},
        {accessor(R"("bufferView":0,"count":4294967296)"), "4294967296 elements reach beyond its bufferView"},
        {accessor(R"("bufferView":0,"count":18446744073709551615)"), "reach beyond its bufferView"},
        {accessor(R"("bufferView":0,"byteOffset":18446744073709551615,"count":1)"), "reach beyond its bufferView"},
        {accessor(R"("bufferView":0,"byteOffset":4,"count":3)"), "3 elements reach beyond its bufferView"},
        {accessor(R"("bufferView":0,"count":-3)"), "\"count\" is not a whole number"},
        {accessor(R"("bufferView":0)"), "\"count\" is missing"},
        {accessor(R"("count":4000000000)"), "its count 4000000000 is out of range"},
        {accessor(R"("bufferView":9,"count":3)"), "it refers to number 9 of \"bufferViews\""},
        {accessor(R"("bufferView":4,"count":3)"), "it reaches beyond its buffer"},
        {accessor(R"("bufferView":5,"count":3)"), "its elements overlap"},
        {accessor(R"("bufferView":6,"count":3)"), "its stride is out of range"},
        {accessor(R"("bufferView":0,"count":3,"sparse":{"count":1})"), "its sparse part has no indices"},
        {accessor(
             R"("bufferView":0,"count":3,"sparse":{"count":4,"indices":{"bufferView":1,"componentType":5123},"values":{"bufferView":0}})"),
         "its sparse part reaches beyond"},
        {accessor(
             R"("bufferView":0,"count":3,"sparse":{"count":3,"indices":{"bufferView":1,"componentType":5123},"values":{"bufferView":0}})"),
         "its sparse part sets element 3 of 3"},
        {AddAccessor(R"({"bufferView":0,"count":3,"type":"VEC3","componentType":5124})"), "its component type 5124"},
        {AddAccessor(R"({"bufferView":0,"count":3,"type":"VEC9","componentType":5126})"), "its type \"VEC9\""},
    };
    for (const auto& [position, expected] : positions)
        EXPECT_THAT(
            FaultOf({.nodes = "{\"mesh\":0}", .meshes = MeshOf(Primitive("\"POSITION\":" + std::to_string(position)))}),
            HasSubstr(expected));

    const std::pair<std::string, std::string> primitives[] = {
        {Primitive(""), "a primitive has no POSITION"},
        {Primitive("\"POSITION\":0", 1), "index 3 reaches beyond its 3 vertices"},
        {Primitive("\"POSITION\":0", 0), "its indices are no whole numbers"},
        {Primitive("\"POSITION\":0,\"NORMAL\":3"), "NORMAL has 2 components instead of 3"},
        {Primitive("\"POSITION\":0,\"TEXCOORD_0\":3"), "TEXCOORD_0 has 2 elements for 3 vertices"},
        {Primitive("\"POSITION\":0,\"JOINTS_0\":0"), "JOINTS_0 has 3 components instead of 4"},
        {Primitive("\"POSITION\":0", -1, ",\"mode\":9"), "its primitive mode 9 is unknown"},
        {Primitive("\"POSITION\":0", -1, ",\"material\":0"), "\"material\" is 0, but the file has only 0"},
    };
    for (const auto& [primitive, expected] : primitives)
        EXPECT_THAT(FaultOf({.nodes = "{\"mesh\":0}", .meshes = "{\"name\":\"M\",\"primitives\":[" + primitive + "]}"}),
                    testing::AllOf(StartsWith("scene.glb: mesh \"M\": "), HasSubstr(expected)));
}

TEST_F(GltfFaults, NamesCantBreakTheLine) {
    Write("scene.gltf", R"({"asset":{"version":"2.0"},"nodes":[{"name":"a\nb\u001b[31m","children":[0]}]})");
    EXPECT_THAT(FaultOfFile("scene.gltf"), HasSubstr("node \"a?b?[31m\""));
}

TEST_F(GltfFaults, FrameRatesOutOfRangeAreRefused) {
    Write("scene.gltf", R"({"asset":{"version":"2.0"}})");
    for (const int fps : {0, -1, 4801}) {
        m_Options.fps = fps;
        EXPECT_THAT(FaultOfFile("scene.gltf"), HasSubstr("give --fps a number in 1..4800"));
    }
}

TEST(GltfUri, DecodesAndRefuses) {
    EXPECT_EQ(gltf::DecodePercent("a%20b%2Fc%zz%4"), "a b/c%zz%4");
    const auto bytes = gltf::DecodeBase64("aGVsbG8=");
    ASSERT_TRUE(bytes);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(bytes->data()), bytes->size()), "hello");
    EXPECT_TRUE(gltf::DecodeBase64("")->empty());
    EXPECT_EQ(gltf::DecodeBase64("aGVsbG8")->size(), 5u);
    EXPECT_FALSE(gltf::DecodeBase64("aGVsb"));
    EXPECT_FALSE(gltf::DecodeBase64("aG V"));
    EXPECT_FALSE(gltf::SplitDataUri("data:text/plain,hello"));
    EXPECT_EQ(gltf::SplitDataUri("data:image/png;base64,AAAA")->mimeType, "image/png");
    EXPECT_EQ(gltf::ResolveFileUri("Z:\\a\\", "b/c%20d.bin"), "Z:\\a\\b/c d.bin");
    for (const char* pUri : {"", "/a", "\\a", "%2Fa", "C:a", "file:///a", "a%00b"})
        EXPECT_FALSE(gltf::ResolveFileUri("Z:\\", pUri)) << pUri;
}

} // namespace
