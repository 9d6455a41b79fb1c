#pragma once

#include "Host/Sdk/Core.h"

// What the host sets and asks behind the functions of Core.h. A module doesn't include this header.

inline constexpr int TicksPerSecond = 4800;

// From now on a frame has TicksPerSecond / framesPerSecond ticks, cut to a whole number. False, and nothing changed,
// outside 1..TicksPerSecond. 30 at first.
bool SetFrameRate(int framesPerSecond);

// Where DebugPrint goes. Null, as at first, drops it. Returns the one before.
using DebugOutput = void (*)(const char* pText);
DebugOutput SetDebugOutput(DebugOutput output);

Cursor GetCursor();
