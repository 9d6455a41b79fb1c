#include "Shared/PC/Debug/Symbols/StackWalker.h"

#include "Shared/PC/Debug/Symbols/Demangle.h"

#include <cstdio>
#include <memory>

#include <elfutils/libdwfl.h>

namespace {

struct Walk {
    const SavedStack& stack;
    uint32_t most;
    std::vector<SavedFrame>& frames;
    Dwfl* pSession;
    bool hasFault = false;
};

constexpr Dwfl_Callbacks s_FileCallbacks = {.find_elf = dwfl_linux_proc_find_elf,
                                            .find_debuginfo = dwfl_standard_find_debuginfo,
                                            .section_address = nullptr,
                                            .debuginfo_path = nullptr};

// One thread is all there is.
pid_t NextThread(Dwfl*, void* pUser, void** ppThread) {
    if (*ppThread)
        return 0;
    *ppThread = pUser;
    return static_cast<Walk*>(pUser)->stack.process;
}

bool ReadMemory(Dwfl*, Dwarf_Addr address, Dwarf_Word* pWord, void* pUser) {
    Walk& walk = *static_cast<Walk*>(pUser);
    uint64_t word = 0;
    if (!walk.stack.readWord(address, word)) {
        walk.hasFault = true;
        return false;
    }
    *pWord = word;
    return true;
}

bool SetRegisters(Dwfl_Thread* pThread, void* pUser) {
    const SavedStack& stack = static_cast<Walk*>(pUser)->stack;
    const std::array<Dwarf_Word, SavedStack::RegisterCount> words = std::to_array<Dwarf_Word>(
        {stack.registers[0], stack.registers[1], stack.registers[2], stack.registers[3], stack.registers[4],
         stack.registers[5], stack.registers[6], stack.registers[7], stack.registers[8], stack.registers[9],
         stack.registers[10], stack.registers[11], stack.registers[12], stack.registers[13], stack.registers[14],
         stack.registers[15], stack.registers[16]});
    return dwfl_thread_state_registers(pThread, 0, SavedStack::RegisterCount, words.data());
}

constexpr Dwfl_Thread_Callbacks s_ThreadCallbacks = {.next_thread = NextThread,
                                                     .get_thread = nullptr,
                                                     .memory_read = ReadMemory,
                                                     .set_initial_registers = SetRegisters,
                                                     .detach = nullptr,
                                                     .thread_detach = nullptr};

void FindSource(Dwfl* pSession, Dwarf_Addr address, SavedFrame& frame) {
    Dwfl_Module* pModule = dwfl_addrmodule(pSession, address);
    if (!pModule)
        return;
    if (const char* pName = dwfl_module_addrname(pModule, address))
        frame.function = Demangle(pName);
    Dwfl_Line* pLine = dwfl_module_getsrc(pModule, address);
    int number = 0;
    const char* pFile = pLine ? dwfl_lineinfo(pLine, nullptr, &number, nullptr, nullptr, nullptr) : nullptr;
    if (!pFile)
        return;
    frame.file = pFile;
    frame.line = static_cast<uint32_t>(number);
}

int OnFrame(Dwfl_Frame* pFrame, void* pUser) {
    Walk& walk = *static_cast<Walk*>(pUser);
    Dwarf_Addr address = 0;
    bool isAtInstruction = false;
    if (!dwfl_frame_pc(pFrame, &address, &isAtInstruction))
        return DWARF_CB_ABORT;
    if (walk.frames.empty())
        isAtInstruction = !walk.stack.isBehindInstruction;
    SavedFrame frame;
    frame.address = address;
    FindSource(walk.pSession, isAtInstruction ? address : address - 1, frame);
    walk.frames.push_back(std::move(frame));
    return walk.frames.size() < walk.most ? DWARF_CB_OK : DWARF_CB_ABORT;
}

bool ReportFiles(Dwfl* pSession, const std::string& maps) {
    std::string text = maps; // only to be read, but the stream is opened on what may be written
    const std::unique_ptr<std::FILE, decltype(&std::fclose)> pMaps(fmemopen(text.data(), text.size(), "r"),
                                                                   &std::fclose);
    if (!pMaps)
        return false;
    dwfl_report_begin(pSession);
    const bool reported = dwfl_linux_proc_maps_report(pSession, pMaps.get()) == 0;
    return dwfl_report_end(pSession, nullptr, nullptr) == 0 && reported;
}

} // namespace

extern "C" bool PvxWalkStack(const SavedStack& stack, uint32_t most, std::vector<SavedFrame>& frames) {
    const std::unique_ptr<Dwfl, decltype(&dwfl_end)> pSession(dwfl_begin(&s_FileCallbacks), &dwfl_end);
    if (!pSession || !ReportFiles(pSession.get(), stack.maps))
        return true;
    Walk walk = {.stack = stack, .most = most, .frames = frames, .pSession = pSession.get()};
    if (!dwfl_attach_state(pSession.get(), nullptr, stack.process, &s_ThreadCallbacks, &walk))
        return true;
    // That a walk ends for want of what to go on by is the usual end of one.
    dwfl_getthread_frames(pSession.get(), stack.process, OnFrame, &walk);
    return !walk.hasFault;
}
