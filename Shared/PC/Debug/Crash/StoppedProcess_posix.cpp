#include "Shared/PC/Debug/Crash/StoppedProcess.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <string>

#include <sys/ptrace.h>
#include <sys/wait.h>

namespace {

// In the order of their numbers.
std::vector<int> ListThreads(int process) {
    std::vector<int> threads;
    std::error_code error;
    for (std::filesystem::directory_iterator it("/proc/" + std::to_string(process) + "/task", error), end;
         !error && it != end; it.increment(error))
        threads.push_back(std::atoi(it->path().filename().c_str()));
    std::ranges::sort(threads);
    return threads;
}

bool WaitForStop(int thread) {
    int status = 0;
    pid_t result = 0;
    while ((result = waitpid(thread, &status, __WALL)) < 0 && errno == EINTR) {
    }
    return result == thread && WIFSTOPPED(status);
}

} // namespace

StoppedProcess::StoppedProcess(int process) : m_Process(process) {
    // Again until there is none that another one has started meanwhile.
    for (bool hasNew = true; hasNew;) {
        hasNew = false;
        for (const int thread : ListThreads(m_Process))
            if (std::ranges::find(m_Threads, thread, &Thread::id) == m_Threads.end())
                hasNew |= Stop(thread);
    }
}

StoppedProcess::~StoppedProcess() {
    for (const Thread& thread : m_Threads)
        ptrace(PTRACE_DETACH, thread.id, nullptr, nullptr);
}

bool StoppedProcess::Stop(int id) {
    if (ptrace(PTRACE_SEIZE, id, nullptr, nullptr) != 0)
        return false;
    Thread thread;
    thread.id = id;
    if (ptrace(PTRACE_INTERRUPT, id, nullptr, nullptr) != 0 || !WaitForStop(id) ||
        ptrace(PTRACE_GETREGS, id, nullptr, &thread.registers) != 0) {
        ptrace(PTRACE_DETACH, id, nullptr, nullptr);
        return false;
    }
    ptrace(PTRACE_GETFPREGS, id, nullptr, &thread.floatingPoint);
    m_Threads.push_back(thread);
    return true;
}
