#pragma once

#include "Host/Sdk/Types.h"

// The host's plain functions. All of them belong to the thread that runs the host.

// Ticks of one frame, above 0.
int GetTicksPerFrame();
// Frames a second.
int GetFrameRate();

// Writes to the host's debug output, which may be nowhere. The text brings its own line end.
[[gnu::format(printf, 1, 2)]] void DebugPrint(const char* pFormat, ...);

// Once per module load.
void InitCustomControls(HINSTANCE handle);
void InitCommonControls();

enum class Cursor { Arrow, Wait };
void SetCursor(Cursor cursor);
