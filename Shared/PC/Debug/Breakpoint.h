#pragma once

// Stops in the debugger at the very place that holds it; without a debugger the process ends by it, and what reports
// that names the place. A macro for this reason: a function, inline or not, has a line of its own.
#define PVX_BREAKPOINT() asm volatile("int3")
