#include "Tests/Host/App/ChildProgram.h"
#include "Tests/Host/App/SmallScene.h"
#include "Tests/Host/App/TestFolder.h"

#include <gmock/gmock.h>

// Project trees as pvxhost and its module see them, by the module that users have.

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

class Project : public TestFolder {
protected:
    // A studio with a game and the base that it inherits from.
    void SetUp() override {
        for (const char* pFolder : {"Studio/Game/Source/Art/Tank", "Out"})
            std::filesystem::create_directories(m_Folder / pFolder);
        WriteIni("; the studio\n\n[Global]\nToolsData=Tools\n" + Section("Game", "Base") + Section("Base", ""));
    }
    void WriteIni(const std::string& text) const {
        std::string lines;
        for (const char c : text)
            lines += c == '\n' ? std::string("\r\n") : std::string(1, c);
        Write("Studio/pipeline.ini", lines);
    }
    static std::string Section(const std::string& name, const std::string& parent) {
        std::string text = "[project:" + name + "]\n";
        for (const char* pKey : {"Source", "SourceShared", "Burn", "Intermediate", "Generic", "Final", "Preview"})
            text += std::string("Data") + pKey + "=" + name + "\\" + pKey + "\n";
        return text + "LocaleFolder=loc\nAttrLoc=attr\nParent=" + parent + "\n";
    }
};

TEST_F(Project, AnUnusableConfigurationIsToldWithItsReason) {
    const std::string file = At("Studio/Game/Source/x.glb");
    const std::string says = "ombl_pipeline_sourcetofinal: PIPELINE -- ";
    const struct {
        std::string text;
        const char* pReason;
    } s_Cases[] = {
        {"", "holds no section"},
        {std::string(5000, '\xff'), "holds no section"},
        {std::string(0x1000001, 'x'), "more than the 16777216 that a pipeline configuration may have"},
        {"[Global]\r\nToolsData=x\r\n", "holds no section [project:name]"},
        {"[project:Game]\r\nDataSource=Game\\Source\r\n", "project 'game' has no key 'datasourceshared'"},
    };
    const std::string scene = Write("tile.glb", MakeTileScene());
    for (const auto& [text, pReason] : s_Cases) {
        Write("Studio/pipeline.ini", text);
        const ProgramResult called = RunProgram("pvxhost", {"call", "ombl_pipeline_sourcetofinal", file});
        EXPECT_EQ(called.status, 1);
        EXPECT_EQ(called.out, "undefined\n");
        EXPECT_THAT(called.err, AllOf(StartsWith(says), HasSubstr("pipeline.ini"), HasSubstr(pReason)));
        const ProgramResult exported =
            RunProgram("pvxhost", {"export", scene, At("Out/x.pvx"), "--home", At("Studio/Game")});
        EXPECT_EQ(exported.status, 0);
        EXPECT_THAT(exported.err, HasSubstr(pReason));
        EXPECT_EQ(Lines(called.err).size(), 1u);
        EXPECT_EQ(Lines(exported.err).size(), 1u);
    }
    std::filesystem::remove(m_Folder / "Studio/pipeline.ini");
    EXPECT_THAT(RunProgram("pvxhost", {"call", "ombl_pipeline_sourcetofinal", file}).err,
                AllOf(HasSubstr("no pipeline.ini in Z:\\"), HasSubstr(", Z:\\\n")));
}

TEST_F(Project, AnExportNamesItsReferencesByTheirDataPaths) {
    const std::string scene = "Studio/Game/Source/Art/Tank/Tank.glb";
    const std::string target = At("Out/Tank.pvx");
    const auto exportWith = [&](const std::string& file) {
        Write(scene, MakeTileScene("\"xref\":\"" + file + "\""));
        const ProgramResult result = RunProgram("pvxhost", {"export", At(scene), target, "--home", At("Studio")});
        EXPECT_EQ(result.status, 0) << result.err;
        return RunProgram("pvxdump", {target}).out;
    };
    EXPECT_THAT(exportWith("../Wheel/REFERENCE/REF.glb"), HasSubstr("art/wheel"));
    EXPECT_THAT(exportWith("Gun.glb"), HasSubstr("art/tank/gun"));
    EXPECT_THAT(exportWith(At("Studio/Base/Source/Art/Crew.glb")), HasSubstr("art/crew"));
    EXPECT_THAT(exportWith("Z:" + At("Studio/Base/Source/Art/Crew.glb")), HasSubstr("art/crew"));
    EXPECT_THAT(exportWith(At("Elsewhere/Crew.glb")), testing::Not(HasSubstr("crew")));
    EXPECT_THAT(Read("Out/Tank.log"), HasSubstr("comes from a file outside of every project"));
}

TEST_F(Project, AnExportHoldsThePicturesOfItsProject) {
    const std::string picture = std::string("\0\0\2\0\0\0\0\0\0\0\0\0\2\0\1\0\x18\0abcdef", 24);
    const std::string scene = Write("Studio/Game/Source/Art/Tank/Tank.glb",
                                    MakeTileScene("", R"("materials":[{"name":"Clay","emissiveTexture":{"index":1},
        "pbrMetallicRoughness":{"baseColorTexture":{"index":0}}}],"textures":[{"source":0},{"source":1}],
        "images":[{"uri":"Wood.tga"},{"uri":"../../../../Far.tga"}])"));
    const auto exportScene = [&] {
        const ProgramResult result =
            RunProgram("pvxhost", {"export", scene, At("Out/Tank.pvx"), "--home", At("Studio")});
        EXPECT_EQ(result.status, 0);
        return result.err;
    };
    EXPECT_THAT(exportScene(), AllOf(HasSubstr("Unable to load texture"), HasSubstr("Wood.tga'!")));
    Write("Studio/Game/Source/Art/Tank/Wood.tga", picture);
    Write("Studio/Far.tga", picture);
    const std::string notes = exportScene();
    EXPECT_EQ(Lines(notes).size(), 1u) << notes;
    EXPECT_THAT(notes, AllOf(HasSubstr("Far.tga: lies in the source folder of no project"),
                             HasSubstr("so the model has no name for it")));
    const std::string dump = RunProgram("pvxdump", {At("Out/Tank.pvx"), "--textures", At("Out/Pictures")}).out;
    EXPECT_THAT(dump, AllOf(HasSubstr("1 texture\n"), HasSubstr("Wood")));
    EXPECT_EQ(std::filesystem::file_size(m_Folder / "Out/Pictures/Art_Tank_Wood.tga"), 18u + 2 * 4);
}

} // namespace
