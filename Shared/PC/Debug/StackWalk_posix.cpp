#include "Shared/PC/Debug/StackWalk.h"

#include "Shared/PC/Debug/Process.h"
#include "Shared/PC/Debug/Symbols/Demangle.h"
#include "Shared/PC/Debug/Symbols/SymbolReader.h"

#include <algorithm>
#include <cstring>

#include <dlfcn.h>
#include <execinfo.h>

namespace StackWalk {

namespace {

const char* FileNameOf(const char* pPath) {
    const char* pSlash = std::strrchr(pPath, '/');
    return pSlash ? pSlash + 1 : pPath;
}

// The reader lies beside the program, and is loaded only now: what it brings along costs more than the start of a
// program may.
SymbolReaderFunction* LoadReader() {
    const std::string path = Process::GetExecutableFolder() + s_SymbolReaderModule;
    // Never closed: symbols may be asked for until the very end.
    void* pModule = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    return pModule ? reinterpret_cast<SymbolReaderFunction*>(dlsym(pModule, s_SymbolReaderFunction)) : nullptr;
}

} // namespace

// Kept out of line, since the walk is cut where it comes back to the caller.
[[gnu::noinline]] uint32_t Capture(const void** ppAddresses, uint32_t room, uint32_t skip) {
    constexpr uint32_t s_OwnFrames = 2; // this one, and that of whoever stands in for the walker (a sanitizer does)
    constexpr uint32_t s_MostFrames = 128;
    void* frames[s_MostFrames];
    const auto wanted = std::min<uint64_t>(uint64_t{room} + skip + s_OwnFrames, s_MostFrames);
    const auto found = static_cast<uint32_t>(std::max(backtrace(frames, static_cast<int>(wanted)), 0));
    const auto* const pCaller = std::find(frames, frames + found, __builtin_return_address(0));
    const auto left = static_cast<uint32_t>(frames + found - pCaller);
    if (left <= skip)
        return 0;
    const uint32_t count = std::min(left - skip, room);
    std::copy_n(pCaller + skip, count, ppAddresses);
    return count;
}

bool Resolve(const void* pAddress, std::string& module, std::string& function, std::string& file, uint32_t& line) {
    module.clear();
    function.clear();
    file.clear();
    line = 0;
    // A return address stands behind its call, perhaps already on the next line or in the next function.
    const void* pCall = static_cast<const char*>(pAddress) - 1;
    Dl_info info = {};
    if (!pAddress || !dladdr(pCall, &info) || !info.dli_fname)
        return false;
    module = FileNameOf(info.dli_fname);
    if (info.dli_sname)
        function = Demangle(info.dli_sname);
    static SymbolReaderFunction* const s_pReader = LoadReader();
    if (s_pReader)
        s_pReader(pCall, function, file, line);
    return true;
}

} // namespace StackWalk
