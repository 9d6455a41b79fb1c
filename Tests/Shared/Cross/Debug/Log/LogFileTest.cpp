#include "Shared/Cross/Debug/Log/LogFile.h"

#include "Shared/Cross/Debug/CrashReport.h"
#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/FileSystem/Paths/FilePathHD.h"
#include "Tests/Shared/Cross/Debug/ReportCapture.h"
#include "Tests/Shared/PC/FileSystem/TempFolder.h"

#include <gtest/gtest.h>

#include <regex>
#include <stdexcept>
#include <vector>

namespace {

class LogFileTest : public testing::Test {
protected:
    TempFolder m_Folder;

    LogFileTest() {
        FilePath::AddSource("log", "test", 0, FilePathHD::Create(m_Folder.Path().c_str(), FilePath::Mode::Mode_Both));
    }
    ~LogFileTest() override { FilePath::RemoveSource("log", "test"); }

    // Below the folder, in alphabetical order.
    std::vector<std::string> GetFiles() const {
        std::vector<std::string> files;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(m_Folder.Native()))
            if (entry.is_regular_file())
                files.push_back(entry.path().lexically_relative(m_Folder.Native()).string());
        std::ranges::sort(files);
        return files;
    }
};

} // namespace

TEST_F(LogFileTest, LiesInTheFolderOfItsRunAndGoesWithACrashReport) {
    LogFile log;
    ASSERT_TRUE(log.Open("Inventory: Leaks?", ".csv", true, true));
    const std::string file = GetFiles().at(0);
    EXPECT_TRUE(
        std::regex_match(file, std::regex("\\d{4}-\\d\\d-\\d\\d\\.\\d\\d-\\d\\d-\\d\\d/inventory- leaks-\\.csv")))
        << file;
    EXPECT_EQ(dbGetReportFiles().at(0).name, m_Folder.Native(file));
    log.Close();
    EXPECT_TRUE(dbGetReportFiles().empty());
}

TEST_F(LogFileTest, TakenNamesGetANumberUpToNine) {
    ReportCapture capture;
    for (int i = 0; i < 10; ++i)
        ASSERT_TRUE(LogFile().Open("tool", ".log", true, false)) << i;
    EXPECT_FALSE(LogFile().Open("tool", ".log", true, false));
    EXPECT_TRUE(ReportCapture::HasWarning("LOG -- no free name for 'tool.log'"));
    const std::vector<std::string> files = GetFiles();
    ASSERT_EQ(files.size(), 10u);
    EXPECT_TRUE(files[0].ends_with("/tool.1.log"));
    EXPECT_TRUE(files[9].ends_with("/tool.log"));
}

TEST_F(LogFileTest, WritesLinesAtOnce) {
    LogFile log;
    ASSERT_TRUE(log.OpenAlias("log:notes.log", true, false));
    EXPECT_TRUE(log.Write("one"));
    EXPECT_TRUE(log.Printf("%d\n%s", 2, "three"));
    EXPECT_EQ(m_Folder.Read("notes.log"), "one\r\n2\r\nthree\r\n");
    EXPECT_TRUE(log.Printf("%s", std::string(5000, 'x').c_str()));
    EXPECT_EQ(m_Folder.Read("notes.log").size(), 15u + 2047 + 2);
    ASSERT_TRUE(log.OpenAlias("log:notes.log", false, false));
    log.Write("one, ");
    log.Write("two");
    EXPECT_EQ(m_Folder.Read("notes.log"), "one, two");
}

TEST_F(LogFileTest, FillsInAliasAndExtension) {
    const std::pair<const char*, const char*> names[] = {
        {"bare", "bare.txt"}, {"log:full", "full.txt"}, {"two.dat", "two.dat"}, {"a.b\\plain", "a.b/plain.txt"}};
    for (const auto& [pName, pFile] : names) {
        LogFile log;
        ASSERT_TRUE(log.OpenAlias(pName, true, false)) << pName;
        EXPECT_TRUE(m_Folder.Has(pFile)) << pName;
    }
}

TEST_F(LogFileTest, MistakesAndFailures) {
    ReportCapture capture;
    LogFile log;
    EXPECT_THROW(log.Open("", ".log", true, false), std::runtime_error);
    EXPECT_THROW(log.Open("stem", nullptr, true, false), std::runtime_error);
    EXPECT_THROW(log.OpenAlias(nullptr, true, false), std::runtime_error);
    EXPECT_THROW(log.Write("into nothing"), std::runtime_error);
    EXPECT_FALSE(log.OpenAlias("nowhere:file.log", true, false));
    EXPECT_TRUE(ReportCapture::HasWarning("LOG -- unable to make 'nowhere:file.log'"));
    EXPECT_FALSE(log.IsOpen());
}

TEST_F(LogFileTest, TheFirstUseMountsTheAlias) {
    FilePath::RemoveSource("log", "test");
    setenv("PVX_LOGS", m_Folder.Native("deep/logs").c_str(), 1);
    LogFile log;
    EXPECT_FALSE(log.OpenAlias("elsewhere:notes", true, false));
    EXPECT_FALSE(m_Folder.Has("deep"));
    EXPECT_TRUE(log.OpenAlias("LOG:notes", true, false));
    EXPECT_TRUE(m_Folder.Has("deep/logs/notes.txt"));
    FilePath::RemoveSource("log", "Logs");
    EXPECT_TRUE(log.Open("tool", ".log", true, false));
    EXPECT_EQ(GetFiles().size(), 2u);
    FilePath::RemoveSource("log", "Logs");
    unsetenv("PVX_LOGS");
}
