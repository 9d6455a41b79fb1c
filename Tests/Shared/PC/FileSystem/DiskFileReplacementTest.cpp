#include "Shared/PC/FileSystem/DiskFileReplacement.h"

#include "Tests/Shared/Cross/Debug/ReportCapture.h"
#include "Tests/Shared/PC/FileSystem/TempFolder.h"

#include <gmock/gmock.h>

#include <csignal>

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

class Replacement : public testing::Test {
protected:
    TempFolder m_Folder;

    std::unique_ptr<FileReplacement> Replace(const std::string& name) const {
        return ReplaceFile(m_Folder.Path(name).c_str(), false);
    }
    static void Put(FileReplacement& file, std::string_view bytes) {
        file.GetStream().Write(bytes.data(), static_cast<uint32_t>(bytes.size()));
    }
    std::vector<std::string> List() const { return OSFile::List(m_Folder.Path("*").c_str()); }
    mode_t GetMode(const std::string& name) const {
        struct stat facts {};
        stat(m_Folder.Native(name).c_str(), &facts);
        return facts.st_mode & ALLPERMS;
    }
};

// Files of this process end there, as on a full disk.
class SizeLimit {
public:
    explicit SizeLimit(rlim_t size) {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_Before);
        const rlimit limit{size, m_Before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~SizeLimit() {
        setrlimit(RLIMIT_FSIZE, &m_Before);
        std::signal(SIGXFSZ, SIG_DFL);
    }
    SizeLimit(const SizeLimit&) = delete;
    SizeLimit& operator=(const SizeLimit&) = delete;

private:
    rlimit m_Before{};
};

} // namespace

TEST_F(Replacement, TheOldOneStandsUntilTheNewOneIsWhole) {
    for (const std::string before : {"", "old"}) {
        if (!before.empty())
            m_Folder.Write("a.pvx", before);
        Put(*Replace("a.pvx"), "unfinished");
        EXPECT_EQ(m_Folder.Read("a.pvx"), before);
        EXPECT_EQ(List().size(), before.empty() ? 0u : 1u);
        const auto pFile = Replace("a.pvx");
        Put(*pFile, "new");
        EXPECT_THAT(List(), testing::Contains("a.pvx.part"));
        EXPECT_EQ(m_Folder.Read("a.pvx"), before);
        EXPECT_EQ(Replace("a.pvx"), nullptr) << "a second writer";
        EXPECT_TRUE(pFile->Finish());
        EXPECT_EQ(m_Folder.Read("a.pvx"), "new");
        EXPECT_THAT(List(), testing::ElementsAre("a.pvx"));
        m_Folder.Remove("a.pvx");
    }
}

TEST_F(Replacement, WithoutRoomTheOldOneStays) {
    const ReportCapture reports;
    const SizeLimit limit(1000);
    m_Folder.Write("a.pvx", "old");
    auto pFile = Replace("a.pvx");
    Put(*pFile, std::string(2000, 'x'));
    EXPECT_FALSE(pFile->Finish());
    EXPECT_TRUE(ReportCapture::HasWarning("failed to write"));
    pFile.reset();
    EXPECT_EQ(m_Folder.Read("a.pvx"), "old");
    EXPECT_THAT(List(), testing::ElementsAre("a.pvx"));
}

TEST_F(Replacement, WhatCantBeMovedIsTakenAway) {
    const ReportCapture reports;
    auto pFile = Replace("a.pvx");
    Put(*pFile, "new");
    m_Folder.MakeFolder("a.pvx");
    EXPECT_FALSE(pFile->Finish());
    EXPECT_TRUE(ReportCapture::HasWarning("FILESYSTEM -- failed to move '" + m_Folder.Path("a.pvx.part")));
    EXPECT_THAT(List(), testing::ElementsAre("a.pvx"));
}

TEST_F(Replacement, TakesOverSpellingAndRights) {
    m_Folder.Write("Ref.pvx", "old");
    chmod(m_Folder.Native("Ref.pvx").c_str(), 0640);
    const auto pFile = Replace("REF.PVX");
    Put(*pFile, "new");
    EXPECT_TRUE(pFile->Finish());
    EXPECT_EQ(m_Folder.Read("Ref.pvx"), "new");
    EXPECT_EQ(GetMode("Ref.pvx"), mode_t{0640});
    EXPECT_THAT(List(), testing::ElementsAre("Ref.pvx"));
}

TEST_F(Replacement, AReadOnlyFileIsRefused) {
    m_Folder.Write("a.pvx", "old");
    chmod(m_Folder.Native("a.pvx").c_str(), 0444);
    EXPECT_EQ(Replace("a.pvx"), nullptr);
    EXPECT_EQ(Replace("none/a.pvx"), nullptr);
    EXPECT_EQ(m_Folder.Read("a.pvx"), "old");
    EXPECT_THAT(List(), testing::ElementsAre("a.pvx"));
}

// A file with more than one name keeps all of them.
TEST_F(Replacement, LinksAreWrittenThrough) {
    m_Folder.Write("real.pvx", "old");
    ASSERT_EQ(symlink("real.pvx", m_Folder.Native("soft.pvx").c_str()), 0);
    ASSERT_EQ(link(m_Folder.Native("real.pvx").c_str(), m_Folder.Native("hard.pvx").c_str()), 0);
    for (const char* pName : {"soft.pvx", "hard.pvx"}) {
        const auto pFile = Replace(pName);
        ASSERT_TRUE(pFile);
        Put(*pFile, pName);
        EXPECT_TRUE(pFile->Finish());
        EXPECT_EQ(m_Folder.Read("real.pvx"), pName);
        const auto pUnfinished = Replace(pName);
        Put(*pUnfinished, "half");
    }
    EXPECT_TRUE(std::filesystem::is_symlink(m_Folder.Native("soft.pvx")));
    EXPECT_EQ(m_Folder.Read("real.pvx"), "");
    EXPECT_THAT(List(), testing::ElementsAre("hard.pvx", "real.pvx", "soft.pvx"));
}

TEST_F(Replacement, ANameWithoutRoomForMoreIsWrittenInPlace) {
    // The folder's path comes without its slash.
    const std::string name(ByteStream::MaxNameLength - m_Folder.Path().size() - 2, 'n');
    const auto pFile = Replace(name);
    Put(*pFile, "new");
    EXPECT_TRUE(pFile->Finish());
    EXPECT_EQ(m_Folder.Read(name), "new");
    m_Folder.Remove(name);
    Replace(name).reset();
    EXPECT_THAT(List(), testing::IsEmpty());
}
