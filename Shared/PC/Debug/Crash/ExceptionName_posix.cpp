#include "Shared/PC/Debug/Crash/ExceptionName.h"

#include "Shared/PC/Debug/Crash/CrashedProcess.h"

#include <algorithm>
#include <iterator>

#include <csignal>

namespace {

constexpr int s_AnyCode = -1;

struct Row {
    int signal;
    int code;
    const char* pName;
};

// The first row that fits counts.
constexpr Row s_Rows[] = {
    {SIGINT, s_AnyCode, "a Control-C"},
    {SIGQUIT, s_AnyCode, "a Control-Break"},
    {SIGBUS, BUS_ADRALN, "a Datatype Misalignment"},
    {SIGTRAP, s_AnyCode, "a Breakpoint"},
    {SIGSEGV, s_AnyCode, "an Access Violation"},
    {SIGBUS, s_AnyCode, "an In Page Error"}, // a mapped file that became shorter, a medium that fails
    {SIGILL, ILL_PRVOPC, "a Privileged Instruction"},
    {SIGILL, ILL_PRVREG, "a Privileged Instruction"},
    {SIGILL, s_AnyCode, "an Illegal Instruction"},
    {SIGABRT, s_AnyCode, "a Noncontinuable Exception"},
    {SIGFPE, FPE_FLTSUB, "a Array Bounds Exceeded"},
    {SIGFPE, FPE_FLTDIV, "a Float Divide by Zero"},
    {SIGFPE, FPE_FLTRES, "a Float Inexact Result"},
    {SIGFPE, FPE_FLTINV, "a Float Invalid Operation"},
    {SIGFPE, FPE_FLTOVF, "a Float Overflow"},
    {SIGFPE, FPE_FLTUND, "a Float Underflow"},
    {SIGFPE, FPE_INTDIV, "an Integer Divide by Zero"},
    {SIGFPE, FPE_INTOVF, "an Integer Overflow"},
};

// Not if another process sent the signal, or the processor didn't tell.
bool HasAddress(const CrashRecord& record) {
    return record.signal == SIGSEGV && record.code > 0 && record.code != SI_KERNEL;
}

// An address just below the stack's pointer, or anywhere near it, is no stray one: it is the memory that the stack was
// to grow into.
bool IsStackOverflow(const CrashedProcess& process) {
    constexpr uint64_t s_Near = uint64_t{64} * 1024;
    const CrashRecord& record = process.GetRecord();
    const uint64_t pointer = record.registers.rsp;
    const uint64_t distance = record.address > pointer ? record.address - pointer : pointer - record.address;
    const Mapping* pMapping = process.FindMapping(record.address);
    return HasAddress(record) && distance < s_Near && (!pMapping || !pMapping->isReadable);
}

} // namespace

const char* GetExceptionName(const CrashedProcess& process) {
    const CrashRecord& record = process.GetRecord();
    if (record.isLanguageException && record.signal == SIGABRT)
        return "a C++ Exception";
    if (IsStackOverflow(process))
        return "a Stack Overflow";
    const auto fits = [&](const Row& row) {
        return row.signal == record.signal && (row.code == s_AnyCode || row.code == record.code);
    };
    const auto* pRow = std::ranges::find_if(s_Rows, fits);
    return pRow != std::end(s_Rows) ? pRow->pName : "Unknown exception type";
}

bool IsAccessViolation(const CrashedProcess& process) {
    const CrashRecord& record = process.GetRecord();
    return record.signal == SIGSEGV && record.code > 0 && !IsStackOverflow(process);
}
