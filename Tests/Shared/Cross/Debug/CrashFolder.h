#pragma once

#include "Tests/Shared/PC/Debug/SelfRun.h"
#include "Tests/Shared/PC/FileSystem/TempFolder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <regex>
#include <string>
#include <thread>
#include <vector>

// A folder that crashes of this program leave their files in, with a stand-in for the reporter that notes its words.
class CrashFolder : public testing::Test {
protected:
    CrashFolder() {
        setenv("PVX_LOGS", (m_Folder / "logs").c_str(), 1);
        // A build with the sanitizer is to die of what the filter leaves alone as any other does.
        const char* pOptions = std::getenv("ASAN_OPTIONS");
        setenv("ASAN_OPTIONS", (std::string(pOptions ? pOptions : "") + ":handle_segv=0").c_str(), 1);
    }
    ~CrashFolder() override {
        for (const char* pName : {"PVX_LOGS", "PVX_CONFIG", "TEST_REPORTER"})
            unsetenv(pName);
    }

    void MakeReporter() {
        m_Temporary.Write("tools/BugReport/BugReport.exe",
                          "#!/bin/sh\n"
                          "folder=${0%/*}\n"
                          "for word in \"$0\" \"$@\"; do printf '%s\\n' \"$word\"; done >\"$folder/words.part\"\n"
                          "ls /proc/self/fd | wc -l >\"$folder/handles\"\n"
                          "mv \"$folder/words.part\" \"$folder/words\"\n");
        std::filesystem::permissions(m_Folder / "tools/BugReport/BugReport.exe", std::filesystem::perms::owner_all);
        setenv("TEST_REPORTER", (m_Folder / "tools/setup.exe").c_str(), 1);
    }

    // Waits for the reporter, which runs by itself.
    std::vector<std::string> GetReporterWords() const {
        for (int i = 0; i < 500 && !HasReporterRun(); ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        std::istringstream lines(m_Temporary.Read("tools/BugReport/words"));
        std::vector<std::string> words;
        for (std::string word; std::getline(lines, word);)
            words.push_back(word);
        return words;
    }
    bool HasReporterRun() const { return m_Temporary.Has("tools/BugReport/words"); }

    SelfRunResult Crash(const std::string& name, const std::string& words = "") {
        return RunSelf("CrashCase.DISABLED_" + name, words);
    }

    // The one file with that end; empty when there is none or more.
    std::filesystem::path Find(const std::string& end) const {
        std::vector<std::filesystem::path> found;
        std::error_code error;
        for (const auto& entry : std::filesystem::directory_iterator(m_Folder / "logs", error))
            if (entry.path().string().ends_with(end))
                found.push_back(entry.path());
        return found.size() == 1 ? found[0] : std::filesystem::path();
    }
    std::string ReadLog() const { return m_Temporary.Read(Find("_ErrorLog.txt")); }

    const TempFolder m_Temporary;
    const std::filesystem::path m_Folder = m_Temporary.Native();
};

// Whether lines that match the patterns come in their order, others between them or not.
inline testing::AssertionResult HasLines(const std::string& log, const std::vector<std::string>& patterns) {
    size_t at = 0;
    for (const std::string& pattern : patterns) {
        const std::regex wanted(pattern);
        for (bool found = false; !found;) {
            const size_t end = log.find("\r\n", at);
            if (end == std::string::npos)
                return testing::AssertionFailure() << "no line like " << pattern << " in\n" << log;
            found = std::regex_match(log.substr(at, end - at), wanted);
            at = end + 2;
        }
    }
    return testing::AssertionSuccess();
}
