#pragma once

#include "Shared/PC/Debug/Breakpoint.h"

#include <cstdint>
#include <span>

// What the whole system reports through: assertions that stay in shipped builds, warnings, plain messages and fatal
// exits. A report goes to a channel, and a channel hands it to its subscribers; without any it is lost. All operations
// may be called from any thread; subscribers are called one at a time, on the thread that reports.

// A message is one or more lines without line ends. The texts are good for the length of the call.
using dbMessage = std::span<const char* const>;
using dbSubscriber = void (*)(dbMessage message);
using dbAssertCallback = void (*)(void* pUser);

constexpr uint32_t s_dbMaxSubscribers = 10; // of each channel
constexpr uint32_t s_dbMaxAssertCallbacks = 64;

// A null function, the same one twice and one too many stop at once, as dbStop does. Removing what isn't registered
// does nothing.
void dbAddWarningSubscriber(dbSubscriber pSubscriber);
void dbRemoveWarningSubscriber(dbSubscriber pSubscriber);
void dbAddErrorSubscriber(dbSubscriber pSubscriber);
void dbRemoveErrorSubscriber(dbSubscriber pSubscriber);
// Called, in the order of registration, after a failed assertion has been reported.
void dbAddAssertCallback(dbAssertCallback pCallback, void* pUser);
void dbRemoveAssertCallback(dbAssertCallback pCallback, void* pUser);

// With it, a failed assertion and dbFatalf throw a std::runtime_error with the message in place of stopping at a
// breakpoint. Off when a process starts.
void dbSetThrowOnAssert(bool throws);
bool dbGetThrowOnAssert();

// As long as one lives, this thread's failed assertions are reported but neither thrown nor broken into while
// throw-on-assert is set. For destructors, which must not throw.
class dbNoThrowScope {
public:
    dbNoThrowScope();
    ~dbNoThrowScope();
    dbNoThrowScope(const dbNoThrowScope&) = delete;
    dbNoThrowScope& operator=(const dbNoThrowScope&) = delete;
};

// A breakpoint right here; without a debugger the process ends by it.
#define dbBreakpoint() PVX_BREAKPOINT()
// Stops where there is no place left to report to: throws with throw-on-assert, otherwise a breakpoint.
void dbStop(const char* pReason);

// Whether a debugger is attached, as worked out when first asked. Never with "nodbg" on the command line.
bool dbIsDebuggerPresent();

// Reports a failed assertion. True when the site is to stop at a breakpoint; the macros below do that.
// The parentheses keep the macro of this name away.
bool(dbAssert)(const char* pFile, uint32_t line, const char* pText);

// A condition that holds unless we made a mistake. The code behind it has to cope all the same, since a debugger may
// step over the breakpoint, or set the site's byte to ignore it from then on.
#define dbAssert(condition) dbAssertText(condition, #condition)

// The same for a text that isn't the expression.
#define dbAssertText(condition, text)                                                                                  \
    do {                                                                                                               \
        static volatile uint8_t s_dbIgnore = 0;                                                                        \
        if (!(condition) && !s_dbIgnore && (dbAssert)(__FILE__, __LINE__, text))                                       \
            dbBreakpoint();                                                                                            \
    } while (false)

// An assertion that fails whenever it is reached.
#define dbBreak() dbAssertText(false, "dbBreak")

// A warning: one line with the prefix "stem/line:!" of the place that warns. At most 1023 bytes; the rest is cut.
#define dbWarningf(...) dbWarningAt(__FILE__, __LINE__, __VA_ARGS__)
[[gnu::format(printf, 3, 4)]] void dbWarningAt(const char* pFile, uint32_t line, const char* pFormat, ...);
// The same in two steps, for those who warn on behalf of another place. The location is this thread's.
void dbSetLocation(const char* pFile, uint32_t line);
[[gnu::format(printf, 1, 2)]] void(dbWarningf)(const char* pFormat, ...);

// A message without a location, to the error channel. An empty one stops, as dbStop does.
[[gnu::format(printf, 1, 2)]] void dbPrintf(const char* pFormat, ...);

// Reports to the error channel, with the stack, and never comes back: throws with throw-on-assert, otherwise breaks.
[[noreturn, gnu::format(printf, 1, 2)]] void dbFatalf(const char* pFormat, ...);
