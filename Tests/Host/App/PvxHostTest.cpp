#include "Shared/Cross/Debug/db.h"
#include "Shared/PC/Module/SharedModule.h"
#include "Tests/Host/App/ChildProgram.h"
#include "Tests/Host/App/SmallScene.h"
#include "Tests/Host/App/TestFolder.h"

#include <gmock/gmock.h>

#include <csignal>
#include <filesystem>

// pvxhost as its users meet it: as a program of its own.

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

class PvxHost : public TestFolder {
protected:
    ProgramResult Export(const std::string& scene, const std::string& output,
                         std::vector<std::string> options = {}) const {
        options.insert(options.begin(), {"export", scene, output});
        return RunProgram("pvxhost", options);
    }

    // Exports with the misbehaving module.
    ProgramResult ExportBy(const std::string& behaviour, const std::string& output) const {
        return RunProgram("pvxhost", {"export", Write("tile.glb", MakeTileScene()), output}, TestModule(behaviour));
    }

    static std::vector<std::string> TestModule(const std::string& behaviour = {}) {
        return {"PVXHOST_MODULE=" PVX_TEST_MODULE, "TEST_MODULE=" + behaviour};
    }

    // One line that says it, the status, and nothing in the folder that wasn't there before.
    void ExpectRefused(const ProgramResult& result, int status, const std::string& says,
                       const std::vector<std::string>& before) const {
        EXPECT_EQ(result.status, status) << result.err;
        EXPECT_EQ(result.out, "");
        ASSERT_EQ(Lines(result.err).size(), 1u) << result.err;
        EXPECT_THAT(result.err, HasSubstr(says));
        EXPECT_EQ(List(), before);
    }
};

TEST_F(PvxHost, ExportsAModelWithItsLog) {
    const ProgramResult result = Export(Write("tile.glb", MakeTileScene()), At("tile.pvx"));
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_THAT(List(), ElementsAre("tile.glb", "tile.log", "tile.pvx"));
    const ProgramResult dump = RunProgram("pvxdump", {At("tile.pvx")});
    EXPECT_EQ(dump.status, 0) << dump.err;
    for (const char* pName : {"Tile", "Clay", "Mark"})
        EXPECT_THAT(dump.out, HasSubstr(pName));
}

TEST_F(PvxHost, TheSameSceneGivesTheSameBytes) {
    const std::string scene = Write("tile.glb", MakeTileScene());
    ASSERT_EQ(Export(scene, At("tile.pvx")).status, 0);
    const std::string first = Read("tile.pvx");
    ASSERT_EQ(Export(scene, At("tile.pvx")).status, 0);
    EXPECT_EQ(Read("tile.pvx"), first);
    EXPECT_GT(first.size(), 24u);
}

TEST_F(PvxHost, WhatCannotBeReadWrittenOrAskedForIsOneLine) {
    const std::string whole = MakeTileScene();
    const std::string scene = Write("tile.glb", whole);
    const std::string output = At("out.pvx");
    std::filesystem::create_directory(At("folder.glb"));
    const struct {
        std::string scene;
        std::string output;
        std::vector<std::string> options;
        std::string says;
    } cases[] = {
        {At("none.glb"), output, {}, "none.glb"},
        {At("folder.glb"), output, {}, "folder.glb"},
        {Write("text.glb", "this is no scene"), output, {}, "text.glb"},
        {Write("empty.glb", ""), output, {}, "empty.glb"},
        {Write("cut.glb", whole.substr(0, whole.size() - 20)), output, {}, "cut.glb"},
        {scene, At("none/out.pvx"), {}, "there is no folder \"" + At("none") + "\""},
        {scene, scene, {}, "is the scene itself"},
        {scene, output, {"--silent", "--no-meshes"}, "--silent"},
        {scene, output, {"--clip", "Walk"}, "Walk"},
        {scene, output, {"--home", At("none")}, "--home"},
    };
    const std::vector<std::string> before = List();
    for (const auto& refused : cases)
        ExpectRefused(Export(refused.scene, refused.output, refused.options), 2, refused.says, before);
    EXPECT_EQ(Read("tile.glb"), whole);
}

TEST_F(PvxHost, ASceneWithoutAMesh) {
    const std::string scene = Write("marks.gltf", MakeEmptyScene());
    ExpectRefused(Export(scene, At("out.pvx")), 1, "Error   : No meshes to export!", {"marks.gltf", "out.log"});
    const ProgramResult animation = Export(scene, At("out.pvx"), {"--no-meshes"});
    EXPECT_EQ(animation.status, 0);
    EXPECT_THAT(animation.err, HasSubstr("nothing was written"));
}

TEST_F(PvxHost, SilentExportsGoByTheName) {
    const std::string scene = Write("tile.glb", MakeTileScene());
    std::filesystem::create_directories(m_Folder / "Tower/REFERENCE");
    ASSERT_EQ(Export(scene, At("Tower/REFERENCE/ref.pvx"), {"--silent"}).status, 0);
    ASSERT_EQ(Export(scene, At("Tower/run.pvx"), {"--silent"}).status, 0);
    EXPECT_THAT(RunProgram("pvxdump", {At("Tower/REFERENCE/ref.pvx")}).out, HasSubstr("Tile"));
    EXPECT_THAT(Read("Tower/REFERENCE/ref.pvx"), HasSubstr("Tower"));
    EXPECT_THAT(Read("Tower/run.pvx"), Not(HasSubstr("Tile")));
    EXPECT_THAT(Export(scene, At("Tower/run.pvx"), {"--silent"}).err,
                HasSubstr("holds neither meshes nor an animation"));
}

TEST_F(PvxHost, AskingTakesItsAnswersFromTheTerminal) {
    const std::string scene = Write("tile.glb", MakeTileScene());
    const ProgramResult cancelled = RunProgram("pvxhost", {"export", scene, At("out.pvx"), "--ask"}, {}, "5\n");
    EXPECT_EQ(cancelled.status, 0);
    EXPECT_THAT(cancelled.err, HasSubstr("cancelled; nothing was written"));
    EXPECT_THAT(List(), Not(Contains("out.pvx")));
    EXPECT_EQ(RunProgram("pvxhost", {"export", scene, At("out.pvx"), "--ask"}, {}, "2\n\n").status, 0);
    EXPECT_THAT(List(), Contains("out.pvx"));
}

TEST_F(PvxHost, SaysWhyTheProjectIsUnknown) {
    std::filesystem::create_directories(m_Folder / "proj/art");
    const std::string outside = Write("tile.glb", MakeTileScene());
    const std::string inside = Write("proj/art/tile.glb", MakeTileScene());
    // Its material is an error, and the file is there all the same.
    const std::string faulty =
        Write("fur.glb", MakeTileScene("", R"("materials":[{"name":"Fur","extras":{"host":{"class":"Fur"}}}])"));
    for (const std::string& scene : {outside, faulty}) {
        const ProgramResult result = Export(scene, At("tile.pvx"));
        EXPECT_EQ(result.status, scene == faulty);
        EXPECT_THAT(result.err, HasSubstr("there is no pipeline.ini in \"" + m_Folder.string() + "\" or above it"));
    }

    std::string ini = "[project:Tower]\r\n";
    for (const char* pKey : {"DataSource=art", "DataSourceShared=a", "DataBurn=a", "DataIntermediate=a",
                             "DataGeneric=a", "DataFinal=a", "DataPreview=a", "LocaleFolder=a", "AttrLoc=a", "Parent="})
        ini += std::string(pKey) + "\r\n";
    Write("proj/pipeline.ini", ini);
    EXPECT_EQ(Export(inside, At("proj/tile.pvx")).err, "");
    EXPECT_EQ(Export(inside, At("tile.pvx"), {"--home", At("proj")}).err, "");
    const ProgramResult stray = Export(outside, At("proj/tile.pvx"));
    EXPECT_EQ(stray.status, 0);
    EXPECT_THAT(stray.err,
                HasSubstr("tile.glb: lies in the source folder of no project of \"" + At("proj/pipeline.ini") + "\""));
    EXPECT_EQ(Export(outside, At("proj/tile.pvx"), {"--quiet"}).err, "");
}

TEST_F(PvxHost, ABrokenFileNeverStaysUnderTheAskedForName) {
    for (const char* pBehaviour : {"half a file", "throw while writing", "interrupt while writing"}) {
        Write("out.pvx", "of before");
        const ProgramResult result = ExportBy(pBehaviour, At("out.pvx"));
        EXPECT_EQ(result.status, std::string_view(pBehaviour).starts_with("interrupt") ? -SIGINT : 1) << result.err;
        EXPECT_THAT(List(), ElementsAre("tile.glb")) << pBehaviour;
    }
    Write("out.pvx", "of before");
    EXPECT_EQ(ExportBy("interrupt beside", At("out.pvx")).status, -SIGINT);
    EXPECT_EQ(Read("out.pvx"), "of before");
    EXPECT_THAT(List(), ElementsAre("out.pvx", "tile.glb"));
    const ProgramResult thrown = ExportBy("throw before writing", At("out.pvx"));
    EXPECT_EQ(thrown.status, 1);
    EXPECT_EQ(thrown.err, "the exporter is out of order\n");
    EXPECT_EQ(Read("out.pvx"), "of before");
}

TEST_F(PvxHost, ADiskWithoutRoomIsAFailure) {
    // A limit on the size of files stands in for the disk: the log still fits, the model doesn't.
    const ProgramResult result =
        RunProgram("pvxhost", {"export", Write("tile.glb", MakeTileScene()), At("out.pvx")}, {}, {}, 1024);
    EXPECT_EQ(result.status, 1);
    ASSERT_EQ(Lines(result.err).size(), 1u) << result.err;
    EXPECT_THAT(result.err, HasSubstr("out.pvx: could not be written"));
    EXPECT_THAT(result.err, HasSubstr(At("out.log")));
    EXPECT_THAT(List(), ElementsAre("out.log", "tile.glb"));

    Write("out.pvx", "of before");
    EXPECT_EQ(RunProgram("pvxhost", {"export", At("tile.glb"), At("out.pvx")}, {}, {}, 1024).status, 1);
    EXPECT_EQ(Read("out.pvx"), "of before");
    EXPECT_THAT(List(), ElementsAre("out.log", "out.pvx", "tile.glb"));
}

TEST_F(PvxHost, ModulesThatAreNone) {
    const std::string scene = Write("tile.glb", MakeTileScene());
    const std::vector<std::string> before = List();
    const auto by = [&](const std::string& module) {
        return RunProgram("pvxhost", {"export", scene, At("out.pvx")}, {"PVXHOST_MODULE=" + module});
    };
    ExpectRefused(by(At("none.so")), 2, "none.so", before);
    ExpectRefused(by(scene), 2, "can't be loaded", before);
    ExpectRefused(by(PVX_OTHER_LIBRARY), 2, "no module of this host", before);
    ExpectRefused(ExportBy("other version", At("out.pvx")), 2, "0x12345678", before);
    ExpectRefused(ExportBy("no classes", At("out.pvx")), 2, "no class for scene export", before);
}

TEST_F(PvxHost, ItsModulesNeedNothingThatItLacks) {
    // Otherwise what a module needs is looked up when it is called.
    const ProgramResult result = RunProgram("pvxhost", {"commands"}, {"LD_BIND_NOW=1"});
    EXPECT_EQ(result.status, 0) << result.err;
    for (const auto& entry : std::filesystem::directory_iterator(PVX_PROGRAM_FOLDER))
        if (entry.path().extension() == ".so") {
            SharedModule module;
            EXPECT_TRUE(module.Load(entry.path().string())) << module.GetError();
        }
}

TEST_F(PvxHost, CallsCommandsWithValues) {
    const auto call = [](std::vector<std::string> words) {
        words.insert(words.begin(), "call");
        return RunProgram("pvxhost", words, TestModule());
    };
    EXPECT_EQ(RunProgram("pvxhost", {"commands"}, TestModule()).out, "test_echo\ntest_refuse\ntest_say\ntest_throw\n");
    const ProgramResult echo = call({"TEST_echo", "word", "2.5", "true", "#(1, \"x\")", "/art/ref.pvx", "\"a/b\""});
    EXPECT_EQ(echo.status, 0);
    EXPECT_EQ(echo.out, "#(\"word\", 2.5, true, #(1, \"x\"), \"Z:\\\\art\\\\ref.pvx\", \"a/b\")\n");
    EXPECT_EQ(call({"test_say", "half a line"}).out, "half a line\ntrue\n");
    EXPECT_EQ(call({"test_refuse"}).status, 1);
    EXPECT_EQ(call({"test_throw"}).status, 1);
    EXPECT_EQ(call({"test_throw"}).err, "test_throw: out of order\n");
    EXPECT_EQ(call({"test_say"}).status, 1);
    EXPECT_EQ(call({"no_such"}).status, 2);
    EXPECT_THAT(call({"no_such"}).err, HasSubstr("\"no_such\""));
    EXPECT_EQ(call({"test_echo", "#(1"}).status, 2);
}

TEST_F(PvxHost, CommandsThatTheModuleLacksAreNamed) {
    const ProgramResult merge = RunProgram("pvxhost", {"merge", At("m.pvx"), At("r.pvx")}, TestModule());
    EXPECT_EQ(merge.status, 1);
    EXPECT_EQ(Lines(merge.err).size(), 1u);
    EXPECT_THAT(merge.err, HasSubstr("\"ombl_animerge\""));
    EXPECT_EQ(RunProgram("pvxhost", {"burn", At("m.pvx")}, TestModule()).status, 1);
}

TEST_F(PvxHost, RunsScripts) {
    const std::string good = Write("good.ms", "-- two calls\ntest_echo 1 2\r\n\n  test_say \"x\\n\"  -- text\n");
    const ProgramResult result = RunProgram("pvxhost", {"script", good}, TestModule());
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, "#(1, 2)\nx\ntrue\n");
    EXPECT_EQ(RunProgram("pvxhost", {"script", "-"}, TestModule(), "test_echo\ntest_refuse\ntest_echo").out,
              "#()\nfalse\n#()\n");
    EXPECT_EQ(RunProgram("pvxhost", {"script", "-"}, TestModule(), "test_refuse\n").status, 1);

    const std::string bad = Write("bad.ms", "test_echo 1\ntest_echo (1)\ntest_echo 2\n");
    const ProgramResult stopped = RunProgram("pvxhost", {"script", bad}, TestModule());
    EXPECT_EQ(stopped.status, 2);
    EXPECT_EQ(stopped.out, "#(1)\n");
    EXPECT_THAT(stopped.err, HasSubstr("bad.ms:2: column 11"));
    const ProgramResult failed = RunProgram("pvxhost", {"script", "-"}, TestModule(), "test_throw\ntest_echo\n");
    EXPECT_EQ(failed.status, 1);
    EXPECT_EQ(failed.err, "standard input:1: test_throw: out of order\n");
    for (const std::string& name : {At("none.ms"), m_Folder.string()})
        EXPECT_EQ(RunProgram("pvxhost", {"script", name}, TestModule()).status, 2) << name;
}

} // namespace
