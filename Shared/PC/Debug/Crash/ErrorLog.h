#pragma once

#include <cstdio>
#include <ctime>
#include <string>

class CrashedProcess;

// The error log of a crash: what happened where, the machine, registers, stack and modules, in lines that end in
// CR LF. It is written part by part, each on its way to the disk at once, should a later one fail.

enum class DumpResult { Saved, Failed, NoSymbols };

class ErrorLog {
public:
    // The file is the caller's. Times are local.
    ErrorLog(std::FILE* pFile, const CrashedProcess& process, time_t time);

    // The parts, in their order.
    void WriteHead();
    void WriteDump(DumpResult result, const std::string& path);
    void WriteRegisters();
    void WriteCallStack();
    void WriteStackDump();
    void WriteModules();

private:
    [[gnu::format(printf, 2, 3)]] void Print(const char* pFormat, ...);

    std::FILE* m_pFile;
    const CrashedProcess& m_Process;
    time_t m_Time;
};

// Whether what reads stacks and symbols can be loaded; without it there is no call stack.
bool HasStackWalker();
