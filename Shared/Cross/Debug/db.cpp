#include "Shared/Cross/Debug/db.h"

#include "Shared/Cross/Debug/CrashReport.h"
#include "Shared/Cross/Debug/Message.h"
#include "Shared/PC/Debug/Process.h"

#include <atomic>
#include <cfenv>
#include <cstdlib>
#include <stdexcept>

namespace {

std::atomic<bool> s_ThrowOnAssert = false;
thread_local int s_NoThrowDepth = 0;

struct Location {
    const char* pFile = "";
    uint32_t line = 0;
};
thread_local Location s_Location;

bool MayThrow() { return s_ThrowOnAssert && s_NoThrowDepth == 0; }

// Whatever a subscriber or a callback does to the arithmetic, the failing code goes on with its own.
class FloatingPointKeeper {
public:
    FloatingPointKeeper() { std::fegetenv(&m_Environment); }
    ~FloatingPointKeeper() { std::fesetenv(&m_Environment); }
    FloatingPointKeeper(const FloatingPointKeeper&) = delete;
    FloatingPointKeeper& operator=(const FloatingPointKeeper&) = delete;

private:
    std::fenv_t m_Environment;
};

[[gnu::format(printf, 2, 3)]] std::string FormatMessage(const std::string& prefix, const char* pFormat, ...) {
    va_list arguments;
    va_start(arguments, pFormat);
    std::string message = dbFormatMessage(prefix, pFormat, arguments);
    va_end(arguments);
    return message;
}

// Kept out of line, since its own frame is one of those that are skipped.
[[gnu::noinline]] void ReportAssertion(const std::string& message) {
    constexpr uint32_t s_OwnFrames = 2; // this one and the assertion's
    std::vector<std::string> lines = {message, ""};
    dbAppendStack(lines, s_OwnFrames);
    dbEmit(dbChannel::Warning, lines);
    dbRunAssertCallbacks();
    dbFlush();
}

} // namespace

void dbSetThrowOnAssert(bool throws) { s_ThrowOnAssert = throws; }

bool dbGetThrowOnAssert() { return s_ThrowOnAssert; }

dbNoThrowScope::dbNoThrowScope() { ++s_NoThrowDepth; }

dbNoThrowScope::~dbNoThrowScope() { --s_NoThrowDepth; }

void dbStop(const char* pReason) {
    if (MayThrow())
        throw std::runtime_error(pReason);
    if (!s_ThrowOnAssert)
        dbBreakpoint();
}

bool dbIsDebuggerPresent() {
    static const bool s_Present = !dbHasCommandFlag("nodbg") && Process::IsDebuggerAttached();
    return s_Present;
}

bool dbHasCommandFlag(const char* pFlag) {
    static const std::string s_CommandLine = Process::GetCommandLine();
    return s_CommandLine.find(pFlag) != std::string::npos;
}

bool(dbAssert)(const char* pFile, uint32_t line, const char* pText) {
    const FloatingPointKeeper keeper;
    const std::string message = FormatMessage(dbFormatPrefix(pFile, line), "Assertion of (%s) failed.", pText);
    if (!dbIsDebuggerPresent())
        ReportAssertion(message);
    if (s_ThrowOnAssert) {
        if (MayThrow())
            throw std::runtime_error(message);
        return false;
    }
    dbAddReportText(message.c_str());
    return true;
}

void dbWarningAt(const char* pFile, uint32_t line, const char* pFormat, ...) {
    va_list arguments;
    va_start(arguments, pFormat);
    const std::string message = dbFormatMessage(dbFormatPrefix(pFile, line), pFormat, arguments);
    va_end(arguments);
    dbEmit(dbChannel::Warning, {message});
}

void dbSetLocation(const char* pFile, uint32_t line) { s_Location = {pFile, line}; }

void(dbWarningf)(const char* pFormat, ...) {
    va_list arguments;
    va_start(arguments, pFormat);
    const std::string message = dbFormatMessage(dbFormatPrefix(s_Location.pFile, s_Location.line), pFormat, arguments);
    va_end(arguments);
    dbEmit(dbChannel::Warning, {message});
}

void dbPrintf(const char* pFormat, ...) {
    va_list arguments;
    va_start(arguments, pFormat);
    const std::string message = dbFormatMessage("", pFormat, arguments);
    va_end(arguments);
    if (message.empty()) {
        dbStop("an empty message");
        return;
    }
    dbEmit(dbChannel::Error, {message});
}

void dbFatalf(const char* pFormat, ...) {
    va_list arguments;
    va_start(arguments, pFormat);
    const std::string message = dbFormatMessage("", pFormat, arguments);
    va_end(arguments);

    constexpr uint32_t s_OwnFrames = 1;
    std::vector<std::string> lines = {message, "-- FATAL EXIT --"};
    dbAppendStack(lines, s_OwnFrames);
    dbEmit(dbChannel::Error, lines);
    dbFlush();
    if (s_ThrowOnAssert)
        throw std::runtime_error(message);
    dbAddReportText(message.c_str());
    dbBreakpoint();
    // A debugger may have stepped over the breakpoint.
    std::abort();
}
