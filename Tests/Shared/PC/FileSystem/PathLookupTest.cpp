#include "Shared/PC/FileSystem/PathLookup.h"

#include "Tests/Shared/Cross/Debug/ReportCapture.h"
#include "Tests/Shared/PC/FileSystem/TempFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include <linux/magic.h>
#include <sys/inotify.h>
#include <sys/vfs.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

bool IsDiskOfThisMachine(const std::string& folder) {
    constexpr std::array<int64_t, 5> disks{EXT4_SUPER_MAGIC, XFS_SUPER_MAGIC, BTRFS_SUPER_MAGIC, TMPFS_MAGIC,
                                           OVERLAYFS_SUPER_MAGIC};
    struct statfs facts {};
    return statfs(folder.c_str(), &facts) == 0 && std::ranges::find(disks, int64_t{facts.f_type}) != disks.end();
}

// Asks the system itself whether it tells of changes in the folder and in those above it.
bool CanBeWatched(std::filesystem::path folder) {
    const int queue = inotify_init1(IN_CLOEXEC);
    const auto isWatched = [&] {
        return IsDiskOfThisMachine(folder) && inotify_add_watch(queue, folder.c_str(), IN_CREATE) >= 0;
    };
    bool can = isWatched();
    for (; can && folder.has_relative_path(); can = isWatched())
        folder = folder.parent_path();
    if (queue >= 0)
        close(queue);
    return can;
}

// Every test runs twice: with folders that are read at each look-up, and with folders that are watched.
class PathLookupTest : public testing::TestWithParam<bool> {
protected:
    TempFolder m_Folder;
    PathLookup m_Lookup;

    void SetUp() override {
        if (!GetParam())
            return;
        if (!CanBeWatched(m_Folder.Native()))
            GTEST_SKIP() << "this system watches no folders";
        m_Folder.Write("Warm", "");
        for (int i = 0; i < 20; ++i)
            EXPECT_EQ(Find("WARM"), "Warm");
        ASSERT_EQ(CutFolder(Guess("X")), "X") << "the folder isn't watched, though the system can";
    }
    // Below the folder, as asked and as found.
    std::string Find(const std::string& name) { return CutFolder(m_Lookup.Find(UpperFolder() + name)); }
    std::string Guess(const std::string& name) { return m_Lookup.Guess(UpperFolder() + name); }
    std::string UpperFolder() const { return UpperCase(m_Folder.Native()) + "/"; }
    std::string CutFolder(const std::string& path) const {
        const std::string folder = m_Folder.Native() + "/";
        return path.starts_with(folder) ? path.substr(folder.size()) : path;
    }
};

INSTANTIATE_TEST_SUITE_P(Ways, PathLookupTest, testing::Bool(),
                         [](const auto& way) { return way.param ? "Watched" : "Read"; });

} // namespace

TEST_P(PathLookupTest, ComponentByComponent) {
    m_Folder.Write("Art/Ebps/Tank.pvx", "");
    EXPECT_EQ(Find("ART/ebps/TANK.PVX"), "Art/Ebps/Tank.pvx");
    EXPECT_EQ(Find("art/EBPS"), "Art/Ebps");
    EXPECT_EQ(Find("art/ebps/New.pvx"), "Art/Ebps/New.pvx");
    EXPECT_EQ(Find("ART/New/x"), "Art/New/x");
    EXPECT_EQ(Find("ART/ebps/tank.pvx/x"), "Art/Ebps/Tank.pvx/x");
    EXPECT_EQ(m_Lookup.Find("/"), "/");
    m_Folder.Write("Art/Ebps/TANK.pvx", "");
    EXPECT_EQ(Find("art/ebps/Tank.pvx"), "Art/Ebps/Tank.pvx");
    EXPECT_EQ(Find("art/ebps/tank.pvx"), "Art/Ebps/TANK.pvx") << "the first in the order of bytes";
}

TEST_P(PathLookupTest, NothingIsStale) {
    m_Folder.Write("Art/File", "");
    EXPECT_EQ(Find("ART/FILE"), "Art/File");
    m_Folder.Rename("Art/File", "Art/fILE");
    EXPECT_EQ(Find("ART/FILE"), "Art/fILE");
    m_Folder.Write("Art/FILE", "");
    EXPECT_EQ(Find("ART/FILE"), "Art/FILE");
    m_Folder.Remove("Art/FILE");
    EXPECT_EQ(Find("ART/FILE"), "Art/fILE");
    // A rival on the way to the file.
    m_Folder.MakeFolder("ART");
    EXPECT_EQ(Find("ART/FILE"), "ART/FILE");
    EXPECT_EQ(Find("art/FILE"), "ART/FILE");
    m_Folder.Remove("ART");
    EXPECT_EQ(Find("ART/FILE"), "Art/fILE");
    // A folder that goes and comes again under another name.
    m_Folder.Rename("Art", "Gone");
    EXPECT_EQ(Find("ART/FILE"), "ART/FILE");
    m_Folder.Write("aRT/fiLE", "");
    EXPECT_EQ(Find("ART/FILE"), "aRT/fiLE");
    m_Folder.Remove("aRT");
    m_Folder.Rename("Gone", "aRT");
    EXPECT_EQ(Find("ART/FILE"), "aRT/fILE");
}

TEST_P(PathLookupTest, AGuessIsNeverStale) {
    m_Folder.Write("Art/File", "");
    Find("ART/FILE");
    const std::string known = Guess("ART/FILE");
    EXPECT_EQ(CutFolder(known), GetParam() ? "Art/File" : UpperFolder() + "ART/FILE");
    m_Folder.MakeFolder("ART");
    EXPECT_NE(CutFolder(Guess("ART/FILE")), "Art/FILE");
    Find("ART/FILE");
    m_Folder.Remove("ART");
    m_Folder.Rename("Art", "Moved");
    EXPECT_EQ(Guess("ART/FILE"), UpperFolder() + "ART/FILE");
}

TEST_P(PathLookupTest, LinksAreFollowedAndWatchedToo) {
    m_Folder.Write("Real/Deep/File", "1");
    m_Folder.Write("Other/Deep/fILE", "2");
    std::filesystem::create_directory_symlink(m_Folder.Native("Real"), m_Folder.Native("Link"));
    const auto isSame = [&](const char* pFound, const char* pExpected) {
        return std::filesystem::equivalent(m_Lookup.Find(UpperFolder() + pFound), m_Folder.Native(pExpected));
    };
    EXPECT_TRUE(isSame("LINK/DEEP/FILE", "Real/Deep/File"));
    m_Folder.Remove("Link");
    std::filesystem::create_directory_symlink(m_Folder.Native("Other"), m_Folder.Native("Link"));
    EXPECT_TRUE(isSame("LINK/DEEP/FILE", "Other/Deep/fILE"));
    // The folder behind the link, under its own name.
    m_Folder.Rename("Other/Deep", "Other/Old");
    m_Folder.Write("Other/dEEP/FiLE", "3");
    EXPECT_TRUE(isSame("LINK/DEEP/FILE", "Other/dEEP/FiLE"));
    // A link in a circle leads nowhere.
    std::filesystem::create_directory_symlink(m_Folder.Native("Circle"), m_Folder.Native("Circle"));
    EXPECT_NE(m_Lookup.Find(UpperFolder() + "CIRCLE/X"), "");
}

TEST_P(PathLookupTest, MoreEventsThanTheSystemKeeps) {
    m_Folder.Write("Art/File", "");
    EXPECT_EQ(Find("ART/FILE"), "Art/File");
    m_Folder.Rename("Art/File", "Art/file0");
    for (int i = 0; i < 20'000; ++i) // the system keeps 16,384
        m_Folder.Rename("Art/file" + std::to_string(i), "Art/file" + std::to_string(i + 1));
    EXPECT_EQ(Find("ART/FILE20000"), "Art/file20000");
    EXPECT_EQ(Find("ART/FILE0"), "Art/FILE0");
}

TEST_P(PathLookupTest, ACopyOfTheProcessLeavesTheEventsAlone) {
    PathLookup& shared = PathLookup::Get();
    m_Folder.Write("Art/File", "");
    for (int i = 0; i < 40; ++i)
        EXPECT_EQ(CutFolder(shared.Find(UpperFolder() + "ART/FILE")), "Art/File");
    m_Folder.Rename("Art/File", "Art/fILE");
    const pid_t child = fork();
    if (child == 0) {
        const bool right = CutFolder(shared.Find(UpperFolder() + "ART/FILE")) == "Art/fILE";
        _exit(right ? 0 : 1);
    }
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(CutFolder(shared.Find(UpperFolder() + "ART/FILE")), "Art/fILE");
}
