#include "Shared/PC/Debug/Crash/CoreNotes.h"

#include "Shared/PC/Debug/Crash/CrashedProcess.h"
#include "Shared/PC/Debug/Crash/StoppedProcess.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>
#include <span>
#include <string>

#include <elf.h>
#include <sys/procfs.h>
#include <unistd.h>

namespace {

using Bytes = std::vector<std::byte>;

// The table of mapped files counts in pages of this size.
constexpr uint64_t s_TablePageSize = 4096;

template <typename T>
void Append(Bytes& to, const T& value) {
    const auto bytes = std::as_bytes(std::span(&value, 1));
    to.insert(to.end(), bytes.begin(), bytes.end());
}

void Align(Bytes& bytes) { bytes.resize((bytes.size() + 3) / 4 * 4); }

void AppendNote(Bytes& notes, uint32_t type, std::span<const std::byte> contents) {
    constexpr char s_Owner[8] = "CORE"; // with what aligns it
    Append(notes, Elf64_Nhdr{.n_namesz = 5, .n_descsz = static_cast<Elf64_Word>(contents.size()), .n_type = type});
    Append(notes, s_Owner);
    notes.insert(notes.end(), contents.begin(), contents.end());
    Align(notes);
}

template <typename T>
void AppendRecord(Bytes& notes, uint32_t type, const T& record) {
    AppendNote(notes, type, std::as_bytes(std::span(&record, 1)));
}

Bytes ReadFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

// The thread is in its signal handler by now; it is shown as it was before.
user_regs_struct GetCrashRegisters(const CrashRegisters& from, const user_regs_struct& now) {
    user_regs_struct to = now; // the bases of the segments are the same still
    to.rax = from.rax, to.rbx = from.rbx, to.rcx = from.rcx, to.rdx = from.rdx;
    to.rsi = from.rsi, to.rdi = from.rdi, to.rbp = from.rbp, to.rsp = from.rsp;
    to.r8 = from.r8, to.r9 = from.r9, to.r10 = from.r10, to.r11 = from.r11;
    to.r12 = from.r12, to.r13 = from.r13, to.r14 = from.r14, to.r15 = from.r15;
    to.rip = from.rip, to.eflags = from.flags;
    to.cs = from.cs, to.ss = from.ss, to.ds = from.ds, to.es = from.es, to.fs = from.fs, to.gs = from.gs;
    to.orig_rax = ~0ULL; // in no call of the system
    return to;
}

void AppendThread(Bytes& notes, const CrashRecord& record, const StoppedProcess::Thread& thread, bool hasCrashed) {
    elf_prstatus status = {};
    status.pr_pid = thread.id;
    status.pr_ppid = getppid();
    status.pr_fpvalid = 1;
    user_regs_struct registers = thread.registers;
    if (hasCrashed) {
        status.pr_info.si_signo = record.signal;
        status.pr_info.si_code = record.code;
        status.pr_cursig = static_cast<short>(record.signal);
        registers = GetCrashRegisters(record.registers, thread.registers);
    }
    static_assert(sizeof status.pr_reg == sizeof registers);
    std::memcpy(&status.pr_reg, &registers, sizeof registers);
    AppendRecord(notes, NT_PRSTATUS, status);
}

void AppendFloatingPoint(Bytes& notes, const CrashRecord& record, const StoppedProcess::Thread& thread,
                         bool hasCrashed) {
    user_fpregs_struct registers = thread.floatingPoint;
    static_assert(sizeof registers == sizeof record.floatingPoint);
    if (hasCrashed)
        std::memcpy(&registers, record.floatingPoint, sizeof registers);
    AppendRecord(notes, NT_PRFPREG, registers);
}

void AppendProcess(Bytes& notes, const CrashedProcess& crashed) {
    const int process = crashed.GetRecord().process;
    elf_prpsinfo info = {};
    info.pr_sname = 'R';
    info.pr_pid = process;
    info.pr_uid = getuid();
    info.pr_gid = getgid();
    crashed.GetExecutableName().copy(info.pr_fname, sizeof info.pr_fname - 1);
    Bytes words = ReadFile("/proc/" + std::to_string(process) + "/cmdline");
    if (!words.empty())
        words.pop_back(); // the end of the last word
    std::ranges::replace(words, std::byte{0}, std::byte{' '});
    std::memcpy(info.pr_psargs, words.data(), std::min(words.size(), sizeof info.pr_psargs - 1));
    AppendRecord(notes, NT_PRPSINFO, info);
}

// Layout: uint64 count, uint64 page size; for each file uint64 start, end, offset in pages; then the names, each with
// its NUL.
void AppendFiles(Bytes& notes, const std::vector<Mapping>& mappings) {
    uint64_t count = 0;
    Bytes rows;
    Bytes names;
    for (const Mapping& mapping : mappings) {
        if (!mapping.path.starts_with('/'))
            continue;
        ++count;
        Append(rows, mapping.start);
        Append(rows, mapping.end);
        Append(rows, mapping.offset / s_TablePageSize);
        const auto name = std::as_bytes(std::span(mapping.path));
        names.insert(names.end(), name.begin(), name.end());
        names.push_back(std::byte{0});
    }
    Bytes contents;
    Append(contents, count);
    Append(contents, s_TablePageSize);
    contents.insert(contents.end(), rows.begin(), rows.end());
    contents.insert(contents.end(), names.begin(), names.end());
    AppendNote(notes, NT_FILE, contents);
}

} // namespace

std::vector<std::byte> MakeCoreNotes(const CrashedProcess& crashed, const StoppedProcess& stopped) {
    const CrashRecord& record = crashed.GetRecord();
    Bytes notes;
    const auto appendThreads = [&](bool hasCrashed) {
        for (const StoppedProcess::Thread& thread : stopped.GetThreads())
            if ((thread.id == record.thread) == hasCrashed) {
                AppendThread(notes, record, thread, hasCrashed);
                if (hasCrashed) {
                    AppendProcess(notes, crashed);
                    AppendRecord(notes, NT_SIGINFO, record.signalInfo);
                    AppendNote(notes, NT_AUXV, ReadFile("/proc/" + std::to_string(record.process) + "/auxv"));
                    AppendFiles(notes, crashed.GetMappings());
                }
                AppendFloatingPoint(notes, record, thread, hasCrashed);
            }
    };
    // A debugger takes the first thread for the one that crashed.
    appendThreads(true);
    appendThreads(false);
    return notes;
}
