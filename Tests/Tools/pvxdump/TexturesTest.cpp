#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "Shared/Cross/RenderAnim/Files/SharedShaderFile.h"
#include "Shared/Cross/RenderAnim/Intermediate/IntermediateFile.h"
#include "Shared/Cross/RenderAnim/Texture.h"
#include "Shared/Cross/RenderAnim/TextureConvert.h"
#include "Tests/Host/App/ChildProgram.h"
#include "Tests/Host/App/TestFolder.h"
#include "Tests/Shared/Cross/RenderAnim/Chunks/PayloadBytes.h"
#include "Tests/Shared/Cross/RenderAnim/Image/ImageTesting.h"
#include "Tests/Shared/Cross/RenderAnim/ModelFixture.h"
#include "Tools/pvxdump/Dump.h"
#include "Tools/pvxdump/TextureFiles.h"

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

class DumpTextures : public ModelFixture {
protected:
    DumpTextures() {
        std::string pattern = (std::filesystem::temp_directory_path() / "pvxdump-XXXXXX").string();
        m_Folder = mkdtemp(pattern.data());
    }
    ~DumpTextures() override { std::filesystem::remove_all(m_Folder); }

    static ShaderRef MakeTextured(const char* pShader, const std::vector<std::pair<const char*, ImageType>>& textures,
                                  uint32_t width = 8, uint32_t height = 4) {
        const ShaderRef shader = MakeShader(pShader);
        uint32_t channel = 0;
        for (const auto& [pName, type] : textures) {
            std::unique_ptr<Texture> pTexture = Image2Texture(MakeRandomImage(type, width, height, 2));
            pTexture->SetName(pName);
            TextureRef texture;
            texture.Set(std::move(pTexture));
            shader->SetChannelTexture(channel++, texture);
        }
        return shader;
    }
    static std::string MakeModelFile(const ShaderRef& shader) {
        RenderModel model;
        model.SetName("Walker");
        model.SetMeshGroup(MakeGroup({MakeMesh("Body", {shader})}));
        const auto pStream = MakeWriteStream();
        ra::WriteIntermediate(*pStream, model, {});
        return BytesOf(*pStream);
    }
    std::string Print(const std::string& bytes, bool asJson, const std::string& folder = {}) {
        return DumpFile(*MakeReadStream(bytes), "walker.pvx", {.json = asJson, .texturesFolder = folder});
    }
    void Put(const std::string& name, const std::string& content) const {
        std::ofstream(m_Folder / name, std::ios::binary) << content;
    }
    // Below the test's folder, with their sizes.
    std::vector<std::string> List() const {
        std::vector<std::string> files;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(m_Folder))
            if (entry.is_regular_file())
                files.push_back(std::filesystem::relative(entry.path(), m_Folder).string() + " " +
                                std::to_string(entry.file_size()));
        std::ranges::sort(files);
        return files;
    }

    std::filesystem::path m_Folder;
};

TEST_F(DumpTextures, SizeTypeAndLevelsAreTold) {
    const std::string bytes =
        MakeModelFile(MakeTextured("Clay", {{"art\\Wood", IMAGETYPE_RGBA32}, {"art\\Sky", IMAGETYPE_DXT1}}));
    const std::string text = Print(bytes, false);
    EXPECT_THAT(text, HasSubstr("2 textures"));
    EXPECT_THAT(text, testing::ContainsRegex("art.*Sky +8x4 +DXT1 +2 +24"));
    const json textures = json::parse(Print(bytes, true))["textures"];
    EXPECT_EQ(textures[0], json({{"name", "art\\Wood"},
                                 {"level", "generic"},
                                 {"type", "RGBA"},
                                 {"imageType", 0},
                                 {"width", 8},
                                 {"height", 4},
                                 {"mips", 2},
                                 {"bytes", 160}}));
    EXPECT_EQ(json::parse(Print(bytes, true))["undecoded"], json::object());
    EXPECT_THAT(List(), IsEmpty());
}

TEST_F(DumpTextures, PicturesAreWrittenByTheirKind) {
    const std::string bytes = MakeModelFile(MakeTextured(
        "Clay", {{"art\\Wood", IMAGETYPE_RGBA32}, {"art\\Sky", IMAGETYPE_DXT1}, {"art\\Grey", IMAGETYPE_LUMINANCE8}}));
    const std::string folder = (m_Folder / "New" / "Pictures").string();
    const json textures = json::parse(Print(bytes, true, folder))["textures"];
    EXPECT_EQ(textures[0]["file"], "art_Wood.tga");
    EXPECT_EQ(textures[0]["bytes"], 160);
    EXPECT_THAT(List(), ElementsAre("New/Pictures/art_Grey.tga " + std::to_string(18 + 8 * 4 * 4),
                                    "New/Pictures/art_Sky.dds " + std::to_string(128 + 24),
                                    "New/Pictures/art_Wood.tga " + std::to_string(18 + 8 * 4 * 4)));
    EXPECT_THAT(Print(bytes, false, folder), HasSubstr("art_Sky.dds"));
}

TEST_F(DumpTextures, HostileNamesStayInTheFolder) {
    const std::pair<const char*, const char*> titles[] = {
        {"../../etc/passwd", "_._.._etc_passwd"},
        {"..", "_."},
        {"", "texture"},
        {"Z:\\x\\y", "Z__x_y"},
        {"a\nb\x1b*?", "a_b___"},
        {"\xC3\x84rmel", "\xC3\x84rmel"},
    };
    for (const auto& [pName, pTitle] : titles)
        EXPECT_EQ(TextureFiles::MakeFileTitle(pName), pTitle) << pName;
    std::string longName;
    while (longName.size() < 1000)
        longName += "x\xC3\x84";
    const std::string title = TextureFiles::MakeFileTitle(longName);
    EXPECT_LE(title.size(), 120u);
    EXPECT_EQ(longName.substr(0, title.size()), title);
    EXPECT_NE(title.back(), '\xC3') << "no half of a character";

    const std::string pictures = (m_Folder / "Pictures").string();
    Print(MakeModelFile(MakeTextured("Clay", {{"../up", IMAGETYPE_RGBA32},
                                              {"..\\up", IMAGETYPE_RGBA32},
                                              {"..*UP", IMAGETYPE_DXT1},
                                              {"_._up_2", IMAGETYPE_RGBA32}})),
          false, pictures);
    std::vector<std::string> names = List();
    for (std::string& name : names)
        name = name.substr(0, name.find(' '));
    EXPECT_THAT(names, ElementsAre("Pictures/_._UP_3.dds", "Pictures/_._up.tga", "Pictures/_._up_2.tga",
                                   "Pictures/_._up_2_2.tga"));
}

TEST_F(DumpTextures, ShaderFilesOfBothLevels) {
    const ShaderRef shader = MakeTextured("art\\shared", {{"art\\Wood", IMAGETYPE_RGBA32}});
    const auto pGeneric = MakeWriteStream();
    ra::WriteSharedShader(*pGeneric, *shader.GetData());
    const auto pFinal = MakeWriteStream();
    ra::WriteSharedShaderFinal(*pFinal, *shader.GetData(), 0);
    const std::string text = Print(BytesOf(*pGeneric), false);
    EXPECT_THAT(text, HasSubstr("shared shader \"art\\shared\": 1 texture"));
    const json generic = json::parse(Print(BytesOf(*pGeneric), true));
    EXPECT_EQ(generic["kind"], "shared shader");
    EXPECT_EQ(generic["shaders"][0]["channels"][0]["texture"], "art\\Wood");
    const json texture = json::parse(Print(BytesOf(*pFinal), true, m_Folder.string()))["textures"][0];
    EXPECT_EQ(texture["level"], "final");
    EXPECT_EQ(texture["mips"], 2);
    EXPECT_THAT(List(), ElementsAre("art_Wood.tga " + std::to_string(18 + 8 * 4 * 4)));
}

TEST_F(DumpTextures, NoPartOfAPictureStays) {
    Put("walker.pvx",
        MakeModelFile(MakeTextured("Clay", {{"Small", IMAGETYPE_DXT1}, {"Wood", IMAGETYPE_RGBA32}}, 64, 64)));
    const std::vector<std::string> words = {"--textures", m_Folder.string(), (m_Folder / "walker.pvx").string()};
    const std::string model = List().front();
    const auto expectFault = [&] {
        const ProgramResult result = RunProgram("pvxdump", words, {}, {}, 4096);
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.err, words[2] + ": its texture 'Wood' can't be written to '" + m_Folder.string() +
                                  "/Wood.tga': File too large; make room there, or give --textures another folder\n");
    };
    expectFault();
    EXPECT_THAT(List(), ElementsAre("Small.dds 2688", model));
    Put("Wood.tga", "old");
    expectFault();
    EXPECT_THAT(List(), ElementsAre("Small.dds 2688", "Wood.tga 3", model));
    EXPECT_EQ(RunProgram("pvxdump", words).status, 0);
    EXPECT_THAT(List(), ElementsAre("Small.dds 2688", "Wood.tga 16402", model));
}

TEST_F(DumpTextures, WhatStandsInThePicturesPlaceIsTold) {
    std::filesystem::create_directory(m_Folder / "a_b.tga");
    std::string fault;
    try {
        Print(MakeModelFile(MakeTextured("Clay", {{"a\nb", IMAGETYPE_RGBA32}})), false, m_Folder.string());
    } catch (const std::runtime_error& error) {
        fault = error.what();
    }
    EXPECT_EQ(fault, "its texture 'a\\x0Ab' can't be written to '" + m_Folder.string() +
                         "/a_b.tga': Is a directory; make room there, or give --textures another folder");
    EXPECT_THAT(List(), IsEmpty());
}

class DumpTexturesProgram : public TestFolder {};

TEST_F(DumpTexturesProgram, FaultsAreOneLine) {
    const std::string file = Write("walker.pvx", ChunkBytes::FileHeader() + NamedFolder("QPVX", "Walker", "", 1));
    EXPECT_EQ(RunProgram("pvxdump", {"--textures", At("out"), file}).status, 0);
    EXPECT_TRUE(std::filesystem::is_directory(m_Folder / "out"));
    const std::pair<std::vector<std::string>, std::string> faults[] = {
        {{"--textures", file, file},
         "no pictures can be written to the folder '" + file + "': File exists; give --textures another folder"},
        {{"--textures", At(std::string(260, 'n')), file}, "': its path is too long; give --textures another folder"},
        {{"--textures", At("out"), "--chunks", file}, "--chunks excludes --textures"},
    };
    for (const auto& [words, text] : faults) {
        const ProgramResult result = RunProgram("pvxdump", words);
        EXPECT_EQ(result.status, 2);
        EXPECT_THAT(result.err, HasSubstr(text));
        EXPECT_EQ(Lines(result.err).size(), 1u) << result.err;
    }
}

} // namespace
