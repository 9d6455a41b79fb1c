#include "Shared/PC/Debug/Crash/ErrorLog.h"

#include "Shared/PC/Debug/Crash/CrashedProcess.h"
#include "Shared/PC/Debug/Crash/ExceptionName.h"
#include "Shared/PC/Debug/Crash/ModuleList.h"
#include "Shared/PC/Debug/Process.h"
#include "Shared/PC/Debug/Symbols/StackWalker.h"
#include "Shared/PC/Debug/Symbols/SymbolReader.h"

#include <algorithm>
#include <cinttypes>
#include <cstdarg>

#include <csignal>
#include <dlfcn.h>

namespace {

constexpr int s_ProcessorType = 8664; // x86-64
constexpr uint32_t s_MostFrames = 64;
constexpr uint64_t s_StackDumpSize = 2048;
constexpr uint64_t s_WordsPerRow = 4;

std::string FormatTime(time_t time) {
    std::tm local = {};
    localtime_r(&time, &local);
    char text[64];
    std::snprintf(text, sizeof text, "%d/%d/%d %02d:%02d:%02d", local.tm_mon + 1, local.tm_mday, local.tm_year + 1900,
                  local.tm_hour, local.tm_min, local.tm_sec);
    return text;
}

StackWalkerFunction* LoadWalker() {
    const std::string path = Process::GetExecutableFolder() + s_SymbolReaderModule;
    void* pModule = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL); // good until the program ends
    return pModule ? reinterpret_cast<StackWalkerFunction*>(dlsym(pModule, s_StackWalkerFunction)) : nullptr;
}

StackWalkerFunction* GetWalker() {
    static StackWalkerFunction* const s_pWalker = LoadWalker();
    return s_pWalker;
}

bool IsCode(const CrashedProcess& process, uint64_t address) {
    const Mapping* pMapping = process.FindMapping(address);
    return pMapping && pMapping->isExecutable;
}

SavedStack MakeSavedStack(const CrashedProcess& process) {
    const CrashRegisters& from = process.GetRecord().registers;
    SavedStack stack;
    stack.process = process.GetRecord().process;
    stack.maps = process.GetMaps();
    stack.registers = {from.rax, from.rdx, from.rcx, from.rbx, from.rsi, from.rdi, from.rbp, from.rsp, from.r8,
                       from.r9,  from.r10, from.r11, from.r12, from.r13, from.r14, from.r15, from.rip};
    stack.isBehindInstruction = process.GetRecord().signal == SIGTRAP;
    stack.readWord = [&process](uint64_t address, uint64_t& word) { return process.ReadWord(address, word); };
    return stack;
}

// A call of what is no code has left its return address on top of the stack: the walk goes on from there.
void ReturnFromBadCall(const CrashedProcess& process, SavedStack& stack, std::vector<SavedFrame>& frames) {
    constexpr size_t s_Rsp = 7;
    constexpr size_t s_Rip = 16;
    uint64_t caller = 0;
    if (IsCode(process, stack.registers[s_Rip]) || !process.ReadWord(stack.registers[s_Rsp], caller) ||
        !IsCode(process, caller))
        return;
    frames.push_back({.address = stack.registers[s_Rip], .function = {}, .file = {}, .line = 0});
    stack.registers[s_Rip] = caller;
    stack.registers[s_Rsp] += sizeof caller;
    stack.isBehindInstruction = true;
}

} // namespace

bool HasStackWalker() { return GetWalker(); }

ErrorLog::ErrorLog(std::FILE* pFile, const CrashedProcess& process, time_t time)
    : m_pFile(pFile), m_Process(process), m_Time(time) {}

void ErrorLog::Print(const char* pFormat, ...) {
    va_list arguments;
    va_start(arguments, pFormat);
    std::vfprintf(m_pFile, pFormat, arguments);
    va_end(arguments);
}

void ErrorLog::WriteHead() {
    const CrashRecord& record = m_Process.GetRecord();
    const Process::System system = Process::GetSystem();
    Print("%s caused %s in module %s at %04x:%016" PRIx64 ".\r\n", m_Process.GetExecutableName().c_str(),
          GetExceptionName(m_Process), m_Process.GetModuleName(record.registers.rip).c_str(),
          unsigned{record.registers.cs}, record.registers.rip);
    Print("Error occurred at %s.\r\n", FormatTime(m_Time).c_str());
    Print("%s, run by %s.\r\n", record.executable, Process::GetUserName().c_str());
    Print("%s.\r\n", (system.name + ' ' + std::to_string(system.major) + '.' + std::to_string(system.minor)).c_str());
    Print("%d processor(s), type %d.\r\n", system.processors, s_ProcessorType);
    Print("%d MBytes physical memory.\r\n", static_cast<int>(system.memoryMB));
    if (IsAccessViolation(m_Process))
        Print("%s location %016" PRIx64 " caused an access violation.\r\n", record.isWrite ? "Write to" : "Read from",
              record.address);
    std::fflush(m_pFile);
}

void ErrorLog::WriteDump(DumpResult result, const std::string& path) {
    if (result == DumpResult::Saved)
        Print("MiniDump saved to file '%s'\r\n", path.c_str());
    else if (result == DumpResult::Failed)
        Print("MiniDump failed to save.\r\n");
    else
        Print("MiniDump failed to save - error loading symbols.\r\n");
    std::fflush(m_pFile);
}

void ErrorLog::WriteRegisters() {
    const CrashRecord& record = m_Process.GetRecord();
    const CrashRegisters& r = record.registers;
    Print("Registers:\r\n");
    Print("RAX=%016" PRIx64 " CS=%04x RIP=%016" PRIx64 " EFLGS=%08x\r\n", r.rax, unsigned{r.cs}, r.rip,
          static_cast<unsigned>(r.flags));
    Print("RBX=%016" PRIx64 " SS=%04x RSP=%016" PRIx64 " RBP=%016" PRIx64 "\r\n", r.rbx, unsigned{r.ss}, r.rsp, r.rbp);
    Print("RCX=%016" PRIx64 " DS=%04x RSI=%016" PRIx64 " FS=%04x\r\n", r.rcx, unsigned{r.ds}, r.rsi, unsigned{r.fs});
    Print("RDX=%016" PRIx64 " ES=%04x RDI=%016" PRIx64 " GS=%04x\r\n", r.rdx, unsigned{r.es}, r.rdi, unsigned{r.gs});
    Print("R8 =%016" PRIx64 " R9 =%016" PRIx64 " R10=%016" PRIx64 " R11=%016" PRIx64 "\r\n", r.r8, r.r9, r.r10, r.r11);
    Print("R12=%016" PRIx64 " R13=%016" PRIx64 " R14=%016" PRIx64 " R15=%016" PRIx64 "\r\n", r.r12, r.r13, r.r14,
          r.r15);
    Print("Bytes at CS:RIP:\r\n");
    for (uint32_t i = 0; i < record.codeCount; ++i)
        Print(i == 0 ? "%02x" : " %02x", unsigned{record.codeBytes[i]});
    Print("\r\n");
    std::fflush(m_pFile);
}

void ErrorLog::WriteCallStack() {
    Print("Call Stack:\r\n");
    std::vector<SavedFrame> frames;
    bool isWhole = true;
    if (StackWalkerFunction* const pWalker = GetWalker()) {
        SavedStack stack = MakeSavedStack(m_Process);
        ReturnFromBadCall(m_Process, stack, frames);
        isWhole = pWalker(stack, s_MostFrames, frames);
    }
    for (const SavedFrame& frame : frames)
        if (frame.line != 0)
            Print("0x%016" PRIX64 ": %s Ln %4d (%s)\r\n", frame.address, frame.file.c_str(),
                  static_cast<int>(frame.line), frame.function.c_str());
        else
            Print("0x%016" PRIX64 ": %s         (%s)\r\n", frame.address,
                  m_Process.GetModuleName(frame.address).c_str(), frame.function.c_str());
    if (!isWhole)
        Print("Exception encountered during stack trace.\r\n");
    std::fflush(m_pFile);
}

void ErrorLog::WriteStackDump() {
    Print("Stack dump:\r\n");
    const uint64_t start = m_Process.GetRecord().registers.rsp;
    const Mapping* pMapping = m_Process.FindMapping(start);
    const uint64_t end = pMapping ? std::min(pMapping->end, start + s_StackDumpSize) : start + s_StackDumpSize;
    uint64_t word = 0;
    uint64_t address = start;
    for (uint64_t count = 1; address + sizeof word <= end && m_Process.ReadWord(address, word); ++count) {
        if (count % s_WordsPerRow == 1)
            Print("%016" PRIx64 ":", address);
        address += sizeof word;
        const bool isRowEnd = count % s_WordsPerRow == 0 || address + sizeof word > end;
        Print("%016" PRIx64 "%s", word, isRowEnd ? "\r\n" : " ");
    }
    if (address + sizeof word <= end)
        Print("%sException encountered during stack dump.\r\n",
              (address - start) % (s_WordsPerRow * sizeof word) == 0 ? "" : "\r\n");
    std::fflush(m_pFile);
}

void ErrorLog::WriteModules() {
    Print("\r\nModule list: names, addresses, sizes, time stamps and file times:\r\n");
    for (const CrashedModule& module : ListModules(m_Process.GetMappings())) {
        const std::string date = module.fileTime != 0 ? " - file date is " + FormatTime(module.fileTime) : "";
        Print("%-35s, loaded at 0x%016" PRIx64 " - %5" PRIu64 " bytes - %08x%s\r\n", module.path.c_str(), module.start,
              module.size, module.stamp, date.c_str());
    }
    std::fflush(m_pFile);
}
