#include "Shared/Cross/Debug/Log/ProcessLog.h"

#include "Shared/Cross/Debug/CrashReport.h"
#include "Shared/Cross/Debug/Log/LogFileIOPort.h"
#include "Tests/Shared/Cross/Debug/ReportCapture.h"
#include "Tests/Shared/PC/FileSystem/TempFolder.h"

#include <gtest/gtest.h>

#include <csignal>
#include <regex>
#include <stdexcept>

#include <sys/wait.h>
#include <unistd.h>

namespace {

class ProcessLogTest : public testing::Test {
protected:
    TempFolder m_Folder;

    ~ProcessLogTest() override { ProcessLog::Close(0); }
};

bool Matches(const std::string& text, const std::string& pattern) {
    return std::regex_match(text, std::regex(pattern));
}

// Opens a log in another process, which keeps it open until it is told to go.
class OtherProcess {
public:
    explicit OtherProcess(const std::string& path) {
        int ready[2];
        EXPECT_EQ(pipe(ready), 0);
        m_Process = fork();
        if (m_Process == 0) {
            LogFileIOPort port;
            const char opened = port.Open(path.c_str(), false) ? '1' : '0';
            if (write(ready[1], &opened, 1) == 1)
                pause();
            _exit(0);
        }
        char opened = 0;
        EXPECT_EQ(read(ready[0], &opened, 1), 1);
        EXPECT_EQ(opened, '1');
        close(ready[0]);
        close(ready[1]);
    }
    ~OtherProcess() {
        kill(m_Process, SIGKILL);
        waitpid(m_Process, nullptr, 0);
    }

private:
    pid_t m_Process;
};

} // namespace

TEST_F(ProcessLogTest, HoldsAllThatIsReportedWhileItIsOpen) {
    dbPrintf("before");
    ASSERT_TRUE(ProcessLog::Open(m_Folder.Path("ref.log").c_str(), true));
    EXPECT_EQ(dbGetReportFiles().at(0).name, m_Folder.Native("ref.log"));
    dbWarningf("face %d", 7);
    dbPrintf("plain");
    ProcessLog::Close(0);
    EXPECT_TRUE(dbGetReportFiles().empty());
    dbPrintf("after");

    const std::string time = "\\d\\d:\\d\\d:\\d\\d\\.\\d\\d ";
    const std::string log = m_Folder.Read("ref.log");
    EXPECT_TRUE(Matches(log, "Tests_DebugLog started at \\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d\r\n"
                             "OS Linux \\d+\\.\\d+, \\d+MB Physical Memory\r\n"
                             "RUN-OPTIONS\r\n"
                             "WORKING-DIR Z:\\\\.*\r\n"
                             "USER .+\r\n" +
                                 time + "processlogtest/\\d+:!face 7\r\n" + time +
                                 "plain\r\n"
                                 "\r\n"
                                 "Application closed without errors\r\n"))
        << log;
}

TEST_F(ProcessLogTest, ASecondOneIsAMistakeAndLeavesTheFirst) {
    const ReportCapture capture;
    EXPECT_FALSE(ProcessLog::Open(m_Folder.Path("none/ref.log").c_str(), true));
    EXPECT_TRUE(ReportCapture::HasWarning("LOG -- unable to make '" + m_Folder.Path("none/ref.log") + "'"));
    ASSERT_TRUE(ProcessLog::Open(m_Folder.Path("first.log").c_str(), false));
    EXPECT_TRUE(dbGetReportFiles().empty());
    EXPECT_THROW(ProcessLog::Open(m_Folder.Path("second.log").c_str(), true), std::runtime_error);
    dbPrintf("still here");
    ProcessLog::Close(-1);
    EXPECT_TRUE(m_Folder.Read("first.log").ends_with("still here\r\n\r\nApplication closed with error code -1\r\n"));
    ASSERT_TRUE(ProcessLog::Open(m_Folder.Path("first.log").c_str(), true));
    EXPECT_EQ(m_Folder.Read("first.log").find("still here"), std::string::npos) << "a new one over the old";
}

TEST_F(ProcessLogTest, AFileOpenElsewhereGivesWayToANumber) {
    const OtherProcess other(m_Folder.Path("warnings.log"));
    const OtherProcess another(m_Folder.Path("warnings.log"));
    ASSERT_TRUE(ProcessLog::Open(m_Folder.Path("warnings.log").c_str(), true));
    EXPECT_EQ(ProcessLog::GetPath(), m_Folder.Path("warnings2.log"));
    EXPECT_TRUE(m_Folder.Has("warnings1.log"));
    EXPECT_NE(m_Folder.Read("warnings.log").find("USER "), std::string::npos) << "what the other wrote is untouched";
}
