#include "Shared_Tools/Burner/Config/ConfigLoad.h"

#include "Shared/Cross/RevControlAPI/RevControlLocal.h"
#include "Shared/Cross/RevControlAPI/RevControlP4.h"
#include "Tests/Shared_Tools/Burner/Config/BurnProject.h"

namespace {

using testing::ElementsAre;

class ConfigSaveTest : public BurnProject {
protected:
    ConfigSaveTest() {
        EXPECT_TRUE(m_Control.Initialize(P4Server::s_Port));
        EXPECT_TRUE(Load());
        m_Change = m_Server.MakeChange("PVX Export Changes");
    }
    bool Save(const char* pName = s_File) {
        m_Server.TakeCommands();
        return m_Loader.SaveConfig(m_Control, m_Change, Path(pName).c_str(), m_Config);
    }
    std::string In(const char* pAction) const { return std::string(pAction) + " " + std::to_string(m_Change); }

    RevControlP4 m_Control;
    int m_Change = 0;
};

TEST_F(ConfigSaveTest, WhatDiffersIsWritten) {
    Set("useDXTC", "5");
    ASSERT_TRUE(Save());
    EXPECT_EQ(m_Server.Read(s_Script), "burn_params =  \n{\n"
                                       "\t \n\t{\n"
                                       "\t\tname = \"Models\",\n"
                                       "\t\ttargets =  \n\t\t{\n"
                                       "\t\t\t \n\t\t\t{\n"
                                       "\t\t\t\tparams =  \n\t\t\t\t{\n"
                                       "\t\t\t\t\t \n\t\t\t\t\t{\n"
                                       "\t\t\t\t\t\t\"useDXTC\",\n\t\t\t\t\t\t\"5\",\n"
                                       "\t\t\t\t\t},\n\t\t\t\t},\n"
                                       "\t\t\t\ttarget = \"obm\",\n"
                                       "\t\t\t},\n\t\t},\n\t},\n"
                                       "\t \n\t{\n"
                                       "\t\tname = \"Rest\",\n"
                                       "\t\ttargets =  \n\t\t{\n\t\t},\n"
                                       "\t},\n}\n");
    EXPECT_EQ(m_Server.GetOpened(s_Script), In("add"));
    ASSERT_TRUE(Load());
    EXPECT_EQ(Value("useDXTC"), "5");
    EXPECT_EQ(Value("mipMaps"), "true");
    // Saved again it is the same, and nobody minds that it is open already.
    const std::string text = m_Server.Read(s_Script);
    ASSERT_TRUE(Save());
    EXPECT_EQ(m_Server.Read(s_Script), text);
}

// The source is brought up to date, and then its script is opened.
TEST_F(ConfigSaveTest, TheScriptIsOpenedForEditBeforeItIsWritten) {
    m_Server.Submit(s_Script, Override("{ 'useDXTC', '1' }"));
    ASSERT_TRUE(Load());
    Set("useDXTC", "3");
    ASSERT_TRUE(Save());
    const std::vector<std::string> commands = m_Server.TakeCommands();
    ASSERT_FALSE(commands.empty());
    EXPECT_EQ(commands[0], std::string("sync ") + s_File);
    EXPECT_EQ(m_Server.GetOpened(s_Script), In("edit"));
    EXPECT_THAT(m_Server.Read(s_Script), testing::HasSubstr("\"3\""));
}

TEST_F(ConfigSaveTest, AValueThatDiffersInItsCaseAloneIsLost) {
    Set("mipMaps", "TRUE");
    ASSERT_TRUE(Save());
    EXPECT_FALSE(m_Server.Has(s_Script));
    EXPECT_EQ(m_Server.GetOpened(s_Script), "");
}

TEST_F(ConfigSaveTest, AScriptWithoutDifferencesGoesAway) {
    const auto saveAsParent = [&] {
        ASSERT_TRUE(Load());
        Set("useDXTC", "0");
        ASSERT_TRUE(Save());
        EXPECT_FALSE(m_Server.Has(s_Script));
    };
    m_Server.Write(s_Script, Override("{ 'useDXTC', '1' }")); // unknown to the server
    saveAsParent();
    EXPECT_EQ(m_Server.GetOpened(s_Script), "");

    Set("useDXTC", "5"); // opened for add
    ASSERT_TRUE(Save());
    saveAsParent();
    EXPECT_EQ(m_Server.GetOpened(s_Script), "");

    for (const bool edited : {false, true}) { // in the depot, and opened for edit
        m_Control.RevertFile(Path(s_Script).c_str(), m_Change, false);
        m_Server.Submit(s_Script, Override("{ 'useDXTC', '1' }"));
        if (edited)
            m_Control.Edit(Path(s_Script).c_str(), m_Change);
        saveAsParent();
        EXPECT_EQ(m_Server.GetOpened(s_Script), In("delete")) << edited;
    }
}

TEST_F(ConfigSaveTest, WhatTheServerRefusesLeavesTheScript) {
    const std::string before = Override("{ 'useDXTC', '1' }");
    m_Server.Submit(s_Script, before);
    ASSERT_TRUE(Load());
    Set("useDXTC", "5");
    m_Server.Say("add", "error: refused\nexit: 1\n");
    m_Server.Say("edit", "error: refused\nexit: 1\n");
    EXPECT_FALSE(Save());
    EXPECT_TRUE(m_Reports.HasWarning("Unable to open " + Path(s_Script) + " for add or edit"));
    Set("useDXTC", "0");
    m_Server.Say("delete", "error: refused\nexit: 1\n");
    EXPECT_FALSE(Save());
    EXPECT_TRUE(m_Reports.HasError("unable to open " + Path(s_Script) + " for delete in changelist " +
                                   std::to_string(m_Change)));
    m_Server.ClearFault("say.edit");
    m_Control.Edit(Path(s_Script).c_str(), m_Change);
    m_Server.Say("revert", "error: refused\nexit: 1\n");
    EXPECT_FALSE(Save());
    EXPECT_TRUE(m_Reports.HasError("Unable to revert " + Path(s_Script) + " in changelist"));
    EXPECT_EQ(m_Server.Read(s_Script), before);
}

TEST_F(ConfigSaveTest, ValidationIsAgainstTheLevelAbove) {
    m_Server.Write("generic/art/_default.burn", Override("{ 'useDXTC', '3' }"));
    ASSERT_TRUE(Load());
    EXPECT_TRUE(m_Config.SetParam({"useDXTC", "3", false}, Obm())); // whatever an editor did to the flags
    ASSERT_TRUE(Save());
    EXPECT_FALSE(m_Server.Has(s_Script));
    Set("useDXTC", "0"); // the base's value is a difference here
    ASSERT_TRUE(Save());
    EXPECT_TRUE(m_Server.Has(s_Script));
    // A folder's own script isn't above it, however the folder is named.
    const char* const pFolder = "generic/art/";
    ASSERT_TRUE(Load(pFolder));
    Set("mipMaps", "false");
    ASSERT_TRUE(Save(pFolder));
    ASSERT_TRUE(Load(pFolder));
    EXPECT_EQ(Value("useDXTC") + Value("mipMaps"), "3false");
}

TEST_F(ConfigSaveTest, WhatTheLevelAboveDoesntHaveCantBeSaved) {
    Set("unheardOf", "1");
    EXPECT_FALSE(Save());
    EXPECT_TRUE(m_Reports.HasError("Unable to load the parameter unheardOf from input config file."));
    EXPECT_TRUE(
        m_Reports.HasError("Unable to validate burner configuration " + Path(s_Script) + " against its parent."));
    m_Server.Write("generic/_default.burn", "syntax error");
    m_Loader = ConfigLoad();
    EXPECT_FALSE(Save());
    EXPECT_TRUE(
        m_Reports.HasError("Unable to load parent config " + Path("generic/_default.burn") + " for validation"));
    EXPECT_FALSE(Save("generic/none"));
    EXPECT_TRUE(m_Reports.HasWarning("Unable to get burn filename for " + Path("generic/none")));
    m_Server.Write("elsewhere.pvx", "");
    EXPECT_FALSE(Save("elsewhere.pvx"));
    EXPECT_TRUE(m_Reports.HasWarning("does not belong to a pipeline project."));
}

// No script is better than one that reads as something else.
TEST_F(ConfigSaveTest, ValuesThatNoScriptCanHoldAreRefused) {
    for (const char* pValue : {"two\nlines", "\"]]", "a\\]"}) {
        Set("useDXTC", pValue);
        EXPECT_FALSE(Save()) << pValue;
        EXPECT_FALSE(m_Server.Has(s_Script));
    }
    EXPECT_THAT(m_Server.TakeCommands(), testing::IsEmpty());
    EXPECT_TRUE(m_Reports.HasError("can't be written to a script"));
    Set("useDXTC", "a \"quoted\" [back\\slash]!");
    ASSERT_TRUE(Save());
    ASSERT_TRUE(Load());
    EXPECT_EQ(Value("useDXTC"), "a \"quoted\" [back\\slash]!");
}

TEST_F(ConfigSaveTest, WithoutAServerTheAttributesCount) {
    RevControlLocal local;
    Set("useDXTC", "5");
    ASSERT_TRUE(m_Loader.SaveConfig(local, 0, Path(s_File).c_str(), m_Config));
    OSFile::SetWritable(Path(s_Script).c_str(), false);
    Set("useDXTC", "3");
    EXPECT_FALSE(m_Loader.SaveConfig(local, 0, Path(s_File).c_str(), m_Config));
    EXPECT_TRUE(m_Reports.HasWarning("for add or edit"));
    OSFile::SetWritable(Path(s_Script).c_str(), true);
    Set("useDXTC", "0");
    EXPECT_TRUE(m_Loader.SaveConfig(local, 0, Path(s_File).c_str(), m_Config));
    EXPECT_FALSE(m_Server.Has(s_Script));
}

} // namespace
