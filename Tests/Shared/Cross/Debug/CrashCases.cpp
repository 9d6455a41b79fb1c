#include "Shared/Cross/Debug/CrashFilter.h"
#include "Shared/Cross/Debug/CrashReport.h"
#include "Tests/Shared/Cross/Debug/ReportCapture.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <thread>

#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

// Each of these ends its process; the tests of the crash filter run them in processes of their own. What crashes is
// hidden from the sanitizers, which would be quicker than the processor.

namespace {

#define PVX_CRASHES [[gnu::noinline, gnu::no_sanitize("undefined"), gnu::no_sanitize_address]]

PVX_CRASHES void ReadBadly() {
    volatile int* volatile pNowhere = reinterpret_cast<int*>(0x1238);
    static_cast<void>(*pNowhere);
}

PVX_CRASHES void WriteBadly() {
    volatile int* volatile pNowhere = reinterpret_cast<int*>(0x1238);
    *pNowhere = 1;
}

PVX_CRASHES void CallNowhere() {
    void (*volatile pNowhere)() = nullptr;
    pNowhere();
    asm volatile("");
}

PVX_CRASHES int RecurseForever(volatile int* pLast) {
    volatile int here[64] = {};
    here[0] = *pLast + 1;
    // Never 0, but who knows.
    return here[0] == 0 ? 0 : RecurseForever(here) + here[0];
}

[[gnu::noinline]] void FailAssertion() {
    dbAssert(std::string("Arm \"L\"").empty());
    asm volatile("");
}

[[gnu::noinline]] void ThrowUncaught() { throw std::runtime_error("nobody's"); }

// Environment of the run: where the stand-in for the reporter is.
void Prepare() {
    dbSetThrowOnAssert(false);
    if (const char* pPath = std::getenv("TEST_REPORTER"))
        dbSetBugReportPath(pPath, nullptr);
    dbInstallCrashFilter();
}

void Say(void* pText) {
    if (write(STDERR_FILENO, pText, strlen(static_cast<const char*>(pText))) < 0)
        _exit(1);
}
void CrashAgain(void*) { ReadBadly(); }

} // namespace

class CrashCase : public testing::Test {
protected:
    void SetUp() override { Prepare(); }
};

TEST_F(CrashCase, DISABLED_Read) { ReadBadly(); }
TEST_F(CrashCase, DISABLED_Write) { WriteBadly(); }
TEST_F(CrashCase, DISABLED_Call) { CallNowhere(); }
TEST_F(CrashCase, DISABLED_Throw) { std::thread(ThrowUncaught).join(); }
TEST_F(CrashCase, DISABLED_Assert) { FailAssertion(); }

TEST_F(CrashCase, DISABLED_Overflow) {
    volatile int start = 0;
    RecurseForever(&start);
}

TEST_F(CrashCase, DISABLED_Callbacks) {
    char first[] = "first callback\n", last[] = "last callback\n", gone[] = "gone\n";
    dbAddCrashCallback(Say, first);
    dbAddCrashCallback(CrashAgain, nullptr);
    dbAddCrashCallback(Say, gone);
    dbAddCrashCallback(CrashAgain, this);
    dbAddCrashCallback(Say, last);
    dbRemoveCrashCallback(Say, gone);
    WriteBadly();
}

TEST_F(CrashCase, DISABLED_Thread) {
    std::thread waiting([] { pause(); });
    std::thread(ReadBadly).join();
    waiting.join();
}

TEST_F(CrashCase, DISABLED_Extras) {
    dbSetReportStrings("1.0", "english");
    dbAddReportText("one \"quoted\" text");
    dbAddReportText("two");
    dbAddReportFile("/tmp/kept file.log", false);
    dbAddReportFile("/tmp/gone.log", false);
    dbAddReportFile("/tmp/sent.log", true);
    dbRemoveReportFile("/tmp/gone.log");
    ReadBadly();
}

// This process stands in for a debugger, and lets the other one have each of its signals.
TEST(CrashUnderDebugger, DISABLED_Read) {
    const pid_t child = fork();
    if (child == 0) {
        ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
        Prepare();
        ReadBadly();
    }
    int status = 0;
    while (waitpid(child, &status, 0) == child && WIFSTOPPED(status))
        ptrace(PTRACE_CONT, child, nullptr, WSTOPSIG(status));
    EXPECT_TRUE(WIFSIGNALED(status));
}
