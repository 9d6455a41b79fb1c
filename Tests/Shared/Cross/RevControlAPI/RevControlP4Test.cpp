#include "Tests/Shared/Cross/RevControlAPI/P4Fixture.h"

namespace {

using testing::ElementsAre;
using Api = RevControlAPI;

class RevControlP4Test : public P4Fixture {};

TEST_F(RevControlP4Test, EditAddDelete) {
    m_Server.Submit("art/a.pvx", "a");
    m_Server.Submit("b.pvx", "b");
    m_Server.Write("new.pvx", "new");
    const int change = m_Server.MakeChange("Mine");
    EXPECT_TRUE(m_Control.Edit(Name("art/a.pvx"), change));
    EXPECT_TRUE(m_Control.Add(Name("new.pvx"), 0));
    EXPECT_TRUE(m_Control.Delete(Name("b.pvx"), 0));
    EXPECT_THAT(m_Server.TakeCommands(), ElementsAre("edit -c 1 art/a.pvx", "add new.pvx", "delete b.pvx"));
    EXPECT_EQ(m_Server.GetOpened("art/a.pvx"), "edit 1");
    EXPECT_TRUE(m_Server.IsWritable("art/a.pvx"));
    EXPECT_EQ(m_Server.GetOpened("new.pvx"), "add default");
    EXPECT_FALSE(m_Server.Has("b.pvx"));
    EXPECT_EQ(m_Control.GetLastError(), "");
}

// The file has the spelling that it has on disk, however it was asked for.
TEST_F(RevControlP4Test, NamesReachTheServerInTheMachinesForm) {
    m_Server.Submit("Art/Ref 1.pvx", "a");
    EXPECT_TRUE(m_Control.Edit(Name("ART/REF 1.PVX"), 0));
    EXPECT_EQ(m_Server.GetOpened("Art/Ref 1.pvx"), "edit default");
    EXPECT_TRUE(m_Control.Edit("//depot/Art/Ref 1.pvx", 0));
    EXPECT_THAT(m_Server.TakeCommands(), ElementsAre("edit Art/Ref 1.pvx", "edit //depot/Art/Ref 1.pvx"));
    // A name is none of the program's options, whatever it looks like.
    EXPECT_FALSE(m_Control.Edit("-i", 0));
    EXPECT_THAT(m_Server.TakeCommands(), ElementsAre(testing::EndsWith("/-i")));
}

TEST_F(RevControlP4Test, RefusalsHaveTheirTexts) {
    for (const char* pName : {"a", "b"})
        m_Server.Submit(pName, pName);
    const int change = m_Server.MakeChange("Mine");
    ASSERT_TRUE(m_Control.Edit(Name("b"), 0));
    const std::string a = Quote("a");
    const std::string b = Quote("b");
    const std::string none = Quote("none");
    ExpectFailure(m_Control.Edit(Name("none"), 0), "Failed to open for edit file: " + none);
    ExpectFailure(m_Control.Edit(Name("b"), change),
                  "Failed to open for edit file: " + b +
                      ", error: '//depot/b#1 - can't change from default change - use 'reopen''");
    ExpectFailure(m_Control.Add("Z:\\elsewhere\\x", 0), "Failed to open for Add file: 'Z:\\elsewhere\\x'");
    ExpectFailure(m_Control.Add(Name("a"), 0),
                  "Failed to open for Add file: " + a + ", error: '//depot/a - can't add existing file'");
    ExpectFailure(m_Control.Delete(Name("none"), 0), "Failed to open for Delete file: " + none);
    ExpectFailure(m_Control.Delete(Name("b"), 0),
                  "Failed to open for Delete file: " + b +
                      ", error: '//depot/b#1 - can't delete (already opened for edit)'");
    ExpectFailure(m_Control.RevertFile(Name("a"), 0, false), "Failed to Revert file: " + a);
    m_Server.Say("revert", "info: what is this\nexit: 0\n");
    ExpectFailure(m_Control.RevertFile(Name("a"), 0, false), "Failed to Revert file: " + a + ", error: 'what is this'");
}

TEST_F(RevControlP4Test, OnlyTheFirstLineIsJudged) {
    m_Server.Say("edit", "info: no\ninfo: //depot/x#1 - opened for edit\nexit: 0\n");
    EXPECT_FALSE(m_Control.Edit(Name("x"), 0));
    m_Server.Say("edit", "error: no\ninfo1: //depot/x#1 - opened for edit\ninfo: no\nexit: 1\n");
    EXPECT_TRUE(m_Control.Edit(Name("x"), 0));
    m_Server.Say("edit", "text: opened for edit\nexit: 0\n");
    EXPECT_FALSE(m_Control.Edit(Name("x"), 0));
}

TEST_F(RevControlP4Test, RenameIsABranchAndADelete) {
    m_Server.Submit("a.pvx", "a");
    m_Server.Submit("open.pvx", "o");
    const int change = m_Server.MakeChange("Mine");
    EXPECT_TRUE(m_Control.Rename(Name("a.pvx"), Name("b.pvx"), change));
    EXPECT_EQ(m_Server.GetOpened("a.pvx"), "delete 1");
    EXPECT_EQ(m_Server.GetOpened("b.pvx"), "branch 1");
    EXPECT_TRUE(m_Control.Edit(Name("b.pvx"), change)); // "reopened for add"
    EXPECT_EQ(m_Server.GetOpened("b.pvx"), "add 1");

    ExpectFailure(m_Control.Rename(Name("none"), Name("c.pvx"), change),
                  "Failed to integrate file: " + Quote("none") + " to: " + Quote("c.pvx") + " during rename operation");
    ASSERT_TRUE(m_Control.Edit(Name("open.pvx"), change));
    ExpectFailure(m_Control.Rename(Name("open.pvx"), Name("d.pvx"), change),
                  "Failed to delete file: " + Quote("open.pvx") + " during rename operation");
    EXPECT_EQ(m_Server.GetOpened("d.pvx"), "branch 1");

    ExpectFailure(m_Control.Integrate(Name("none"), Name("c.pvx"), change),
                  "Failed to integrate file: " + Quote("none") + " to: " + Quote("c.pvx"));
    ExpectFailure(m_Control.Integrate(Name("a.pvx"), Name("b.pvx"), change),
                  "Failed to Integrate file: " + Quote("a.pvx") +
                      ", error: '//depot/b.pvx - can't branch from //depot/a.pvx#1 without -d or -Ds flag'");
}

TEST_F(RevControlP4Test, RevertsOfEachKind) {
    for (const char* pName : {"edited", "deleted", "source", "changed"})
        m_Server.Submit(pName, "old");
    m_Server.Write("added", "a");
    const int change = m_Server.MakeChange("Mine");
    ASSERT_TRUE(m_Control.Edit(Name("edited"), change) && m_Control.Delete(Name("deleted"), 0) &&
                m_Control.Integrate(Name("source"), Name("branched"), change) && m_Control.Add(Name("added"), 0) &&
                m_Control.Edit(Name("changed"), 0));
    m_Server.Write("changed", "new");
    EXPECT_TRUE(m_Control.IsOpenedIn(Name("changed"), 0));
    EXPECT_FALSE(m_Control.IsOpenedIn(Name("changed"), change));
    int32_t number = 77;
    EXPECT_TRUE(m_Control.GetOpenedChangelist(Name("changed"), number));
    EXPECT_EQ(number, 0);
    EXPECT_TRUE(m_Control.GetOpenedChangelist(Name("edited"), number));
    EXPECT_EQ(number, change);
    EXPECT_FALSE(m_Control.GetOpenedChangelist(Name("none"), number));
    m_Server.Say("opened", "info: //depot/edited#1 - edit\nexit: 0\n"); // no refusal
    EXPECT_TRUE(m_Control.GetOpenedChangelist(Name("edited"), number));
    EXPECT_EQ(number, 0);
    m_Server.TakeCommands();
    EXPECT_FALSE(m_Control.RevertFile(Name("changed"), 0, true)); // isn't unchanged
    EXPECT_TRUE(m_Control.RevertFile(Name("edited"), change, true));
    EXPECT_TRUE(m_Control.RevertFile(Name("deleted"), 0, false));
    EXPECT_TRUE(m_Control.RevertFile(Name("branched"), change, false));
    EXPECT_TRUE(m_Control.RevertFile(Name("added"), 0, false));
    EXPECT_THAT(m_Server.TakeCommands(), ElementsAre("revert -a changed", "revert -a -c 1 edited", "revert deleted",
                                                     "revert -c 1 branched", "revert added"));
    EXPECT_TRUE(m_Server.Has("deleted"));
    EXPECT_EQ(m_Server.Load().opened.size(), 1u);
}

TEST_F(RevControlP4Test, ListsAreOpenedWhollyOrNotAtAll) {
    m_Server.Submit("a", "a");
    m_Server.Submit("b", "b");
    for (const char* pName : {"m", "n"})
        m_Server.Write(pName, pName);
    const std::vector<std::string> known = {Name("a"), Name("b")};
    const std::vector<std::string> unknown = {Name("m"), Name("n")};
    const std::vector<std::string> mixed = {Name("a"), Name("b"), Name("m"), Name("n")};
    const std::vector<std::string> mixedNew = {Name("m"), Name("a")};
    const int change = m_Server.MakeChange("Mine");
    EXPECT_FALSE(m_Control.EditFiles(mixed, change));
    EXPECT_THAT(m_Server.TakeCommands(),
                ElementsAre("edit -c 1 a", "edit -c 1 b", "edit -c 1 m", "revert -c 1 a", "revert -c 1 b"));
    EXPECT_FALSE(m_Control.AddFiles(mixedNew, change));
    EXPECT_TRUE(m_Server.Load().opened.empty());
    EXPECT_TRUE(m_Control.EditFiles(known, change));
    EXPECT_TRUE(m_Control.AddFiles(unknown, change));
    EXPECT_TRUE(m_Control.EditFiles({}, change));
    EXPECT_EQ(m_Server.Load().opened.size(), 4u);
}

TEST_F(RevControlP4Test, FileStatus) {
    for (const char* pName : {"plain", "edited", "deleted", "source", "gone"})
        m_Server.Submit(pName, "x");
    for (const char* pName : {"exclusive", "mine"})
        m_Server.Submit(pName, "x", true, "binary+l");
    m_Server.Submit("locked", "x");
    m_Server.Submit("shared", "x");
    m_Server.Submit("action edit headAction delete otherLock", "x"); // its name isn't looked at
    m_Server.Write("added", "a");
    m_Server.DeleteAtHead("gone");
    m_Server.OpenByOther("exclusive");
    m_Server.OpenByOther("shared");
    m_Server.OpenByOther("locked", true);
    const int change = m_Server.MakeChange("Mine");
    ASSERT_TRUE(m_Control.Edit(Name("edited"), 0) && m_Control.Add(Name("added"), 0) &&
                m_Control.Delete(Name("deleted"), 0) && m_Control.Integrate(Name("source"), Name("branch"), change) &&
                m_Control.Edit(Name("mine"), 0));
    const std::pair<const char*, Api::FileStatus> cases[] = {
        {"plain", Api::Status_InDepot},      {"edited", Api::Status_Edit},
        {"mine", Api::Status_Edit},          {"added", Api::Status_Add},
        {"branch", Api::Status_Add},         {"deleted", Api::Status_Delete},
        {"locked", Api::Status_OtherLocked}, {"exclusive", Api::Status_OtherLocked},
        {"shared", Api::Status_InDepot},     {"gone", Api::Status_Unknown},
        {"none", Api::Status_Unknown},       {"action edit headAction delete otherLock", Api::Status_InDepot},
    };
    for (const auto& [pName, status] : cases)
        EXPECT_EQ(m_Control.GetFileStatus(Name(pName)), status) << pName;
    EXPECT_EQ(m_Control.GetFileStatus("Z:\\elsewhere\\x"), Api::Status_Unknown);
}

TEST_F(RevControlP4Test, SyncBySingleFileAndByFolder) {
    m_Server.Submit("art/new", "new", false);
    m_Server.Submit("art/old", "old");
    m_Server.Submit("art/mine", "mine");
    m_Server.SubmitByOther("art/old", "newer");
    m_Server.SubmitByOther("art/mine", "theirs");
    OSFile::SetWritable(Name("art/mine"), true);
    EXPECT_EQ(m_Control.Sync(Name("art/new"), false), Api::Sync_Updated);
    EXPECT_EQ(m_Server.Read("art/new"), "new");
    EXPECT_EQ(m_Control.Sync(Name("art/old"), false), Api::Sync_Updated);
    EXPECT_EQ(m_Server.Read("art/old"), "newer");
    EXPECT_EQ(m_Control.Sync(Name("art/old"), false), Api::Sync_UpToDate);
    EXPECT_EQ(m_Control.Sync(Name("none"), false), Api::Sync_NoFile);
    EXPECT_EQ(m_Control.Sync(Name("art/mine"), false), Api::Sync_Failed);
    EXPECT_EQ(m_Control.GetLastError(), ""); // that one has no text
    EXPECT_EQ(m_Server.Read("art/mine"), "mine");
    m_Server.TakeCommands();

    OSFile::SetWritable(Name("art/mine"), false);
    EXPECT_EQ(m_Control.Sync(Name("art"), true), Api::Sync_Updated);
    EXPECT_EQ(m_Control.Sync((m_Server.Path("art") + "\\").c_str(), true), Api::Sync_UpToDate);
    EXPECT_EQ(m_Control.Sync((m_Server.Path("art") + "/").c_str(), true), Api::Sync_UpToDate);
    EXPECT_THAT(m_Server.TakeCommands(), ElementsAre("sync art/...", "sync art/...", "sync art/..."));
}

TEST_F(RevControlP4Test, AFailedSyncTellsTheServersWords) {
    m_Server.Submit("a", "a");
    m_Server.DeleteAtHead("a");
    EXPECT_EQ(m_Control.Sync(Name("a"), false), Api::Sync_Failed); // "deleted as" is no update
    EXPECT_EQ(m_Control.GetLastError(), "Failed to sync file: " + Quote("a"));
    EXPECT_EQ(m_Control.Sync("Z:\\elsewhere\\x", false), Api::Sync_Failed);
    EXPECT_EQ(m_Control.GetLastError(), "Failed to sync file: 'Z:\\elsewhere\\x', error: 'Path '/elsewhere/x' is not "
                                        "under client's root '" +
                                            m_Server.Native() + "'.'");
    // An update counts, whatever the server grumbles about besides.
    m_Server.Say("sync", "error: disk nearly full\ninfo: //depot/a#2 - updating /x\nexit: 1\n");
    EXPECT_EQ(m_Control.Sync(Name("a"), false), Api::Sync_Updated);
}

class OpenOrAddTest : public P4Fixture {};

TEST_F(OpenOrAddTest, AnOldFileIsEdited) {
    m_Server.Write("new", "n");
    EXPECT_EQ(m_Control.OpenOrAdd(Name("new"), 0), Api::Open_Opened);
    EXPECT_THAT(m_Server.TakeCommands(), ElementsAre("add new"));
    m_Server.Submit("old", "o");
    const int change = m_Server.MakeChange("Mine");
    EXPECT_EQ(m_Control.OpenOrAdd(Name("old"), change), Api::Open_Opened);
    EXPECT_THAT(m_Server.TakeCommands(), ElementsAre("add -c 1 old", "fstat old", "edit -c 1 old"));
    EXPECT_EQ(m_Control.OpenOrAdd(Name("old"), change), Api::Open_AlreadyOpened);
    EXPECT_TRUE(m_Server.IsWritable("old"));
}

TEST_F(OpenOrAddTest, AnotherChangelistKeepsItsFile) {
    m_Server.Submit("old", "o");
    m_Server.Write("new", "n");
    const int theirs = m_Server.MakeChange("Theirs");
    const int mine = m_Server.MakeChange("Mine");
    ASSERT_TRUE(m_Control.Edit(Name("old"), theirs) && m_Control.Add(Name("new"), theirs));
    EXPECT_EQ(m_Control.OpenOrAdd(Name("old"), mine), Api::Open_OtherList);
    EXPECT_EQ(m_Control.OpenOrAdd(Name("new"), mine), Api::Open_OtherList);
    EXPECT_EQ(m_Server.GetOpened("old"), "edit 1");
    EXPECT_EQ(m_Server.GetOpened("new"), "add 1");
}

TEST_F(OpenOrAddTest, ADeleteIsUndone) {
    m_Server.Submit("a", "a");
    m_Server.Submit("b", "b");
    const int theirs = m_Server.MakeChange("Theirs");
    const int mine = m_Server.MakeChange("Mine");
    ASSERT_TRUE(m_Control.Delete(Name("a"), mine) && m_Control.Delete(Name("b"), theirs));
    m_Server.TakeCommands();
    EXPECT_EQ(m_Control.OpenOrAdd(Name("a"), mine), Api::Open_Opened);
    EXPECT_EQ(m_Server.GetOpened("a"), "edit 2");
    EXPECT_THAT(m_Server.TakeCommands(), ElementsAre("add -c 2 a", "fstat a", "opened -c 2 a", "revert -c 2 a",
                                                     "add -c 2 a", "fstat a", "edit -c 2 a"));
    EXPECT_EQ(m_Control.OpenOrAdd(Name("b"), mine), Api::Open_Opened); // somebody else's business
    EXPECT_EQ(m_Server.GetOpened("b"), "delete 1");
}

TEST_F(OpenOrAddTest, WhatCantBeOpened) {
    m_Server.Submit("locked", "x", true, "binary+l");
    m_Server.OpenByOther("locked");
    EXPECT_EQ(m_Control.OpenOrAdd(Name("locked"), 0), Api::Open_Failed);
    EXPECT_EQ(m_Control.OpenOrAdd("Z:\\elsewhere\\x", 0), Api::Open_Failed);
    // A delete that can't be reverted, and one that stays however often it is reverted.
    m_Server.Submit("a", "a");
    ASSERT_TRUE(m_Control.Delete(Name("a"), 0));
    m_Server.Say("revert", "error: no\nexit: 1\n");
    EXPECT_EQ(m_Control.OpenOrAdd(Name("a"), 0), Api::Open_Failed);
    m_Server.Say("revert", "info: //depot/a#1 - was delete, reverted\nexit: 0\n");
    m_Server.TakeCommands();
    EXPECT_EQ(m_Control.OpenOrAdd(Name("a"), 0), Api::Open_Failed);
    EXPECT_LT(m_Server.TakeCommands().size(), 20u);
}

} // namespace
