#include "Tests/Host/Gltf/GltfFixture.h"
#include "Tests/Host/Gltf/PngFile.h"

#include <chrono>

#include <sys/wait.h>
#include <unistd.h>

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;
using testing::UnorderedElementsAre;
using testing::UnorderedElementsAreArray;

const std::string s_Jpeg = "\xff\xd8\xff\xe0 the rest of it is nobody's business here";

// Red, green / blue, white.
const PngFile s_Plain = {.rows = {{255, 0, 0, 0, 255, 0}, {0, 0, 255, 255, 255, 255}}};

std::string Tga(int bits, const std::vector<uint8_t>& pixels) {
    std::string bytes(18, '\0');
    bytes[2] = 2;
    bytes[12] = bytes[14] = 2;
    bytes[16] = static_cast<char>(bits);
    bytes[17] = bits == 32 ? 8 : 0;
    return bytes + std::string(pixels.begin(), pixels.end());
}

const std::string s_PlainTga = Tga(24, {255, 0, 0, 255, 255, 255, 0, 0, 255, 0, 255, 0});

std::string Base64(const std::string& bytes) {
    constexpr std::string_view digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (size_t i = 0; i < bytes.size(); i += 3) {
        uint32_t bits = 0;
        for (size_t k = 0; k < 3; ++k)
            bits = (bits << 8) | (i + k < bytes.size() ? static_cast<unsigned char>(bytes[i + k]) : 0u);
        for (size_t k = 0; k < 4; ++k)
            text += i + k <= bytes.size() ? digits[(bits >> (18 - 6 * k)) & 63] : '=';
    }
    return text;
}

// The sides that the header claims, with a checksum that fits.
std::string WithSides(std::string png, uint32_t width, uint32_t height) {
    for (unsigned i = 0; i < 4; ++i) {
        png[16 + i] = static_cast<char>(width >> (24 - 8 * i));
        png[20 + i] = static_cast<char>(height >> (24 - 8 * i));
    }
    uint32_t crc = ~0u;
    for (size_t i = 12; i < 29; ++i) {
        crc ^= static_cast<unsigned char>(png[i]);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ (crc & 1 ? 0xedb88320u : 0u);
    }
    for (unsigned i = 0; i < 4; ++i)
        png[29 + i] = static_cast<char>(~crc >> (24 - 8 * i));
    return png;
}

class GltfImages : public GltfFixture {
protected:
    // An image of the list, embedded in the buffer.
    std::string Embedded(const std::string& bytes, const std::string& more = R"("mimeType":"image/png")") {
        const size_t offset = m_Buffer.size();
        m_Buffer += bytes;
        m_Buffer.resize((m_Buffer.size() + 3) / 4 * 4);
        return "{\"bufferView\":" + std::to_string(AddView(offset, bytes.size())) + "," + more + "}";
    }
    static std::string UsedBy(int texture) {
        return R"({"pbrMetallicRoughness":{"baseColorTexture":{"index":)" + std::to_string(texture) + "}}}";
    }
    // A scene whose materials use all of the images, one each.
    static Lists SceneWith(const std::vector<std::string>& images) {
        Lists lists;
        std::string list;
        std::string textures;
        for (size_t i = 0; i < images.size(); ++i) {
            list += (i ? "," : "") + images[i];
            textures += (i ? ",{\"source\":" : "{\"source\":") + std::to_string(i) + "}";
            lists.materials += (i ? "," : "") + UsedBy(static_cast<int>(i));
        }
        lists.more = "\"images\":[" + list + "],\"textures\":[" + textures + "]";
        return lists;
    }
    std::string ReadBack(const std::string& name) const {
        std::ifstream file(m_Folder / "scene.textures" / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    std::vector<std::string> Unpacked() const {
        std::vector<std::string> names;
        std::error_code error;
        for (const auto& entry : std::filesystem::directory_iterator(m_Folder / "scene.textures", error))
            names.push_back(entry.path().filename().string());
        return names;
    }
    void SetAge(const std::string& name, int seconds) const {
        std::filesystem::last_write_time(m_Folder / name,
                                         std::filesystem::file_time_type::clock::now() - std::chrono::seconds(seconds));
    }
};

TEST_F(GltfImages, PngsOfEveryKindBecomeTga) {
    const std::vector<png_color> colours = {{255, 0, 0}, {0, 255, 0}, {0, 0, 255}, {255, 255, 255}};
    const struct {
        const char* pName;
        PngFile png;
        std::string tga;
    } cases[] = {
        {"rgb", s_Plain, s_PlainTga},
        {"interlaced", {.rows = s_Plain.rows, .isInterlaced = true}, s_PlainTga},
        {"gamma is ignored",
         {.rows = {{100, 0, 0, 0, 100, 0}, {0, 0, 100, 50, 50, 50}}, .gamma = 1.0},
         Tga(24, {100, 0, 0, 50, 50, 50, 0, 0, 100, 0, 100, 0})},
        {"rgb and alpha",
         {.colourType = PNG_COLOR_TYPE_RGBA, .rows = {{1, 2, 3, 4, 5, 6, 7, 8}, {9, 10, 11, 12, 13, 14, 15, 16}}},
         Tga(32, {11, 10, 9, 12, 15, 14, 13, 16, 3, 2, 1, 4, 7, 6, 5, 8})},
        {"a transparent colour",
         {.rows = s_Plain.rows,
          .hasTransparentColour = true,
          .transparent = {.index = 0, .red = 255, .green = 0, .blue = 0, .gray = 0}},
         Tga(32, {255, 0, 0, 255, 255, 255, 255, 255, 0, 0, 255, 0, 0, 255, 0, 255})},
        {"palette of 2 bits",
         {.bitDepth = 2, .colourType = PNG_COLOR_TYPE_PALETTE, .rows = {{0x10}, {0xb0}}, .palette = colours},
         s_PlainTga},
        {"palette with alpha",
         {.colourType = PNG_COLOR_TYPE_PALETTE, .rows = {{0, 1}, {2, 3}}, .palette = colours, .paletteAlpha = {7, 9}},
         Tga(32, {255, 0, 0, 255, 255, 255, 255, 255, 0, 0, 255, 7, 0, 255, 0, 9})},
        {"grey of 1 bit",
         {.bitDepth = 1, .colourType = PNG_COLOR_TYPE_GRAY, .rows = {{0x40}, {0x80}}},
         Tga(24, {255, 255, 255, 0, 0, 0, 0, 0, 0, 255, 255, 255})},
        {"grey and alpha of 16 bits, interlaced",
         {.bitDepth = 16,
          .colourType = PNG_COLOR_TYPE_GRAY_ALPHA,
          .rows = {{16, 0, 32, 255, 48, 0, 255, 255}, {0, 0, 0, 0, 64, 0, 128, 0}},
          .isInterlaced = true},
         Tga(32, {0, 0, 0, 0, 64, 64, 64, 128, 16, 16, 16, 33, 48, 48, 48, 255})},
    };
    for (const auto& test : cases) {
        Write("kind.png", test.png.Write());
        std::filesystem::remove_all(m_Folder / "scene.textures");
        Load(SceneWith({R"({"uri":"kind.png"})"}));
        EXPECT_THAT(m_Warnings, IsEmpty()) << test.pName;
        EXPECT_EQ(ReadBack("kind.tga"), test.tga) << test.pName;
    }
}

TEST_F(GltfImages, EmbeddedOnesAndThoseBesideAreUnpackedByContent) {
    const std::string png = s_Plain.Write();
    std::filesystem::create_directory(m_Folder / "art");
    Write("art/a b.png", png);
    Write("art/photo.png", s_Jpeg);
    Write("art/stays.jpg", s_Jpeg);
    Load(SceneWith({R"({"uri":"art/a%20b.png"})", R"({"uri":"art/photo.png"})", R"({"uri":"art/stays.jpg"})",
                    Embedded(png, R"("name":"InBuffer","mimeType":"image/png")"),
                    Embedded(s_Jpeg, R"("name":"Jpeg","mimeType":"image/jpeg")"),
                    Embedded(s_Jpeg, R"("name":"Mislabelled","mimeType":"image/png")"),
                    R"({"uri":"data:image/png;base64,)" + Base64(png) + "\"}"}));
    EXPECT_THAT(m_Warnings, IsEmpty());
    EXPECT_THAT(Unpacked(), UnorderedElementsAre("a b.tga", "photo.jpg", "InBuffer.tga", "Jpeg.jpg", "Mislabelled.jpg",
                                                 "image001.tga"));
    EXPECT_EQ(ReadBack("a b.tga"), s_PlainTga);
    EXPECT_EQ(ReadBack("photo.jpg"), s_Jpeg);
    EXPECT_EQ(ReadBack("InBuffer.tga"), s_PlainTga);
    EXPECT_EQ(ReadBack("Jpeg.jpg"), s_Jpeg);
    EXPECT_EQ(ReadBack("Mislabelled.jpg"), s_Jpeg);
    EXPECT_EQ(ReadBack("image001.tga"), s_PlainTga);
}

TEST_F(GltfImages, OnlyThoseInUseAreUnpacked) {
    Write("a.png", s_Plain.Write());
    Write("b.png", s_Plain.Write());
    Lists lists = SceneWith({R"({"uri":"a.png"})", R"({"uri":"b.png"})", R"({"uri":"missing.png"})"});
    lists.materials = R"({"pbrMetallicRoughness":{"baseColorTexture":{"index":0}},
                          "extras":{"host":{"maps":{"diffuse":{"texture":1}}}}})";
    Load(lists);
    EXPECT_THAT(m_Warnings, IsEmpty());
    EXPECT_THAT(Unpacked(), ElementsAre("b.tga"));
    lists.materials = UsedBy(2);
    Load(lists);
    EXPECT_THAT(m_Warnings, ElementsAre(AllOf(StartsWith("scene.glb: image \"missing\": can't open \"missing.png\""))));
    EXPECT_THAT(Unpacked(), ElementsAre("b.tga"));
}

TEST_F(GltfImages, AreUnpackedAgainOnlyWhenTheSceneOrTheImageIsNewer) {
    Write("a.png", s_Plain.Write());
    Write("scene.glb", MakeGlb(SceneWith({R"({"uri":"a.png"})"})));
    LoadFile("scene.glb");
    const auto ages = [&](int scene, int image, int unpacked) {
        Write("scene.textures/a.tga", "touched by hand");
        SetAge("scene.glb", scene);
        SetAge("a.png", image);
        SetAge("scene.textures/a.tga", unpacked);
        LoadFile("scene.glb");
        return ReadBack("a.tga");
    };
    EXPECT_EQ(ages(20, 20, 10), "touched by hand");
    EXPECT_EQ(ages(5, 20, 10), s_PlainTga) << "newer scene";
    EXPECT_EQ(ages(20, 5, 10), s_PlainTga) << "newer image";
    std::filesystem::remove(m_Folder / "scene.textures" / "a.tga");
    LoadFile("scene.glb");
    EXPECT_EQ(ReadBack("a.tga"), s_PlainTga) << "taken away";
    Write("scene.gltf", "{}");
    EXPECT_EQ(ages(20, 20, 10), s_PlainTga) << "perhaps of the scene that shares the folder";
}

TEST_F(GltfImages, NamesStayInTheFolderAndApart) {
    const std::string png = s_Plain.Write();
    std::vector<std::string> images;
    for (const std::string& name : {std::string("../../up"), std::string("..\\\\up"), std::string("C:\\\\up"),
                                    std::string("/root"), std::string(".."), std::string("Wall"), std::string("wall"),
                                    std::string("a\\u0001b"), std::string(119, 'x') + "\u00e4" + std::string(500, 'y')})
        images.push_back(Embedded(png, R"("name":")" + name + "\""));
    Load(SceneWith(images));
    EXPECT_THAT(m_Warnings, IsEmpty());
    EXPECT_THAT(Unpacked(), UnorderedElementsAre(".._.._up.tga", ".._up.tga", "C__up.tga", "_root.tga", "...tga",
                                                 "Wall.tga", "wall001.tga", "a_b.tga", std::string(119, 'x') + ".tga"));
}

TEST_F(GltfImages, WhatCantBeUnpackedIsOneWarning) {
    const std::string png = s_Plain.Write();
    const struct {
        std::string image;
        const char* pExpected;
    } cases[] = {
        {Embedded(WithSides(png, 4097, 1)), "4097 by 1 pixels, and 4096 a side is the most"},
        {Embedded(WithSides(png, 1, 0x7fffffff)), "1 by 2147483647 pixels, and 4096"},
        {Embedded(WithSides(png, 4096, 4096)), "claims 4096 by 4096 pixels, more than its"},
        {Embedded(WithSides(png, 2, 3)), "the PNG can't be read: "},
        {Embedded("GIF89a"), "neither PNG nor JPEG"},
        {Embedded(""), "neither PNG nor JPEG"},
        {R"({"bufferView":99})", "99"},
        {R"({"name":"nothing"})", "\"bufferView\""},
        {R"({"uri":"data:image/png;base64,!!!!"})", "not base64"},
        {R"({"uri":"/etc/x.png"})", "not a file beside the scene"},
        {R"({"uri":"http://here/x.png"})", "not a file beside the scene"},
        {R"({"uri":"."})", "is a folder"},
    };
    for (const auto& test : cases) {
        Load(SceneWith({test.image, test.image}));
        ASSERT_EQ(m_Warnings.size(), 2u) << test.image;
        EXPECT_THAT(m_Warnings[0], AllOf(StartsWith("scene.glb: "), HasSubstr(test.pExpected), HasSubstr("; ")));
        EXPECT_THAT(Unpacked(), IsEmpty()) << test.image;
    }
}

TEST_F(GltfImages, EveryTruncationIsAWarning) {
    const std::string png = s_Plain.Write();
    const size_t pixelsEnd = png.find("IEND") - 4;
    // The checksum of the pixels is the last thing that is looked at; without it they are whole all the same.
    for (size_t size = 0; size < pixelsEnd - 4; ++size) {
        Write("cut.png", png.substr(0, size));
        Load(SceneWith({R"({"uri":"cut.png"})"}));
        EXPECT_EQ(m_Warnings.size(), 1u) << "cut to " << size;
        EXPECT_THAT(Unpacked(), IsEmpty()) << "cut to " << size;
    }
}

TEST_F(GltfImages, AFolderThatCantBeWrittenLeavesTheSceneLoaded) {
    Write("scene.textures", "a file where the folder should be");
    Load(SceneWith({Embedded(s_Plain.Write())}));
    EXPECT_THAT(m_Warnings, ElementsAre(AllOf(HasSubstr("can't write \"" +
                                                        (m_Folder / "scene.textures/image001.tga").string() + "\""),
                                              EndsWith("that can be written"))));
    std::filesystem::remove(m_Folder / "scene.textures");
    std::filesystem::create_directories(m_Folder / "scene.textures" / "image001.tga" / "in the way");
    Load(SceneWith({Embedded(s_Plain.Write())}));
    EXPECT_THAT(m_Warnings, ElementsAre(HasSubstr("can't write ")));
    EXPECT_THAT(Unpacked(), ElementsAre("image001.tga")) << "nothing unfinished is left";
}

TEST_F(GltfImages, NoTextureHasAPathThatTheExporterRefuses) {
    const size_t room = 255 - At("").size() - 1;
    const std::string fault = ": the path of its file has 256 bytes; a texture's path holds at most 255: give its "
                              "folders shorter names";
    const auto inPlace = [](size_t size) { return R"({"uri":")" + std::string(size - 4, 'x') + R"(.tga"})"; };
    Lists lists = SceneWith({inPlace(room), inPlace(room + 1)});
    EXPECT_THAT(FaultOf(lists), AllOf(StartsWith("scene.glb: image \"xxx"), EndsWith(fault)));
    lists.materials = UsedBy(0);
    EXPECT_EQ(FaultOf(lists), "") << "nobody opens the other one";

    const std::string folder(room - std::strlen("/scene.textures/image001.tga"), 'x');
    const std::string embedded = MakeGlb(SceneWith({Embedded(s_Plain.Write())}));
    Write(folder + "/scene.glb", embedded);
    EXPECT_EQ(FaultOfFile(folder + "/scene.glb"), "");
    Write(folder + "x/scene.glb", embedded);
    EXPECT_EQ(FaultOfFile(folder + "x/scene.glb"), "scene.glb: image 0" + fault);
    EXPECT_FALSE(std::filesystem::exists(m_Folder / (folder + "x/scene.textures")));
}

TEST_F(GltfImages, WhatEndedProcessesLeftUnfinishedIsTakenAway) {
    const pid_t ended = fork();
    if (ended == 0)
        _exit(0);
    waitpid(ended, nullptr, 0);
    const auto leave = [&](const std::string& name, const std::string& process) {
        Write("scene.textures/" + name + "." + process + ".unfinished", "half a file");
        return name + "." + process + ".unfinished";
    };
    const std::string gone = std::to_string(ended);
    const std::string locked = leave("far.tga", gone);
    const OSFile::Handle lock =
        OSFile::Open(At("scene.textures/" + locked).c_str(), OSFile::Open_ReadWrite, true, false);
    // Written by others that live or may, and not ours at all.
    const std::vector<std::string> stay = {"image001.tga",
                                           locked,
                                           leave("a.tga", std::to_string(getppid())),
                                           leave("a.tga", std::to_string(getpid())),
                                           leave("a.tga", "0"),
                                           leave("a.tga", "-" + gone),
                                           leave("a.tga", gone + "a"),
                                           leave("a", "")};
    leave("image001.tga", gone);
    leave("other.jpg", gone);
    Load(SceneWith({Embedded(s_Plain.Write())}));
    EXPECT_THAT(m_Warnings, IsEmpty());
    EXPECT_THAT(Unpacked(), UnorderedElementsAreArray(stay));
    EXPECT_EQ(ReadBack("image001.tga"), s_PlainTga);
    SetAge("scene.glb", 100);
    leave("image001.tga", gone);
    LoadFile("scene.glb");
    EXPECT_THAT(Unpacked(), UnorderedElementsAreArray(stay)) << "with nothing to unpack";
    OSFile::Close(lock);
}

} // namespace
