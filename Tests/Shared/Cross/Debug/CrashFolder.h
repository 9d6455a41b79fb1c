#pragma once

#include "Tests/Shared/PC/Debug/SelfRun.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <string>
#include <thread>
#include <vector>

// A folder that crashes of this program leave their files in, with a stand-in for the reporter that notes its words.
class CrashFolder : public testing::Test {
protected:
    CrashFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "pvxcrashXXXXXX").string();
        m_Folder = mkdtemp(pattern.data());
        setenv("PVX_LOGS", (m_Folder / "logs").c_str(), 1);
        // A build with the sanitizer is to die of what the filter leaves alone as any other does.
        setenv("ASAN_OPTIONS", "handle_segv=0", 0);
    }
    ~CrashFolder() override {
        for (const char* pName : {"PVX_LOGS", "PVX_CONFIG", "TEST_REPORTER", "TEST_REPORTER_CONFIG"})
            unsetenv(pName);
        std::filesystem::remove_all(m_Folder);
    }

    void MakeReporter() {
        const std::filesystem::path folder = m_Folder / "tools/BugReport";
        std::filesystem::create_directories(folder);
        std::ofstream(folder / "BugReport.exe")
            << "#!/bin/sh\n"
               "folder=${0%/*}\n"
               "for word in \"$0\" \"$@\"; do printf '%s\\n' \"$word\"; done >\"$folder/words.part\"\n"
               "ls /proc/self/fd | wc -l >\"$folder/handles\"\n"
               "mv \"$folder/words.part\" \"$folder/words\"\n";
        std::filesystem::permissions(folder / "BugReport.exe", std::filesystem::perms::owner_all);
        setenv("TEST_REPORTER", (m_Folder / "tools/setup.exe").c_str(), 1);
    }

    // Waits for the reporter, which runs by itself.
    std::vector<std::string> GetReporterWords() const {
        const std::filesystem::path path = m_Folder / "tools/BugReport/words";
        for (int i = 0; i < 500 && !std::filesystem::exists(path); ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        std::ifstream file(path);
        std::vector<std::string> words;
        for (std::string word; std::getline(file, word);)
            words.push_back(word);
        return words;
    }
    bool HasReporterRun() const { return std::filesystem::exists(m_Folder / "tools/BugReport/words"); }

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
    std::string ReadLog() const { return Read(Find("_ErrorLog.txt")); }
    static std::string Read(const std::filesystem::path& path) {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }

    std::filesystem::path m_Folder;
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
