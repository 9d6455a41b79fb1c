#include "Shared/Cross/FileSystem/Paths/HDNotification.h"

#include "Shared/Cross/FileSystem/Paths/FilePathHD.h"
#include "Tests/Shared/Cross/Debug/ReportCapture.h"
#include "Tests/Shared/PC/FileSystem/TempFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

namespace {

using NameList = std::vector<std::string>;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class HDNotificationTest : public testing::Test {
protected:
    TempFolder m_Folder;
    ReportCapture m_Reports;
    std::optional<HDNotification> m_Notification;

    HDNotificationTest() { m_Folder.MakeFolder("root"); }

    void Watch() { m_Notification.emplace(m_Folder.Path("root")); }
    NameList Changes() {
        NameList names;
        EXPECT_TRUE(m_Notification->GetChanges(names));
        return names;
    }
    bool Knows() {
        NameList names;
        return m_Notification->GetChanges(names);
    }
    std::string RequestLine(const char* pFolder = "") const {
        return "NOTIFIER - Error requesting notifications for " + m_Folder.Path("root") + "\\" + pFolder;
    }
};

TEST_F(HDNotificationTest, TellsEachChangedFileOnce) {
    for (const char* pName : {"root/old.tga", "root/Sub/gone.tga", "root/Sub/from.tga"})
        m_Folder.Write(pName, "x");
    m_Folder.MakeFolder("outside");
    std::filesystem::create_directory_symlink(m_Folder.Native("outside"), m_Folder.Native("root/link"));
    std::filesystem::create_directory_symlink(m_Folder.Native("root"), m_Folder.Native("root/loop"));
    Watch();
    EXPECT_TRUE(
        ReportCapture::HasWarning("NOTIFIER - Handle created for directory " + m_Folder.Path("root") + "\\ - 0x"));
    EXPECT_THAT(Changes(), IsEmpty());
    m_Folder.Write("root/New.tga", "x");
    m_Folder.Write("root/old.tga", "y");
    m_Folder.Write("root/New.tga", "again");
    m_Folder.Remove("root/Sub/gone.tga");
    m_Folder.Rename("root/Sub/from.tga", "root/to.tga");
    // What is read, lies behind a link, or has a name that no path can express.
    m_Folder.Read("root/to.tga");
    for (const char* pName : {"outside/x", "root/a\\b/x", "root/c:d"})
        m_Folder.Write(pName, "");
    EXPECT_THAT(Changes(), ElementsAre("New.tga", "old.tga", "Sub\\gone.tga", "Sub\\from.tga", "to.tga"));
    EXPECT_THAT(Changes(), IsEmpty());
}

TEST_F(HDNotificationTest, NewSubFoldersAreWatched) {
    Watch();
    m_Folder.Write("root/a/b/early.tga", "x");
    EXPECT_THAT(Changes(), ElementsAre("a\\b\\early.tga"));
    m_Folder.Write("root/a/b/c/late.tga", "x");
    m_Folder.Write("root/a/b/early.tga", "y");
    EXPECT_THAT(Changes(), UnorderedElementsAre("a\\b\\c\\late.tga", "a\\b\\early.tga"));
    m_Folder.Remove("root/a");
    EXPECT_THAT(Changes(), UnorderedElementsAre("a\\b\\c\\late.tga", "a\\b\\early.tga"));
    m_Folder.Write("root/a/b/again.tga", "x");
    EXPECT_THAT(Changes(), ElementsAre("a\\b\\again.tga"));
}

TEST_F(HDNotificationTest, RenamedFoldersGoByTheirNewName) {
    m_Folder.Write("root/a/sub/x.tga", "x");
    m_Folder.Write("root/abc/y.tga", "x"); // another folder, whose name begins alike
    m_Folder.Write("outside/z.tga", "x");
    Watch();
    m_Folder.Rename("root/a", "root/b");
    EXPECT_THAT(Changes(), ElementsAre("b\\sub\\x.tga"));
    m_Folder.Write("root/b/sub/x.tga", "y");
    m_Folder.Write("root/abc/y.tga", "y");
    EXPECT_THAT(Changes(), ElementsAre("b\\sub\\x.tga", "abc\\y.tga"));
    // Into a folder that is only just being looked at, so that its own move is told after it was found there.
    m_Folder.MakeFolder("root/n");
    m_Folder.Rename("root/b", "root/n/b");
    EXPECT_THAT(Changes(), ElementsAre("n\\b\\sub\\x.tga"));
    m_Folder.Write("root/n/b/sub/x.tga", "z");
    EXPECT_THAT(Changes(), ElementsAre("n\\b\\sub\\x.tga"));

    m_Folder.Rename("outside", "root/in");
    EXPECT_THAT(Changes(), ElementsAre("in\\z.tga"));
    m_Folder.Rename("root/in", "outside");
    EXPECT_THAT(Changes(), IsEmpty());
    m_Folder.Write("outside/z.tga", "y");
    EXPECT_THAT(Changes(), IsEmpty());
}

TEST_F(HDNotificationTest, ARootThatGoesIsLookedForAgain) {
    m_Folder.Write("root/x.tga", "x");
    Watch();
    m_Folder.Remove("root");
    EXPECT_THAT(Changes(), ElementsAre("x.tga"));
    EXPECT_FALSE(Knows());
    EXPECT_FALSE(Knows());
    EXPECT_EQ(ReportCapture::CountWarnings(RequestLine() + ", error code: 0x2."), 1u);
    EXPECT_EQ(ReportCapture::CountWarnings("NOTIFIER - Unable to create handle for directory " + m_Folder.Path("root") +
                                           "\\, error code: 0x2."),
              1u);
    m_Folder.Write("Root/sub/y.tga", "x"); // which is the same root in another spelling
    EXPECT_THAT(Changes(), ElementsAre("sub\\y.tga"));
    m_Folder.Rename("Root", "away");
    m_Folder.Write("root/z.tga", "x");
    EXPECT_THAT(Changes(), ElementsAre("z.tga"));
    m_Folder.Write("away/y.tga", "x");
    EXPECT_THAT(Changes(), IsEmpty());
}

TEST_F(HDNotificationTest, SourcesAndWatchersHearByAliases) {
    const std::string root = m_Folder.Path("root");
    const auto pSource = FilePathHD::Create(root.c_str(), ByteStream::Mode_Both, false, true);
    ASSERT_TRUE(FilePath::AddSource("DATA", "root", 1, pSource));
    ASSERT_TRUE(FilePath::AddSource("ART", "root", 1, pSource));
    NameList heard;
    const auto listen = [&](const char* pName) { heard.emplace_back(pName); };
    EXPECT_TRUE(FilePath::AddWatcher("data:ART\\*.tga", listen));
    EXPECT_TRUE(FilePath::AddWatcher("ART:*", [&](const char* pName) {
        listen(pName);
        FilePath::RemoveWatcher("ART:*"); // so that it hears of the first one only
    }));
    EXPECT_TRUE(FilePath::OpenStream("DATA:Art\\x.tga", ByteStream::Mode_Write)->WriteText("x", false));
    m_Folder.Write("root/Art/y.TGA", "");
    m_Folder.Write("root/Art/z.dds", "");
    FilePath::PollChanges();
    EXPECT_THAT(heard, ElementsAre("ART:Art\\x.tga", "DATA:Art\\x.tga", "DATA:Art\\y.TGA"));
    FilePath::PollChanges();
    EXPECT_EQ(heard.size(), 3u);
    EXPECT_THROW(FilePath::AddWatcher("DATA:*", nullptr), std::runtime_error);
    EXPECT_TRUE(FilePath::RemoveWatcher("data:ART\\*.tga"));
    EXPECT_FALSE(FilePath::RemoveWatcher("data:ART\\*.tga"));
    FilePath::RemoveSource("DATA", "root");
    FilePath::RemoveSource("ART", "root");
}

} // namespace
