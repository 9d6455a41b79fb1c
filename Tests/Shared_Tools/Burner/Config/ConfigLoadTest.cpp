#include "Shared_Tools/Burner/Config/ConfigLoad.h"

#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/PC/FileSystem/OSFile.h"
#include "Tests/Shared_Tools/Burner/Config/BurnProject.h"

#include <filesystem>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

using ConfigLoadTest = BurnProject;

TEST_F(ConfigLoadTest, NamesOfScripts) {
    char name[FilePath::MAXPATH];
    EXPECT_TRUE(ConfigLoad::GetBurnFilename(Path(s_File).c_str(), name, sizeof name));
    EXPECT_EQ(name, Path(s_Script));
    for (const std::string& folder : {Path("generic/art"), Path("generic/art") + "\\"}) {
        EXPECT_TRUE(ConfigLoad::GetBurnFilename(folder.c_str(), name, sizeof name));
        EXPECT_EQ(name, Path("generic/art/_default.burn"));
    }
    EXPECT_FALSE(ConfigLoad::GetBurnFilename(Path("generic/none").c_str(), name, sizeof name));
    const std::string script = Path("generic/art/_default.burn");
    EXPECT_TRUE(ConfigLoad::GetBurnFilename(Path("generic/art").c_str(), name, script.size() + 1));
    EXPECT_FALSE(ConfigLoad::GetBurnFilename(Path("generic/art").c_str(), name, script.size()));
    EXPECT_THROW(ConfigLoad::GetBurnFilename(Path(s_File).c_str(), name, Path(s_File).size() + 13), std::runtime_error);
}

TEST_F(ConfigLoadTest, ABaseAlone) {
    ASSERT_TRUE(Load()) << testing::PrintToString(GetTexts());
    EXPECT_EQ(m_Config.GetVersion(), 3u);
    ASSERT_EQ(m_Config.GetGroupCount(), 2u);
    EXPECT_STREQ(m_Config.GetGroupWildcard(0), ".*\\.pvx");
    EXPECT_STREQ(m_Config.GetGroupWildcard(1), ".*");
    EXPECT_STREQ(m_Config.GetTargetDestination(m_Config.GetTargetID("COPY", "Models")), "DATA:raw");
    EXPECT_STREQ(m_Config.GetTargetPlugin(Obm()), "model");
    EXPECT_EQ(Value("useDXTC"), "0 (inherited)");
    EXPECT_TRUE(m_Messages.empty());
}

// The nearest wins, at five levels: base, two folders, one that says nothing, and the file's own.
TEST_F(ConfigLoadTest, ChainsOfOneToFiveLevels) {
    const std::string file = "generic/a/b/c/d/x.pvx";
    m_Server.Write(file, "");
    m_Server.Write("generic/a/_default.burn", Override("{ 'useDXTC', '1' }, { 'mipmaps', 'false' }, { 'new', 'n' }"));
    ASSERT_TRUE(Load(file));
    EXPECT_EQ(Value("useDXTC"), "1 (inherited)");
    m_Server.Write("generic/a/b/_default.burn", Override("{ 'USEDXTC', 3 }"));
    m_Server.Write("generic/a/b/c/d/_default.burn", Override(""));
    ASSERT_TRUE(Load(file));
    EXPECT_EQ(Value("useDXTC"), "3 (inherited)"); // a number reads as its text
    EXPECT_EQ(Value("new"), "n (inherited)");
    m_Server.Write(file + ".burn", Override("{ 'useDXTC', '5' }, { 'mipMaps', 'FALSE' }"));
    ASSERT_TRUE(Load(file));
    EXPECT_EQ(Value("useDXTC"), "5");
    EXPECT_EQ(Value("mipMaps"), "false (inherited)"); // the same but for its case
    EXPECT_EQ(Value("new"), "n");
}

TEST_F(ConfigLoadTest, AFoldersOwnScriptCountsOnce) {
    m_Server.Write("generic/art/_default.burn", Override("{ 'useDXTC', '1' }"));
    ASSERT_TRUE(Load("generic/art"));
    EXPECT_EQ(Value("useDXTC"), "1");
    ASSERT_TRUE(Load("generic")); // the base itself
    EXPECT_EQ(Value("useDXTC"), "0");
}

TEST_F(ConfigLoadTest, TheBaseIsReadOnceByEachLoader) {
    ASSERT_TRUE(Load());
    m_Server.Write("generic/_default.burn", "burn_version = 4 burn_targets = {}");
    ASSERT_TRUE(Load());
    EXPECT_EQ(m_Config.GetVersion(), 3u);
    m_Loader = ConfigLoad();
    ASSERT_TRUE(Load());
    EXPECT_EQ(m_Config.GetVersion(), 4u);
}

TEST_F(ConfigLoadTest, FilesWithoutAConfiguration) {
    EXPECT_FALSE(Load("generic/none.pvx"));
    EXPECT_THAT(GetTexts(), ElementsAre("Unable to get burn filename for " + Path("generic/none.pvx")));
    EXPECT_FALSE(Load("generic/" + std::string(250, 'x')));
    m_Server.Write("elsewhere.pvx", "");
    EXPECT_FALSE(Load("elsewhere.pvx"));
    EXPECT_THAT(GetTexts(),
                ElementsAre("File [" + Path("elsewhere.pvx") + ".burn] does not belong to a pipeline project."));
    std::filesystem::remove(m_Server.Native("generic/_default.burn"));
    EXPECT_FALSE(Load());
    EXPECT_THAT(GetTexts(), ElementsAre("Filename [" + Path(s_File) + "] does not have a burn configuration script."));
    int64_t time = 0;
    EXPECT_FALSE(ConfigLoad::GetConfigTimestamp(Path(s_File).c_str(), time));
    EXPECT_TRUE(m_Reports.HasWarning("does not have a burn configuration script."));
}

// The outermost script of the chain is the base, wherever it lies.
TEST_F(ConfigLoadTest, AnOverrideCantBeTheOutermost) {
    std::filesystem::remove(m_Server.Native("generic/_default.burn"));
    m_Server.Write("generic/art/_default.burn", Override(""));
    const std::string script = Path("generic/art/_default.burn");
    EXPECT_FALSE(Load());
    EXPECT_THAT(GetTexts(), ElementsAre("Unable to find 'burn_version' in '" + script + "'",
                                        "Unable to load default configuration " + script + "."));
}

TEST_F(ConfigLoadTest, ASyntaxErrorNamesTheFileAndTheLine) {
    m_Server.Write(s_Script, "burn_params = {\n  { name = }\n}");
    EXPECT_FALSE(Load());
    EXPECT_THAT(GetTexts(),
                ElementsAre(testing::AllOf(HasSubstr("[" + Path(s_Script) + "]"), HasSubstr("tank.pvx.burn:2: ")),
                            "Burner configuration '" + Path(s_Script) + "' not parsed.  Syntax Error?.",
                            "Unable to load configuration " + Path(s_Script) + "."));
    EXPECT_TRUE(m_Reports.HasError("BURN -- Burner configuration"));
}

TEST_F(ConfigLoadTest, WhatABaseCanHaveWrong) {
    const std::string script = Path("generic/_default.burn");
    const std::string head = "burn_version = 1 burn_targets = ";
    const std::pair<std::string, std::vector<std::string>> faults[] = {
        {"burn_version = -1", {"Unable to find 'burn_version' in '" + script + "'"}},
        {"burn_version = 'x'", {"Unable to find 'burn_version' in '" + script + "'"}},
        {head + "7", {"Unable to find 'burn_data' in '" + script + "'"}},
        {head + "{ x = 7 }", {"Invalid target group table 'x' in configuration '" + script + "'."}},
        {head + "{ [true] = {} }", {"Invalid target group table '?' in configuration '" + script + "'."}},
        {head + "{ [0] = {} }", {"Invalid target group table '?' in configuration '" + script + "'."}},
        {head + "{ {} }",
         {"Could not read name for target group.", "Invalid target group in configuration '" + script + "'."}},
        {head + "{ { name = 'a', targets = {} }, { name = 'A', targets = {} } }",
         {"Could not add new target group.", "Invalid target group in configuration '" + script + "'."}},
        {head + "{ { name = 'a' } }",
         {"Invalid 'targets' table in target group 'a'.", "Invalid target group in configuration '" + script + "'."}},
        {head + "{ { name = 'a', targets = { 5 } } }",
         {"Invalid table '1' in target group 'a'.", "Invalid target group in configuration '" + script + "'."}},
        {head + "{ { name = 'a', targets = { {} } } }",
         {"Could not read name for target.", "Invalid target in target group 'a'.",
          "Invalid target group in configuration '" + script + "'."}},
        {head + "{ { name = 'a', targets = { { target = 't' } } } }",
         {"Could not read destination for target 't'.", "Invalid target in target group 'a'.",
          "Invalid target group in configuration '" + script + "'."}},
        {head + "{ { name = 'a', targets = { { target = 't', destination = 'd' } } } }",
         {"Could not read pluginName for target 't'.", "Invalid target in target group 'a'.",
          "Invalid target group in configuration '" + script + "'."}},
        {head + "{ { name = 'a', targets = { { target = '', destination = 'd', plugin = 'p' } } } }",
         {"Could not add new target.", "Invalid target in target group 'a'.",
          "Invalid target group in configuration '" + script + "'."}},
    };
    for (const auto& [text, expected] : faults) {
        m_Server.Write("generic/_default.burn", text);
        m_Messages.clear();
        EXPECT_FALSE(ConfigLoad::ParseBaseConfig(script.c_str(), m_Config, &m_Messages)) << text;
        EXPECT_EQ(GetTexts(), expected) << text;
    }
    EXPECT_FALSE(ConfigLoad::ParseBaseConfig(Path("none.burn").c_str(), m_Config));
}

TEST_F(ConfigLoadTest, WhatAnOverrideCanHaveWrong) {
    const std::string script = Path(s_Script);
    const std::string last = "Invalid target group parameter in configuration '" + script + "'.";
    const std::string head = "burn_params = { { name = 'g', targets = ";
    const std::pair<std::string, std::vector<std::string>> faults[] = {
        {"burn_targets = {}", {"Unable to find 'burn_data' in '" + script + "'"}},
        {"burn_params = { 1 }", {"Invalid target param table '1' in configuration '" + script + "'."}},
        {"burn_params = { {} }", {"Could not read name for target group."}},
        {"burn_params = { { name = 'g' } }", {"Invalid 'targets' table in target group 'g'.", last}},
        {head + "{ 'x' } } }", {"Invalid table '1' in target group 'g'.", last}},
        {head + "{ {} } } }", {"Could not read name for target.", last}},
        {"burn_params = { { name = 'models', targets = { { target = 'obm', params = { 'x' } } } } }",
         {"Invalid table '1'.", "Invalid Parameter in target 'obm'.", "Invalid target in target group 'models'.",
          last}},
    };
    for (const auto& [text, expected] : faults) {
        m_Server.Write(s_Script, text);
        EXPECT_FALSE(Load()) << text;
        std::vector<std::string> texts = GetTexts();
        EXPECT_EQ(texts.back(), "Unable to load configuration " + script + ".");
        texts.pop_back();
        EXPECT_EQ(texts, expected) << text;
    }
}

TEST_F(ConfigLoadTest, WhatAnOverrideIsForgiven) {
    m_Server.Write(s_Script, "burn_version = 'ignored' burn_targets = 9 burn_params = { { name = 'Models', targets = { "
                             "{ target = 'none', params = { { 'a', 'b' } } }, { target = 'copy' }, "
                             "{ target = 'obm', params = { { 'x' }, { 'useDXTC', true }, { 'useDXTC', '1' } } } } } }");
    EXPECT_TRUE(Load());
    EXPECT_EQ(Value("useDXTC"), "1");
    EXPECT_THAT(GetTexts(), ElementsAre("'" + Path(s_Script) +
                                            "': Burn Params 'Models' does not have matching target 'none' in base "
                                            "burn_targets!",
                                        "Invalid name/value pair in target 'obm' table is '1'.",
                                        "Invalid name/value pair in target 'obm' table is '2'."));
    EXPECT_TRUE(m_Reports.HasWarning("configparser/"));
}

TEST_F(ConfigLoadTest, AScriptWithoutEndIsAnError) {
    m_Server.Write(s_Script, "burn_params = setmetatable({}, {})\nwhile true do end");
    EXPECT_FALSE(Load());
    EXPECT_THAT(GetTexts()[0], HasSubstr("tank.pvx.burn:2: the script takes too many instructions"));
    m_Server.Write(s_Script, "burn_params = { setmetatable({}, { __index = function() while true do end end }) }");
    EXPECT_FALSE(Load());
}

TEST_F(ConfigLoadTest, TheNewestScriptIsTheTimestamp) {
    const auto setTime = [&](const char* pName, int seconds) {
        std::filesystem::last_write_time(m_Server.Native(pName),
                                         std::filesystem::file_time_type::clock::now() - std::chrono::seconds(seconds));
    };
    m_Server.Write(s_Script, Override(""));
    setTime(s_Script, 100);
    setTime("generic/_default.burn", 200);
    int64_t time = 0;
    EXPECT_TRUE(ConfigLoad::GetConfigTimestamp(Path(s_File).c_str(), time));
    EXPECT_EQ(time, OSFile::GetWriteTime(Path(s_Script).c_str()));
    setTime("generic/_default.burn", 50);
    EXPECT_TRUE(ConfigLoad::GetConfigTimestamp(Path(s_File).c_str(), time));
    EXPECT_EQ(time, OSFile::GetWriteTime(Path("generic/_default.burn").c_str()));
}

} // namespace
