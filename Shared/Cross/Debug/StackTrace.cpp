#include "Shared/Cross/Debug/StackTrace.h"

#include "Shared/PC/Debug/StackWalk.h"

#include <cinttypes>
#include <cstdio>

// Kept out of line, since its own frame is one of those that are skipped.
[[gnu::noinline]] void dbCaptureStack(StackTrace& trace, uint32_t skip) {
    trace.count = StackWalk::Capture(trace.addresses, StackTrace::MaxFrames, skip + 1);
}

bool dbResolveFrame(const void* pAddress, StackFrame& frame) {
    return StackWalk::Resolve(pAddress, frame.module, frame.function, frame.file, frame.line);
}

std::string dbFormatFrame(const void* pAddress, const StackFrame& frame) {
    char text[1024];
    const auto address = reinterpret_cast<uintptr_t>(pAddress);
    if (frame.line != 0)
        std::snprintf(text, sizeof text, "0x%016" PRIXPTR ": %-35s Ln %4u (%s)", address, frame.file.c_str(),
                      frame.line, frame.function.c_str());
    else
        std::snprintf(text, sizeof text, "0x%016" PRIXPTR ": %-35s         (%s)", address, frame.module.c_str(),
                      frame.function.c_str());
    return text;
}
