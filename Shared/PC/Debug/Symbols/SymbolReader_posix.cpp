#include "Shared/PC/Debug/Symbols/SymbolReader.h"

#include "Shared/PC/Debug/Symbols/Demangle.h"

#include <memory>
#include <mutex>

#include <elfutils/libdwfl.h>
#include <unistd.h>

namespace {

// The files that make up this process, with their symbols and line tables.
class ProcessModules {
public:
    ProcessModules() : m_pSession(dwfl_begin(&s_Callbacks), &dwfl_end) {}

    // Null when no file holds the address. Looks again for one that was loaded after the last time.
    Dwfl_Module* Find(Dwarf_Addr address) {
        if (!m_pSession)
            return nullptr;
        Dwfl_Module* pModule = dwfl_addrmodule(m_pSession.get(), address);
        if (pModule)
            return pModule;
        dwfl_report_begin_add(m_pSession.get());
        const bool reported = dwfl_linux_proc_report(m_pSession.get(), getpid()) == 0;
        dwfl_report_end(m_pSession.get(), nullptr, nullptr);
        return reported ? dwfl_addrmodule(m_pSession.get(), address) : nullptr;
    }

private:
    static constexpr Dwfl_Callbacks s_Callbacks = {.find_elf = dwfl_linux_proc_find_elf,
                                                   .find_debuginfo = dwfl_standard_find_debuginfo,
                                                   .section_address = nullptr,
                                                   .debuginfo_path = nullptr};
    std::unique_ptr<Dwfl, decltype(&dwfl_end)> m_pSession;
};

} // namespace

extern "C" void PvxReadSymbol(const void* pAddress, std::string& function, std::string& file, uint32_t& line) {
    static std::mutex s_Mutex;
    static ProcessModules s_Modules;
    const std::lock_guard lock(s_Mutex);

    const auto address = reinterpret_cast<Dwarf_Addr>(pAddress);
    Dwfl_Module* pModule = s_Modules.Find(address);
    if (!pModule)
        return;
    if (const char* pName = dwfl_module_addrname(pModule, address))
        function = Demangle(pName);
    if (Dwfl_Line* pLine = dwfl_module_getsrc(pModule, address)) {
        int number = 0;
        if (const char* pFile = dwfl_lineinfo(pLine, nullptr, &number, nullptr, nullptr, nullptr)) {
            file = pFile;
            line = static_cast<uint32_t>(number);
        }
    }
}
