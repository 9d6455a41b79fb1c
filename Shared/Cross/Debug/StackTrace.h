#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

// The return addresses of one moment, innermost first. Cheap to take and to copy: nothing is looked up yet.
struct StackTrace {
    static constexpr uint32_t MaxFrames = 32;

    const void* addresses[MaxFrames] = {};
    uint32_t count = 0;
};

// What an address stands for. What isn't known is empty, or 0.
struct StackFrame {
    std::string module; // file name without its folder
    std::string function;
    std::string file; // as the compiler was told it
    uint32_t line = 0;
};

// Takes the caller's stack without its innermost `skip` frames; 0 starts with the caller.
void dbCaptureStack(StackTrace& trace, uint32_t skip);

// False when not even the module is known. The first call in a process loads what reads symbols; that is slow.
bool dbResolveFrame(const void* pAddress, StackFrame& frame);

// One line for a report: address, source file with line and function, or module and function.
std::string dbFormatFrame(const void* pAddress, const StackFrame& frame);
