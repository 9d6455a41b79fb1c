#include "Shared/Cross/Debug/db.h"

#include "Shared/Cross/Debug/CrashReport.h"
#include "Tests/Shared/Cross/Debug/ReportCapture.h"
#include "Tests/Shared/PC/Debug/SelfRun.h"

#include <gtest/gtest.h>

#include <cfenv>
#include <csignal>
#include <stdexcept>

namespace {

std::string TextOf(void (*pCode)()) {
    try {
        pCode();
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "nothing was thrown";
}

std::string s_Calls;
void Note(void* pUser) { s_Calls += static_cast<const char*>(pUser); }

void RoundUpward(void*) { std::fesetround(FE_UPWARD); }

void StepOver(int) {}

struct FailingDestructor {
    bool& finished;
    ~FailingDestructor() {
        const dbNoThrowScope noThrow;
        dbAssertText(false, "gone wrong");
        finished = true;
    }
};

} // namespace

TEST(Assert, ThrowsItsMessageAndReportsItWithTheStack) {
    ReportCapture capture;
    const std::string text = TextOf([] { dbAssert(1 + 1 == 3); });
    EXPECT_TRUE(text.starts_with("asserttest/")) << text;
    EXPECT_TRUE(text.ends_with(":!Assertion of (1 + 1 == 3) failed.")) << text;

    const auto& lines = capture.GetWarnings();
    ASSERT_GE(lines.size(), 4u);
    EXPECT_EQ(lines[0], text);
    EXPECT_EQ(lines[1], "");
    EXPECT_EQ(lines[2], "--stack trace--");
    EXPECT_NE(lines[3].find("AssertTest.cpp"), std::string::npos) << lines[3];
    EXPECT_TRUE(capture.GetErrors().empty());
}

TEST(Assert, CallbacksRunInTheirOrder) {
    char first[] = "1", second[] = "2";
    dbAddAssertCallback(Note, first);
    dbAddAssertCallback(Note, second);
    TextOf([] { dbBreak(); });
    dbRemoveAssertCallback(Note, first);
    dbRemoveAssertCallback(Note, second);
    TextOf([] { dbBreak(); });
    EXPECT_EQ(s_Calls, "12");
}

TEST(Assert, KeepsTheFloatingPointState) {
    dbAddAssertCallback(RoundUpward, nullptr);
    TextOf([] { dbBreak(); });
    dbRemoveAssertCallback(RoundUpward, nullptr);
    EXPECT_EQ(std::fegetround(), FE_TONEAREST);
}

TEST(Assert, DestructorsReportAndGoOn) {
    ReportCapture capture;
    bool finished = false;
    { const FailingDestructor object{finished}; }
    EXPECT_TRUE(finished);
    EXPECT_EQ(ReportCapture::CountWarnings("gone wrong"), 1u);
    EXPECT_THROW(dbBreak(), std::runtime_error);
}

// In a debugger's place, a signal handler steps over the breakpoint.
TEST(AssertDeathTest, AnAssertionGoesOnBehindItsSiteAndAFatalExitNever) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto run = [](bool isFatal) {
        std::signal(SIGTRAP, StepOver);
        dbSetThrowOnAssert(false);
        if (isFatal)
            dbFatalf("the %s", "end");
        dbAssertText(false, "stepped over");
        std::_Exit(dbGetReportTexts().at(0).ends_with("(stepped over) failed.") ? 7 : 8);
    };
    EXPECT_EXIT(run(false), testing::ExitedWithCode(7), "");
    EXPECT_EXIT(run(true), testing::KilledBySignal(SIGABRT), "");
}

TEST(Fatal, ThrowsAndReportsToTheErrorChannel) {
    ReportCapture capture;
    EXPECT_EQ(TextOf([] { dbFatalf("no %s left", "memory"); }), "no memory left");
    ASSERT_GE(capture.GetErrors().size(), 4u);
    EXPECT_EQ(capture.GetErrors()[0], "no memory left");
    EXPECT_EQ(capture.GetErrors()[1], "-- FATAL EXIT --");
    EXPECT_EQ(capture.GetErrors()[2], "--stack trace--");
    EXPECT_NE(capture.GetErrors()[3].find("AssertTest.cpp"), std::string::npos) << capture.GetErrors()[3];
    EXPECT_TRUE(capture.GetWarnings().empty());
}

TEST(CommandFlags, DISABLED_CountFrames) {
    ReportCapture capture;
    TextOf([] { dbBreak(); });
    std::printf("lines %zu\n", capture.GetWarnings().size());
}

TEST(CommandFlags, NoTraceLeavesTheStackOut) {
    // The flag counts inside of a longer word too.
    const SelfRunResult without = RunSelf("CommandFlags.DISABLED_CountFrames", "--say-notrace-please");
    EXPECT_NE(without.output.find("lines 3\n"), std::string::npos) << without.output;
    const SelfRunResult other = RunSelf("CommandFlags.DISABLED_CountFrames", "NOTRACE");
    EXPECT_EQ(other.output.find("lines 3\n"), std::string::npos) << other.output;
}
