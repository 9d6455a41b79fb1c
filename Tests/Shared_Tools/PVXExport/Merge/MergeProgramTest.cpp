#include <gmock/gmock.h>

#include "Shared/PC/FileSystem/OSFile.h"
#include "Tests/Host/App/ChildProgram.h"
#include "Tests/Host/App/TestFolder.h"
#include "Tests/Shared_Tools/PVXExport/Merge/ModelFiles.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

// pvxhost merge as its users meet it.
class MergeProgram : public TestFolder {
protected:
    MergeProgram() {
        for (const char* pFolder : {"ToolsData", "Burner", "int"})
            std::filesystem::create_directory(m_Folder / pFolder);
        WriteIni("Burner");
        WriteModel({"art\\steel"});
        Write("int/run.pvx", MakeAnimFile({"hip", "knee"}));
    }

    void WriteIni(const std::string& burnerPath) const {
        Write("pipeline.ini", std::string(s_GlobalSection) + "[burner]\r\nburnerPath=" + burnerPath +
                                  "\r\n[p4]\r\nRevControlPort=\r\n" + s_ProjectSection);
    }
    void WriteModel(const std::vector<std::string>& shaders) const {
        Write("int/ref.pvx", ModelServices().MakeModel({"hip", "knee"}, shaders));
    }
    ProgramResult Merge(const std::vector<std::string>& anims, std::vector<std::string> options = {}) const {
        options.insert(options.begin(), {"merge", At("gen/new/tank.pvx"), At("int/ref.pvx")});
        for (const std::string& name : anims)
            options.push_back(At(name));
        return RunProgram("pvxhost", options);
    }
    bool HasMerged() const { return std::filesystem::exists(At("gen/new/tank.pvx")); }
};

TEST_F(MergeProgram, TheSummaryTellsWhatWasMergedAndWhichBonesDiffer) {
    Write("int/other.pvx", MakeAnimFile({"hip", "tail"}));
    const ProgramResult result = Merge({"int/run.pvx", "int/other.pvx"});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(HasMerged()) << "its folder is made";
    const std::string size = std::to_string(std::filesystem::file_size(At("gen/new/tank.pvx")));
    EXPECT_THAT(
        Lines(result.err),
        ElementsAre(At("gen/new/tank.pvx") + ": " + size + " bytes, " + At("int/ref.pvx") + " with 2 animation files",
                    At("int/other.pvx") +
                        ": bones: 1 of the model's missing in the animation, 1 of the animation's missing in "
                        "the model, 0 with another parent, 0 with another rest pose",
                    At("int/other.pvx") + ": missing in the animation: knee",
                    At("int/other.pvx") + ": missing in the model: tail"));
    EXPECT_THAT(Merge({"int/run.pvx"}, {"--quiet"}).err, IsEmpty());
}

TEST_F(MergeProgram, WhatCannotBeMergedIsRefusedAheadOfTheWork) {
    const std::string merged = At("gen/new/tank.pvx");
    const std::string model = At("int/ref.pvx");
    const auto expectRefused = [](const std::vector<std::string>& files, const std::string& text) {
        std::vector<std::string> words = files;
        words.insert(words.begin(), "merge");
        const ProgramResult result = RunProgram("pvxhost", words);
        EXPECT_EQ(result.status, 2) << text;
        EXPECT_THAT(result.err, testing::StartsWith(text));
    };
    expectRefused({merged, model, At("int/none.pvx")},
                  At("int/none.pvx") + ": there is no such file; name an exported animation\n");
    expectRefused({merged, model, At("int")}, At("int") + ": is a folder");
    expectRefused({model, model, "--no-textures"}, model + ": is merged itself; choose another name");
    expectRefused({At("int/RUN.pvx"), model, At("int/run.pvx"), "--no-textures"}, At("int/RUN.pvx") + ": is merged");
    const std::string picture = Write("int/tank.tga", "a picture");
    expectRefused({picture, model, "--no-textures"}, picture + ": is another kind of file");
    expectRefused({At("int/tank.pvx"), model}, At("int/tank.pvx") + ": lies in the generic folder of no project of \"");
    const std::string elsewhere = Write("ref.pvx", "");
    expectRefused({merged, elsewhere}, elsewhere + ": lies in the intermediate folder of no project of \"" +
                                           At("pipeline.ini") + "\"; export the model to such a folder\n");
    EXPECT_FALSE(HasMerged());
    EXPECT_EQ(Merge({"int/none.pvx"}, {"--no-model"}).status, 0) << "animations don't matter then";
    EXPECT_EQ(RunProgram("pvxhost", {"merge", At("int/tank.pvx"), model, "--no-textures"}).status, 0)
        << "no project is asked for";
    std::filesystem::remove(At("pipeline.ini"));
    expectRefused({merged, model},
                  model + ": lies in no project: there is no pipeline.ini in \"" + At("int") + "\" or above it\n");
}

TEST_F(MergeProgram, AFailureTellsItsReason) {
    Write("int/bad.pvx", MakeAnimFile({"hip"}).substr(0, 100));
    ProgramResult result = Merge({"int/bad.pvx"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "Merge: Unable to build the intermediate model (Data Intermediate)!\n");
    EXPECT_THAT(result.err, testing::StartsWith(At("int/bad.pvx") + ": "));

    std::filesystem::remove_all(At("ToolsData"));
    result = Merge({});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "") << "a start that fails says nothing by itself";
    ASSERT_EQ(Lines(result.err).size(), 1u) << result.err;
    EXPECT_THAT(result.err, HasSubstr("tank.pvx: the merge failed: PIPELINE -- Failed to map pipeline alias 'DATA'"));
}

// The merge counts a burner's answer as success, whatever it says.
TEST_F(MergeProgram, ASharedTextureThatIsNotSavedOrBurnedIsTold) {
    WriteIni(OSFile::FromNative(PVX_PROGRAM_FOLDER));
    WriteModel({"art\\hull_texture_share"});
    const std::string file = At("gen/art/hull_texture_share.qsh");
    ProgramResult result = Merge({});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_THAT(Lines(result.err),
                testing::Contains(testing::AllOf(HasSubstr(file + ": Error: "),
                                                 HasSubstr("has no burn configuration that can be used"))));
    std::filesystem::create_directory(file + ".part");
    result = Merge({});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(Lines(result.err).back(), file + ": Unable to open file! (Is a directory)");
}

TEST_F(MergeProgram, ABareTextIsCaughtAndPrinted) {
    WriteModel({"art\\hull_texture_share"});
    ProgramResult result = Merge({});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, HasSubstr("Failed to locate the burner module"));
    EXPECT_THAT(Lines(result.err).back(), testing::StartsWith("Merge: Unable to burn shared texture 'Z:"));
    EXPECT_TRUE(HasMerged() && std::filesystem::exists(At("gen/art/hull_texture_share.qsh")));
    result = RunProgram("pvxhost", {"merge", At("gen/new/tank.pvx"), At("int/ref.pvx"), "--no-textures"});
    EXPECT_EQ(result.status, 0) << result.err;

    // In a script it ends the script, as any error does.
    const std::string script =
        Write("merge.ms", "ombl_animerge \"gen\\\\x.pvx\" \"int\\\\ref.pvx\" #()\nombl_burner_reset\n");
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(m_Folder);
    result = RunProgram("pvxhost", {"script", script});
    std::filesystem::current_path(before);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, HasSubstr("merge.ms:1: Merge: Unable to burn shared texture"));
}

} // namespace
