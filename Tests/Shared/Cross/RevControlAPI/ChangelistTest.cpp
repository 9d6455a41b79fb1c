#include "Shared/Cross/RevControlAPI/ChangelistPatterns.h"
#include "Tests/Shared/Cross/RevControlAPI/P4Fixture.h"

namespace {

using testing::ElementsAre;

class ChangelistTest : public P4Fixture {
protected:
    int32_t m_Number = 77;
};

TEST_F(ChangelistTest, IsMadeOnceAndFoundAgain) {
    ASSERT_TRUE(m_Control.FindOrCreateChangelist("PVX Export Changes", m_Number));
    EXPECT_EQ(m_Number, 1);
    // The failed look-up has left its text.
    EXPECT_EQ(m_Control.GetLastError(), "Failed to find pending changelist: 'PVX Export Changes'");
    EXPECT_THAT(m_Server.TakeCommands(), ElementsAre("changes -c art-ws -s pending -l", "change -i"));
    EXPECT_EQ(m_Server.Load().changes.at(0).description, "PVX Export Changes");
    ASSERT_TRUE(m_Control.FindOrCreateChangelist("PVX Export Changes", m_Number));
    EXPECT_EQ(m_Number, 1);
    EXPECT_EQ(m_Server.Load().changes.size(), 1u);
}

// In both forms in which descriptions come.
TEST_F(ChangelistTest, IsFoundByAPartOfItsDescription) {
    m_Server.MakeChange("PVX Export Changes, the other ones");
    m_Server.MakeChange("Something else");
    for (const bool marked : {false, true}) {
        if (marked)
            m_Server.SetFault("marked");
        EXPECT_TRUE(m_Control.FindChangelist("PVX Export Changes", m_Number));
        EXPECT_EQ(m_Number, 1);
        EXPECT_TRUE(m_Control.FindChangelist("Something", m_Number));
        EXPECT_EQ(m_Number, 2);
        ExpectFailure(m_Control.FindChangelist("pvx export", m_Number),
                      "Failed to find pending changelist: 'pvx export'");
    }
}

TEST_F(ChangelistTest, AnAnswerThatIsNoChangelistIsPassedOver) {
    m_Server.Say("changes", "info: Changes on the server: Mine\n"
                            "info: Change x on Mine\n"
                            "info: Change 99999999999 on Mine\n"
                            "info: Change 5 Mine\n"
                            "info: Change 6 on 2003/01/01 by a@b\n\n\tMine\n\ninfo: Change 7 on Mine\nexit: 0\n");
    EXPECT_TRUE(m_Control.FindChangelist("Mine", m_Number));
    EXPECT_EQ(m_Number, 6);
}

TEST_F(ChangelistTest, CreationJudgesTheAnswer) {
    ExpectFailure(m_Control.CreateChangelist("", m_Number), "Failed to create changlist: ''");
    for (const char* pAnswer : {"Change 12 saved.", "Change  created.", "A Change 12 created.",
                                "Change 12 created. Yes.", "Change 99999999999 created."}) {
        m_Server.Say("change", std::string("info: ") + pAnswer + "\nexit: 0\n");
        ExpectFailure(m_Control.CreateChangelist("Mine", m_Number),
                      "Failed to parse changlist # for changelist: 'Mine'");
    }
    m_Server.Say("change", "info: Change 4711 created.\nexit: 0\n");
    EXPECT_TRUE(m_Control.CreateChangelist("Mine", m_Number));
    EXPECT_EQ(m_Number, 4711);
}

TEST_F(ChangelistTest, ALongDescriptionIsCutWithAWord) {
    EXPECT_TRUE(m_Control.CreateChangelist(std::string(5000, 'd').c_str(), m_Number));
    const std::string kept = m_Server.Load().changes.at(0).description;
    EXPECT_EQ(kept.size(),
              2047 - std::string("Change: new\nClient: art-ws\nUser: artist\nStatus: new\nDescription: ").size());
    EXPECT_TRUE(m_Reports.HasWarning("description was cut"));
}

TEST_F(ChangelistTest, DeletesOnlyEmptyOnes) {
    m_Server.Submit("a", "a");
    const int change = m_Server.MakeChange("Mine");
    ASSERT_TRUE(m_Control.Edit(Name("a"), change));
    ExpectFailure(m_Control.DeleteEmptyChangelist(change),
                  "Failed to delete empty changelist #: '1', error: 'Change 1 has 1 open file(s) associated with it "
                  "and can't be deleted.'");
    ExpectFailure(m_Control.DeleteEmptyChangelist(9), "Failed to delete empty changelist #: '9'");
    ASSERT_TRUE(m_Control.RevertFile(Name("a"), change, false));
    m_Server.TakeCommands();
    EXPECT_TRUE(m_Control.DeleteEmptyChangelist(change));
    EXPECT_THAT(m_Server.TakeCommands(), ElementsAre("change -d 1"));
    EXPECT_TRUE(m_Server.Load().changes.empty());
}

TEST_F(ChangelistTest, RevertsWholeOnes) {
    for (const char* pName : {"a", "b", "c"})
        m_Server.Submit(pName, pName);
    m_Server.Write("n", "n");
    const int change = m_Server.MakeChange("Mine");
    EXPECT_TRUE(m_Control.RevertChangelist(change, false)); // nothing to do
    EXPECT_THAT(m_Server.TakeCommands(), ElementsAre("opened -c 1"));
    ASSERT_TRUE(m_Control.Edit(Name("a"), change) && m_Control.Edit(Name("b"), change) &&
                m_Control.Add(Name("n"), change) && m_Control.Edit(Name("c"), 0));
    m_Server.Write("a", "changed");
    m_Server.TakeCommands();
    EXPECT_TRUE(m_Control.RevertChangelist(change, true));
    EXPECT_THAT(m_Server.TakeCommands(), ElementsAre("opened -c 1", "revert -a -c 1 //..."));
    EXPECT_EQ(m_Server.GetOpened("a"), "edit 1");
    EXPECT_EQ(m_Server.GetOpened("b"), "");
    ExpectFailure(m_Control.RevertChangelist(change, true), "Failed to revert changlist #: '1'"); // none is unchanged
    EXPECT_TRUE(m_Control.RevertChangelist(change, false));
    EXPECT_EQ(m_Server.Load().opened.size(), 1u);
    m_Server.TakeCommands();
    EXPECT_TRUE(m_Control.RevertChangelist(0, false));
    EXPECT_THAT(m_Server.TakeCommands(), ElementsAre("opened -c default", "revert -c default //..."));
    // Every line is judged.
    ASSERT_TRUE(m_Control.Edit(Name("a"), change) && m_Control.Integrate(Name("a"), Name("d"), change));
    ExpectFailure(m_Control.RevertChangelist(change, false),
                  "Failed to revert changlist #: '1', error: '//depot/d#none - was branch, deleted'");
}

TEST_F(ChangelistTest, Patterns) {
    const struct {
        const char* pText;
        int32_t number; // 0 for none
    } opened[] = {{"//depot/x#1 - edit change 12 (text)", 12}, {"//depot/a change 3/x#1 - edit change 12 (text)", 12},
                  {"//depot/x#1 - edit change (text)", 0},     {"//depot/x#1 - edit change 99999999999 (text)", 0},
                  {"//depot/x#1 - edit xchange 12", 0},        {"", 0}};
    for (const auto& [pText, number] : opened) {
        int32_t found = 0;
        EXPECT_EQ(ChangelistPatterns::ReadOpened(pText, found), number != 0) << pText;
        EXPECT_EQ(found, number) << pText;
    }
    // Long enough to be too much work for a careless match.
    std::string text;
    while (text.size() < 1 << 20)
        text += " change x";
    EXPECT_FALSE(ChangelistPatterns::ReadOpened(text, m_Number));
}

} // namespace
