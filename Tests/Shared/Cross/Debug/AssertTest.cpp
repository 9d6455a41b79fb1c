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

int s_CallCount = 0;
int s_Order[2] = {};
void NoteFirst(void*) { s_Order[0] = ++s_CallCount; }
void NoteSecond(void* pUser) { *static_cast<int*>(pUser) = ++s_CallCount; }

void RoundUpward(void*) { std::fesetround(FE_UPWARD); }

// In a debugger's place.
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

TEST(Assert, CallbacksRunInTheirOrderAfterTheReport) {
    dbAddAssertCallback(NoteFirst, nullptr);
    dbAddAssertCallback(NoteSecond, &s_Order[1]);
    TextOf([] { dbBreak(); });
    dbRemoveAssertCallback(NoteFirst, nullptr);
    dbRemoveAssertCallback(NoteSecond, &s_Order[1]);
    EXPECT_EQ(s_Order[0], 1);
    EXPECT_EQ(s_Order[1], 2);
    TextOf([] { dbBreak(); });
    EXPECT_EQ(s_CallCount, 2);
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

TEST(AssertDeathTest, ADebuggerThatStepsOnGoesOnBehindTheSite) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            std::signal(SIGTRAP, StepOver);
            dbSetThrowOnAssert(false);
            dbAssertText(false, "stepped over");
            const bool kept =
                dbGetReportTexts().size() == 1 && dbGetReportTexts()[0].ends_with("(stepped over) failed.");
            std::_Exit(kept ? 7 : 8);
        },
        testing::ExitedWithCode(7), "");
}

TEST(AssertDeathTest, AFatalExitNeverComesBack) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            std::signal(SIGTRAP, StepOver);
            dbSetThrowOnAssert(false);
            dbFatalf("the %s", "end");
        },
        testing::KilledBySignal(SIGABRT), "");
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
