#include "Shared/PC/Debug/Symbols/SymbolReader.h"

#define BACKWARD_HAS_DW 1
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion"
#pragma GCC diagnostic ignored "-Wshadow"
#pragma GCC diagnostic ignored "-Wunused-parameter"
#include <backward.hpp>
#pragma GCC diagnostic pop

#include <mutex>

extern "C" void PvxReadSymbol(const void* pAddress, std::string& function, std::string& file, uint32_t& line) {
    static std::mutex s_Mutex;
    static backward::TraceResolver s_Resolver;
    const std::lock_guard lock(s_Mutex);

    const backward::ResolvedTrace trace =
        s_Resolver.resolve(backward::ResolvedTrace(backward::Trace(const_cast<void*>(pAddress), 0)));
    if (!trace.object_function.empty())
        function = trace.object_function;
    if (!trace.source.function.empty())
        function = trace.source.function;
    if (trace.source.line != 0 && !trace.source.filename.empty()) {
        file = trace.source.filename;
        line = trace.source.line;
    }
}
