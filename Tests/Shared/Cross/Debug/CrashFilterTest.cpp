#include "Shared/Cross/Debug/CrashFilter.h"

#include "Tests/Shared/Cross/Debug/CrashFolder.h"
#include "Tests/Shared/Cross/Debug/ReportCapture.h"

#include <csignal>
#include <stdexcept>

namespace {

struct Case {
    const char* pName;
    int signal;
    const char* pException;
    const char* pModule;
    const char* pPlace;     // in the call stack
    const char* pViolation; // null for none
};

const char* const s_Module = "Tests_Debug";
const Case s_Cases[] = {
    {"Read", SIGSEGV, "an Access Violation", s_Module, "ReadBadly", "Read from location 0000000000001238"},
    {"Call", SIGSEGV, "an Access Violation", "Unknown", "CallNowhere", "Read from location 0000000000000000"},
    {"Divide", SIGFPE, "an Integer Divide by Zero", s_Module, "DivideByZero", nullptr},
    {"Throw", SIGABRT, "a C\\+\\+ Exception", "libc\\.so\\.6", "ThrowUncaught", nullptr},
    {"Overflow", SIGSEGV, "a Stack Overflow", s_Module, "RecurseForever", nullptr},
    {"Assert", SIGTRAP, "a Breakpoint", s_Module, "FailAssertion", nullptr},
};

class CrashCases : public CrashFolder, public testing::WithParamInterface<Case> {};

class CrashFilter : public CrashFolder {
protected:
    static bool HasDebugger() { return std::system("gdb --version >/dev/null 2>&1") == 0; }

    // What it says about the dump's threads.
    std::string ShowThreads() const {
        const std::filesystem::path text = m_Folder / "gdb.txt";
        const std::string command = "gdb -batch -nx -iex 'set debuginfod enabled off' -ex 'info threads' " +
                                    Process::GetExecutablePath() + " " + Find("_MiniDump.dmp").string() + " >" +
                                    text.string() + " 2>&1";
        EXPECT_EQ(std::system(command.c_str()), 0);
        return Read(text);
    }
};

} // namespace

TEST_P(CrashCases, LeavesItsLog) {
    const Case& crash = GetParam();
    const SelfRunResult result = Crash(crash.pName);
    EXPECT_EQ(result.signal, crash.signal) << result.output;

    const std::string word = "[0-9a-f]{16}";
    std::vector<std::string> lines = {std::string("Tests_Debug caused ") + crash.pException + " in module " +
                                          crash.pModule + " at 0033:" + word + "\\.",
                                      "Error occurred at \\d+/\\d+/\\d{4} \\d\\d:\\d\\d:\\d\\d\\.",
                                      "/.*/Tests_Debug, run by .+\\.",
                                      "Linux \\d+\\.\\d+\\.",
                                      "\\d+ processor\\(s\\), type 8664\\.",
                                      "\\d+ MBytes physical memory\\."};
    if (crash.pViolation)
        lines.push_back(std::string(crash.pViolation) + " caused an access violation\\.");
    const std::vector<std::string> rest = {
        "MiniDump saved to file '.*/logs/Tests_Debug\\d+-\\d+-\\d+_\\d\\d_\\d\\d_\\d\\d_MiniDump\\.dmp'",
        "Registers:", "RAX=" + word + " CS=0033 RIP=" + word + " EFLGS=[0-9a-f]{8}",
        "RBX=" + word + " SS=002b RSP=" + word + " RBP=" + word,
        "RCX=" + word + " DS=[0-9a-f]{4} RSI=" + word + " FS=[0-9a-f]{4}",
        "RDX=" + word + " ES=[0-9a-f]{4} RDI=" + word + " GS=[0-9a-f]{4}",
        "R8 =" + word + " R9 =" + word + " R10=" + word + " R11=" + word,
        "R12=" + word + " R13=" + word + " R14=" + word + " R15=" + word,
        "Bytes at CS:RIP:", std::string(crash.pName) == "Call" ? "" : "([0-9a-f]{2} ){15}[0-9a-f]{2}", "Call Stack:",
        std::string("0x[0-9A-F]{16}: .*/(CrashCases|db)\\.cpp Ln +\\d+ \\(.*") + crash.pPlace + "\\(.*\\)",
        "Stack dump:",
        // The pointer of an exhausted stack may have left it.
        word + ":" + word + " " + word + " " + word + " " + word +
            (std::string(crash.pName) == "Overflow" ? "|Exception encountered during stack dump\\." : ""),
        "", "Module list: names, addresses, sizes, time stamps and file times:",
        "/.*/Tests_Debug *, loaded at 0x" + word + " - +\\d+ bytes - [0-9a-f]{8} - file date is \\d+/\\d+/\\d{4} .*",
        "/.*/libDebug\\.so *, loaded at .*"};
    lines.insert(lines.end(), rest.begin(), rest.end());
    EXPECT_TRUE(HasLines(ReadLog(), lines)) << result.output;
    EXPECT_FALSE(Find("_MiniDump.dmp").empty());
    EXPECT_EQ(ReadLog().find("Exception encountered during stack trace"), std::string::npos) << ReadLog();
}

INSTANTIATE_TEST_SUITE_P(All, CrashCases, testing::ValuesIn(s_Cases),
                         [](const testing::TestParamInfo<Case>& test) { return std::string(test.param.pName); });

TEST_F(CrashFilter, TheDumpHoldsAllThreadsTheCrashedOneFirst) {
    EXPECT_EQ(Crash("Thread").signal, SIGSEGV);
    EXPECT_TRUE(HasLines(ReadLog(), {"Call Stack:", "0x.*ReadBadly\\(\\)\\)"})) << ReadLog();
    if (!HasDebugger())
        GTEST_SKIP() << "gdb isn't installed";
    const std::string text = ShowThreads();
    EXPECT_TRUE(std::regex_search(text, std::regex("\\* 1 .*ReadBadly"))) << text;
    EXPECT_TRUE(std::regex_search(text, std::regex("\n  3 +Thread"))) << text;
}

TEST_F(CrashFilter, StartsTheReporterWithAllThatItGathered) {
    MakeReporter();
    std::ofstream(m_Folder / "bugreport.ini") << "[mail]\r\n";
    setenv("PVX_CONFIG", m_Folder.c_str(), 1);
    const SelfRunResult result = Crash("Extras");
    std::vector<std::string> words = GetReporterWords();
    ASSERT_GT(words.size(), 1u) << result.output;
    EXPECT_TRUE(std::regex_match(words[1], std::regex("\\d+"))) << words[1];
    words.erase(words.begin() + 1);
    std::string text;
    for (const std::string& word : words)
        text += word.substr(word.find_last_of('/') + 1) + '|';
    EXPECT_EQ(text, "BugReport.exe|Tests_Debug|Crash|-v|1.0|-l|english|-c|bugreport.ini|-t|one \"quoted\" text|-t|two|"
                    "-f|kept file.log|-fd|sent.log|-fd|" +
                        Find("_ErrorLog.txt").filename().string() + "|-fd|" +
                        Find("_MiniDump.dmp").filename().string() + '|');
    EXPECT_EQ(words.at(8), (m_Folder / "bugreport.ini").string());
    // Those of any program and of the list's own folder.
    EXPECT_EQ(Read(m_Folder / "tools/BugReport/handles"), "4\n");
}

TEST_F(CrashFilter, AnAssertionIsOneOfTheTexts) {
    MakeReporter();
    setenv("TEST_REPORTER_CONFIG", "/etc/my.ini", 1);
    Crash("Assert");
    const std::vector<std::string> words = GetReporterWords();
    const auto at = std::ranges::find(words, "-t");
    ASSERT_LT(at + 1, words.end());
    EXPECT_TRUE((at + 1)->starts_with("crashcases/")) << at[1];
    EXPECT_TRUE((at + 1)->ends_with("Assertion of (std::string(\"Arm \\\"L\\\"\").empty()) failed.")) << at[1];
    EXPECT_EQ(at[-1], "/etc/my.ini");
}

TEST_F(CrashFilter, AReporterThatIsntThereIsTold) {
    const std::string without = Crash("Read").output;
    EXPECT_NE(without.find("stopped by an Access Violation; see " + Find("_ErrorLog.txt").string()), std::string::npos);
    EXPECT_EQ(without.find("can't be started"), std::string::npos) << without;
    setenv("TEST_REPORTER", (m_Folder / "setup.exe").c_str(), 1);
    EXPECT_NE(Crash("Read").output.find("BugReport/BugReport.exe: the crash reporter can't be started"),
              std::string::npos);
}

TEST_F(CrashFilter, CommandLineFlags) {
    MakeReporter();
    EXPECT_EQ(Crash("Read", "notrap").signal, SIGSEGV);
    EXPECT_FALSE(std::filesystem::exists(m_Folder / "logs"));

    EXPECT_EQ(Crash("Read", "--noreporting").signal, SIGSEGV);
    EXPECT_FALSE(Find("_ErrorLog.txt").empty());
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    EXPECT_FALSE(HasReporterRun());
}

TEST_F(CrashFilter, ADebuggerHasItsCrashForItself) {
    EXPECT_EQ(RunSelf("CrashUnderDebugger.DISABLED_Read", "").status, 0);
    EXPECT_FALSE(std::filesystem::exists(m_Folder / "logs"));

    // With this word it isn't seen, though it still keeps others from looking into the process.
    EXPECT_EQ(RunSelf("CrashUnderDebugger.DISABLED_Read", "nodbg").status, 0);
    EXPECT_TRUE(HasLines(ReadLog(), {"MiniDump failed to save\\.", "Call Stack:", "0x.*ReadBadly.*"})) << ReadLog();
}

TEST_F(CrashFilter, CallbacksThatCrashAreLeft) {
    const SelfRunResult result = Crash("Callbacks");
    EXPECT_EQ(result.signal, SIGSEGV);
    const size_t first = result.output.find("first callback\nlast callback\n");
    EXPECT_NE(first, std::string::npos) << result.output;
    EXPECT_EQ(result.output.find("last callback", first + 20), std::string::npos) << result.output;
    EXPECT_TRUE(HasLines(ReadLog(), {"Write to location 0000000000001238 caused .*", "0x.*WriteBadly.*"})) << ReadLog();
}

TEST_F(CrashFilter, WithoutSymbolReaderThereIsNeitherStackNorDump) {
    // The last one is needed by a build that takes all its memory from the pools.
    for (const char* pName : {"Tests_Debug", "libDebug.so", "pvxcrash", "libMemory.so"})
        if (const std::string path = Process::GetExecutableFolder() + pName; std::filesystem::exists(path))
            std::filesystem::copy(path, m_Folder / pName);
    const SelfRunResult result = RunTest((m_Folder / "Tests_Debug").string(), "CrashCase.DISABLED_Read", "");
    EXPECT_EQ(result.signal, SIGSEGV);
    EXPECT_TRUE(HasLines(ReadLog(), {"MiniDump failed to save - error loading symbols\\.", "Registers:"}))
        << result.output;
    EXPECT_NE(ReadLog().find("Call Stack:\r\nStack dump:\r\n"), std::string::npos) << ReadLog();
    EXPECT_TRUE(Find("_MiniDump.dmp").empty());
}

TEST_F(CrashFilter, ALogThatCantBeMadeIsToldAndTheReporterRuns) {
    MakeReporter();
    std::ofstream(m_Folder / "logs") << "a file, no folder";
    const SelfRunResult result = Crash("Read");
    EXPECT_EQ(result.signal, SIGSEGV);
    EXPECT_NE(result.output.find("RecordExceptionInfo: error creating exception report\n"), std::string::npos)
        << result.output;
    EXPECT_FALSE(GetReporterWords().empty());
}

TEST_F(CrashFilter, CrashesOfOneSecondKeepTheirOwnFiles) {
    Crash("Read");
    Crash("Write");
    size_t files = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(m_Folder / "logs"))
        ++files;
    EXPECT_EQ(files, 4u);
}
