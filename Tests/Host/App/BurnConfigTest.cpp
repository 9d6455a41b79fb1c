#include "Tests/Host/App/ChildProgram.h"
#include "Tests/Host/App/TestFolder.h"
#include "Tests/Shared/Cross/RevControlAPI/P4Server.h"

#include <gmock/gmock.h>

// pvxhost burnconfig, on a project without a server.

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

class BurnConfig : public TestFolder {
protected:
    void SetUp() override { MakeProject(""); }
    void MakeProject(const std::string& port) const {
        std::filesystem::create_directories(m_Folder / "generic/art");
        std::string ini = "[p4]\r\nRevControlPort=" + port + "\r\n[project:Demo]\r\n";
        for (const char* pKey : {"Source", "SourceShared", "Burn", "Intermediate", "Final", "Preview"})
            ini += std::string("Data") + pKey + "=" + pKey + "\r\n";
        Write("pipeline.ini", ini + "DataGeneric=generic\r\nLocaleFolder=l\r\nAttrLoc=a\r\nParent=\r\n");
        Write(
            "generic/_default.burn",
            "burn_version = 2\n"
            "burn_targets = { { name = 'models', wildcard = '.*\\\\.pvx', targets = { { target = 'obm', destination = "
            "'DATA:', plugin = 'model' } } }, { name = 'shaders', wildcard = '.*\\\\.qsh', targets = {} } }\n"
            "burn_params = { { name = 'models', targets = { { target = 'obm', params = { { 'useDXTC', '0' }, { "
            "'mipMaps', 'true' } } } } } }");
        Write("generic/art/_default.burn",
              "burn_params = { { name = 'models', targets = { { target = 'obm', params = { "
              "{ 'useDXTC', '1' } } } } } }");
        Write("generic/art/Tank.PVX", "model");
    }
    ProgramResult Run(std::vector<std::string> words) const {
        words.insert(words.begin(), "burnconfig");
        words.insert(words.begin() + 2, At("generic/art/Tank.PVX"));
        return RunProgram("pvxhost", words);
    }
    std::string m_Script = At("generic/art/Tank.PVX.burn");
};

TEST_F(BurnConfig, ShowTellsWhereEachValueComesFrom) {
    const ProgramResult result = Run({"show"});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_THAT(Lines(result.out), ElementsAre(At("generic/art/Tank.PVX") + ": version 2",
                                               "scripts, the nearest first:", "  " + At("generic/art/_default.burn"),
                                               "  " + At("generic/_default.burn"), "group models, for .*\\.pvx",
                                               "  target obm: plug-in model, to DATA:",
                                               "    useDXTC = 1  (" + At("generic/art/_default.burn") + ")",
                                               "    mipMaps = true  (" + At("generic/_default.burn") + ")",
                                               "group shaders, for .*\\.qsh: not for this file"));
}

TEST_F(BurnConfig, SetAndUnsetWriteTheFilesOwnScript) {
    ProgramResult result = Run({"set", "MODELS", "obm", "usedxtc", "5"});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.err, m_Script + ": written\n");
    EXPECT_THAT(Run({"show"}).out, HasSubstr("useDXTC = 5  (" + m_Script + ")"));
    EXPECT_EQ(Run({"set", "models", "obm", "mipMaps", "false"}).status, 0);
    EXPECT_EQ(Run({"unset", "models", "obm", "useDXTC"}).status, 0);
    EXPECT_THAT(Run({"show"}).out, AllOf(HasSubstr("useDXTC = 1  (" + At("generic/art/_default.burn") + ")"),
                                         HasSubstr("mipMaps = false  (" + m_Script + ")")));
    result = Run({"unset", "models", "obm", "mipMaps"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, m_Script + ": removed, since nothing differs any more\n");
    EXPECT_FALSE(std::filesystem::exists(m_Script));
}

// In the changelist of all tools, and out of it again.
TEST_F(BurnConfig, ScriptsAreUnderRevisionControl) {
    const P4Server server;
    std::filesystem::remove_all(m_Folder);
    m_Folder = server.Native();
    m_Script = At("generic/art/Tank.PVX.burn");
    MakeProject(P4Server::s_Port);
    EXPECT_EQ(Run({"set", "models", "obm", "useDXTC", "5"}).status, 0);
    EXPECT_EQ(server.GetOpened("generic/art/Tank.PVX.burn"), "add 1");
    EXPECT_EQ(server.Load().changes.at(0).description, "PVX Export Changes");
    EXPECT_EQ(Run({"unset", "models", "obm", "useDXTC"}).status, 0);
    EXPECT_EQ(server.GetOpened("generic/art/Tank.PVX.burn"), "");
    EXPECT_FALSE(std::filesystem::exists(m_Script));
}

TEST_F(BurnConfig, WrongNamesAreAnsweredWithTheKnownOnes) {
    const std::pair<std::vector<std::string>, std::string> cases[] = {
        {{"set", "model", "obm", "useDXTC", "5"}, "there is no target group \"model\"; known are: models, shaders\n"},
        {{"unset", "models", "obe", "useDXTC"}, "there is no target \"obe\"; known are: obm\n"},
        {{"set", "shaders", "qsh", "useDXTC", "5"}, "there is no target \"qsh\"; known are: none\n"},
        {{"set", "models", "obm", "DXTC", "5"},
         "there is no parameter \"DXTC\"; known are: useDXTC, mipMaps; a new one is first named in the base script, by "
         "hand\n"},
    };
    for (const auto& [words, text] : cases) {
        const ProgramResult result = Run(words);
        EXPECT_EQ(result.status, 2) << text;
        EXPECT_EQ(result.err, text);
    }
    EXPECT_FALSE(std::filesystem::exists(m_Script));
}

TEST_F(BurnConfig, WhatCantBeReadOrWritten) {
    Write("generic/art/Tank.PVX.burn", "burn_params = {\n{");
    ProgramResult result = Run({"show"});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, AllOf(HasSubstr("Tank.PVX.burn:2: "), HasSubstr("has no burn configuration")));
    Write("generic/art/Tank.PVX.burn", "burn_params = {}");
    std::filesystem::permissions(m_Script, std::filesystem::perms::owner_read);
    result = Run({"set", "models", "obm", "useDXTC", "5"});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, HasSubstr("the configuration isn't saved: Unable to open "));
    result = RunProgram("pvxhost", {"burnconfig", "set", At("generic"), "models", "obm", "useDXTC", "5"});
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.err, HasSubstr("_default.burn: is the base"));
    result = RunProgram("pvxhost", {"burnconfig", "show", At("none")});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.err, At("none") + ": there is no such file or folder; name one in a project's generic folder\n");
    result = RunProgram("pvxhost", {"burnconfig", "show", Write("x.pvx", "")});
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.err, HasSubstr("x.pvx: lies in the generic folder of no project of \""));
}

TEST_F(BurnConfig, UsageNamesTheWholeCommand) {
    EXPECT_THAT(RunProgram("pvxhost", {"burnconfig"}).err, testing::StartsWith("pvxhost burnconfig: "));
    const ProgramResult result = RunProgram("pvxhost", {"burnconfig", "set", "x"});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.err, "pvxhost burnconfig set: GROUP is required; pvxhost burnconfig set --help tells what is "
                          "possible\n");
}

} // namespace
