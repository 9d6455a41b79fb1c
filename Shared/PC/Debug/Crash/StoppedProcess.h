#pragma once

#include <cstdint>
#include <vector>

#include <sys/user.h>

// All threads of another process, held still as long as this lives, with their registers.
class StoppedProcess {
public:
    struct Thread {
        int id = 0;
        user_regs_struct registers = {};
        user_fpregs_struct floatingPoint = {};
    };

    explicit StoppedProcess(int process);
    ~StoppedProcess();
    StoppedProcess(const StoppedProcess&) = delete;
    StoppedProcess& operator=(const StoppedProcess&) = delete;

    // None when the system doesn't permit it.
    const std::vector<Thread>& GetThreads() const { return m_Threads; }

private:
    bool Stop(int thread);

    int m_Process;
    std::vector<Thread> m_Threads;
};
