#include "Host/Sdk/Core.h"

#include "Host/Sdk/HostSetup.h"

#include <cstdarg>
#include <cstdio>
#include <string>

namespace {

int s_TicksPerFrame = TicksPerSecond / 30;
int s_FrameRate = 30;
DebugOutput s_DebugOutput = nullptr;
Cursor s_Cursor = Cursor::Arrow;

} // namespace

int GetTicksPerFrame() { return s_TicksPerFrame; }
int GetFrameRate() { return s_FrameRate; }

bool SetFrameRate(int framesPerSecond) {
    if (framesPerSecond < 1 || framesPerSecond > TicksPerSecond)
        return false;
    s_FrameRate = framesPerSecond;
    s_TicksPerFrame = TicksPerSecond / framesPerSecond;
    return true;
}

void DebugPrint(const char* pFormat, ...) {
    if (!s_DebugOutput)
        return;
    va_list arguments;
    va_start(arguments, pFormat);
    va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, pFormat, arguments);
    va_end(arguments);
    std::string text(length > 0 ? static_cast<size_t>(length) : 0, '\0');
    if (length > 0)
        std::vsnprintf(text.data(), text.size() + 1, pFormat, again);
    va_end(again);
    s_DebugOutput(text.c_str());
}

DebugOutput SetDebugOutput(DebugOutput output) {
    const DebugOutput before = s_DebugOutput;
    s_DebugOutput = output;
    return before;
}

// The controls that dialogs are made of are always there.
void InitCustomControls(HINSTANCE) {}
void InitCommonControls() {}

void SetCursor(Cursor cursor) { s_Cursor = cursor; }
Cursor GetCursor() { return s_Cursor; }
