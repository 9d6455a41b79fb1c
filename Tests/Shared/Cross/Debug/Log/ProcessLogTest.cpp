#include "Shared/Cross/Debug/Log/ProcessLog.h"

#include "Shared/Cross/Debug/CrashReport.h"
#include "Shared/Cross/Debug/Log/LogFileIOPort.h"
#include "Tests/Shared/Cross/Debug/Log/LogFolder.h"

#include <csignal>
#include <stdexcept>

#include <sys/wait.h>
#include <unistd.h>

namespace {

class ProcessLogTest : public LogFolder {
protected:
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
    ASSERT_TRUE(ProcessLog::Open(GetPath("ref.log").c_str(), true));
    dbWarningf("face %d", 7);
    dbPrintf("plain");
    ProcessLog::Close(0);
    dbPrintf("after");

    const std::string time = "\\d\\d:\\d\\d:\\d\\d\\.\\d\\d ";
    const std::string log = Read("ref.log");
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

TEST_F(ProcessLogTest, TellsTheErrorItEndedWith) {
    ASSERT_TRUE(ProcessLog::Open(GetPath("ref.log").c_str(), true));
    ProcessLog::Close(-1);
    EXPECT_TRUE(Read("ref.log").ends_with("\r\nApplication closed with error code -1\r\n"));
}

TEST_F(ProcessLogTest, EachLineIsOnDiskAtOnce) {
    ASSERT_TRUE(ProcessLog::Open(GetPath("ref.log").c_str(), true));
    EXPECT_NE(Read("ref.log").find("USER "), std::string::npos);
    dbPrintf("the last words");
    EXPECT_TRUE(Read("ref.log").ends_with("the last words\r\n"));
}

TEST_F(ProcessLogTest, AnAssertionLeavesItsStack) {
    ASSERT_TRUE(ProcessLog::Open(GetPath("ref.log").c_str(), true));
    EXPECT_THROW(dbBreak(), std::runtime_error);
    EXPECT_NE(Read("ref.log").find("--stack trace--"), std::string::npos);
}

TEST_F(ProcessLogTest, ASecondOneIsAMistakeAndLeavesTheFirst) {
    ASSERT_TRUE(ProcessLog::Open(GetPath("first.log").c_str(), true));
    EXPECT_THROW(ProcessLog::Open(GetPath("second.log").c_str(), true), std::runtime_error);
    EXPECT_FALSE(std::filesystem::exists(m_Folder / "second.log"));
    dbPrintf("still here");
    EXPECT_TRUE(Read("first.log").ends_with("still here\r\n"));
    EXPECT_EQ(ProcessLog::GetPath(), GetPath("first.log"));
}

TEST_F(ProcessLogTest, OpensAgainOverTheOldOne) {
    for (int run = 0; run < 3; ++run) {
        ASSERT_TRUE(ProcessLog::Open(GetPath("ref.log").c_str(), true));
        dbPrintf("run %d", run);
        ProcessLog::Close(0);
    }
    EXPECT_EQ(Read("ref.log").find("run 1"), std::string::npos);
    EXPECT_NE(Read("ref.log").find("run 2"), std::string::npos);
}

TEST_F(ProcessLogTest, AFolderThatIsntThereIsAFailure) {
    ReportCapture capture;
    EXPECT_FALSE(ProcessLog::Open(GetPath("none/ref.log").c_str(), true));
    EXPECT_FALSE(ProcessLog::IsOpen());
    EXPECT_TRUE(ReportCapture::HasWarning("LOG -- unable to make '" + GetPath("none/ref.log") + "'"));
}

TEST_F(ProcessLogTest, GoesWithACrashReportWhileItIsOpen) {
    ASSERT_TRUE(ProcessLog::Open(GetPath("ref.log").c_str(), true));
    ASSERT_EQ(dbGetReportFiles().size(), 1u);
    EXPECT_EQ(dbGetReportFiles()[0].name, (m_Folder / "ref.log").string());
    EXPECT_FALSE(dbGetReportFiles()[0].deleteAfter);
    ProcessLog::Close(0);
    EXPECT_TRUE(dbGetReportFiles().empty());
    ASSERT_TRUE(ProcessLog::Open(GetPath("ref.log").c_str(), false));
    EXPECT_TRUE(dbGetReportFiles().empty());
}

TEST_F(ProcessLogTest, AFileOpenElsewhereGivesWayToANumber) {
    const OtherProcess other(GetPath("warnings.log"));
    const OtherProcess another(GetPath("warnings.log"));
    ASSERT_TRUE(ProcessLog::Open(GetPath("warnings.log").c_str(), true));
    EXPECT_EQ(ProcessLog::GetPath(), GetPath("warnings2.log"));
    EXPECT_TRUE(std::filesystem::exists(m_Folder / "warnings1.log"));
    EXPECT_NE(Read("warnings.log").find("USER "), std::string::npos) << "what the other wrote is untouched";
}
