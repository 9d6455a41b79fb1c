#include "Shared/Cross/Debug/CrashFilter.h"

#include "Tests/Shared/Cross/Debug/CrashFolder.h"
#include "Tests/Shared/Cross/Debug/ReportCapture.h"

#include <csignal>

using CrashFilter = CrashFolder;

TEST_F(CrashFilter, TheLogTellsAll) {
    EXPECT_EQ(Crash("Read").signal, SIGSEGV);
    const std::string word = "[0-9a-f]{16}";
    EXPECT_TRUE(HasLines(
        ReadLog(),
        {"Tests_Debug caused an Access Violation in module Tests_Debug at 0033:" + word + "\\.",
         "Error occurred at \\d+/\\d+/\\d{4} \\d\\d:\\d\\d:\\d\\d\\.",
         "/.*/Tests_Debug, run by .+\\.",
         "Linux \\d+\\.\\d+\\.",
         "\\d+ processor\\(s\\), type 8664\\.",
         "\\d+ MBytes physical memory\\.",
         "Read from location 0000000000001238 caused an access violation\\.",
         "MiniDump saved to file '.*/logs/Tests_Debug\\d+-\\d+-\\d+_\\d\\d_\\d\\d_\\d\\d_MiniDump\\.dmp'",
         "Registers:",
         "RAX=" + word + " CS=0033 RIP=" + word + " EFLGS=[0-9a-f]{8}",
         "RBX=" + word + " SS=002b RSP=" + word + " RBP=" + word,
         "RCX=" + word + " DS=[0-9a-f]{4} RSI=" + word + " FS=[0-9a-f]{4}",
         "RDX=" + word + " ES=[0-9a-f]{4} RDI=" + word + " GS=[0-9a-f]{4}",
         "R8 =" + word + " R9 =" + word + " R10=" + word + " R11=" + word,
         "R12=" + word + " R13=" + word + " R14=" + word + " R15=" + word,
         "Bytes at CS:RIP:",
         "([0-9a-f]{2} ){15}[0-9a-f]{2}",
         "Call Stack:",
         "0x[0-9A-F]{16}: .*/CrashCases\\.cpp Ln +\\d+ \\(.*ReadBadly\\(.*\\)",
         "Stack dump:",
         word + ":" + word + " " + word + " " + word + " " + word,
         "",
         "Module list: names, addresses, sizes, time stamps and file times:",
         "/.*/Tests_Debug *, loaded at 0x" + word + " - +\\d+ bytes - [0-9a-f]{8} - file date is \\d+/\\d+/\\d{4} .*",
         "/.*/libc\\.so\\.6 *, loaded at .*"}));
}

TEST_F(CrashFilter, EachCrashIsTold) {
    const struct {
        const char* pName;
        int signal;
        const char* pHead;
        const char* pPlace; // in the call stack
    } crashes[] = {{"Call", SIGSEGV, "an Access Violation in module Unknown", "CallNowhere"},
                   {"Throw", SIGABRT, "a C\\+\\+ Exception in module libc\\.so\\.6", "ThrowUncaught"},
                   {"Overflow", SIGSEGV, "a Stack Overflow in module Tests_Debug", "RecurseForever"},
                   {"Assert", SIGTRAP, "a Breakpoint in module Tests_Debug", "FailAssertion"},
                   {"Thread", SIGSEGV, "an Access Violation in module Tests_Debug", "ReadBadly"}};
    for (const auto& [pName, signal, pHead, pPlace] : crashes) {
        m_Temporary.Remove("logs");
        EXPECT_EQ(Crash(pName).signal, signal) << pName;
        EXPECT_TRUE(HasLines(ReadLog(), {std::string("Tests_Debug caused ") + pHead + " at .*", "MiniDump saved .*",
                                         "Call Stack:", std::string(".*Ln.*") + pPlace + "\\(.*\\)", "Stack dump:"}));
        EXPECT_EQ(ReadLog().find("Exception encountered during stack trace"), std::string::npos) << ReadLog();
    }
    if (std::system("gdb --version >/dev/null 2>&1") != 0)
        GTEST_SKIP() << "gdb isn't installed";
    const std::string command = "gdb -batch -nx -iex 'set debuginfod enabled off' -ex 'info threads' " +
                                Process::GetExecutablePath() + " " + Find("_MiniDump.dmp").string() + " >" +
                                m_Temporary.Native("gdb.txt") + " 2>&1";
    EXPECT_EQ(std::system(command.c_str()), 0);
    const std::string text = m_Temporary.Read("gdb.txt");
    EXPECT_TRUE(std::regex_search(text, std::regex("\\* 1 .*ReadBadly"))) << text;
    EXPECT_TRUE(std::regex_search(text, std::regex("\n  3 +Thread"))) << text;
}

TEST_F(CrashFilter, StartsTheReporterWithAllThatItGathered) {
    MakeReporter();
    m_Temporary.Write("bugreport.ini", "[mail]\r\n");
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
    EXPECT_EQ(m_Temporary.Read("tools/BugReport/handles"), "4\n");
}

TEST_F(CrashFilter, AReporterThatIsntThereIsTold) {
    setenv("TEST_REPORTER", (m_Folder / "setup.exe").c_str(), 1);
    const std::string output = Crash("Read").output;
    EXPECT_NE(output.find("stopped by an Access Violation; see " + Find("_ErrorLog.txt").string()), std::string::npos);
    EXPECT_NE(output.find("BugReport/BugReport.exe: the crash reporter can't be started"), std::string::npos);
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
    EXPECT_NE(result.output.find("first callback\nlast callback\n"), std::string::npos) << result.output;
    EXPECT_TRUE(HasLines(ReadLog(), {"Write to location 0000000000001238 caused .*", "0x.*WriteBadly.*"})) << ReadLog();
}

TEST_F(CrashFilter, WithoutSymbolReaderThereIsNeitherStackNorDump) {
    for (const char* pName : {"Tests_Debug", "pvxcrash"})
        std::filesystem::copy(Process::GetExecutableFolder() + pName, m_Folder / pName);
    const SelfRunResult result = RunTest((m_Folder / "Tests_Debug").string(), "CrashCase.DISABLED_Read", "");
    EXPECT_EQ(result.signal, SIGSEGV);
    EXPECT_TRUE(HasLines(ReadLog(), {"MiniDump failed to save - error loading symbols\\.", "Registers:"}))
        << result.output;
    EXPECT_NE(ReadLog().find("Call Stack:\r\nStack dump:\r\n"), std::string::npos) << ReadLog();
    EXPECT_TRUE(Find("_MiniDump.dmp").empty());
}

TEST_F(CrashFilter, ALogThatCantBeMadeIsToldAndTheReporterRuns) {
    MakeReporter();
    m_Temporary.Write("logs", "a file, no folder");
    const SelfRunResult result = Crash("Read");
    EXPECT_EQ(result.signal, SIGSEGV);
    EXPECT_NE(result.output.find("RecordExceptionInfo: error creating exception report\n"), std::string::npos)
        << result.output;
    EXPECT_FALSE(GetReporterWords().empty());
}

TEST_F(CrashFilter, CrashesOfOneSecondKeepTheirOwnFiles) {
    Crash("Read");
    Crash("Write");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(m_Folder / "logs"), {}), 4);
}
