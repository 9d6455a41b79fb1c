#pragma once

#include "Shared/PC/Debug/Process.h"

#include <cstdio>
#include <string>

#include <sys/wait.h>

// Runs a test of this very program in a process of its own, for what a process settles once and for all.
struct SelfRunResult {
    int status = -1; // exit status; -1 when a signal ended it
    int signal = 0;  // the signal that ended it
    std::string output;
};

inline SelfRunResult RunTest(const std::string& program, const std::string& test, const std::string& words) {
    const std::string command =
        program + " --gtest_also_run_disabled_tests --gtest_filter=" + test + " " + words + " 2>&1";
    SelfRunResult result;
    std::FILE* pPipe = popen(command.c_str(), "r");
    if (!pPipe)
        return result;
    char block[4096];
    while (const size_t size = std::fread(block, 1, sizeof block, pPipe))
        result.output.append(block, size);
    const int status = pclose(pPipe);
    // A shell in between tells of a signal by a status above this one.
    constexpr int s_SignalStatus = 128;
    if (WIFSIGNALED(status))
        result.signal = WTERMSIG(status);
    else if (WEXITSTATUS(status) > s_SignalStatus)
        result.signal = WEXITSTATUS(status) - s_SignalStatus;
    else
        result.status = WEXITSTATUS(status);
    return result;
}

inline SelfRunResult RunSelf(const std::string& test, const std::string& words) {
    return RunTest(Process::GetExecutablePath(), test, words);
}
