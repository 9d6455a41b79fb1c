#include "Shared/Cross/Debug/Message.h"

#include "Shared/Cross/Debug/CallbackTable.h"
#include "Shared/Cross/Debug/StackTrace.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <mutex>
#include <string_view>

namespace {

struct SubscriberTable {
    std::array<dbSubscriber, s_dbMaxSubscribers> entries = {};
    uint32_t count = 0;
};

// A subscriber may report something itself, so the thread that holds the lock may come back.
std::recursive_mutex s_TableMutex;
SubscriberTable s_Warnings;
SubscriberTable s_Errors;
CallbackTable<s_dbMaxAssertCallbacks> s_AssertCallbacks;

void Add(SubscriberTable& table, dbSubscriber pSubscriber) {
    const std::lock_guard lock(s_TableMutex);
    const auto pEnd = table.entries.begin() + table.count;
    if (!pSubscriber)
        dbStop("a null subscriber");
    else if (std::find(table.entries.begin(), pEnd, pSubscriber) != pEnd)
        dbStop("a subscriber registered twice");
    else if (table.count == table.entries.size())
        dbStop("too many subscribers");
    else
        table.entries[table.count++] = pSubscriber;
}

void Remove(SubscriberTable& table, dbSubscriber pSubscriber) {
    const std::lock_guard lock(s_TableMutex);
    const auto pEnd = table.entries.begin() + table.count;
    table.count = static_cast<uint32_t>(std::remove(table.entries.begin(), pEnd, pSubscriber) - table.entries.begin());
}

std::string StemOf(const char* pFile) {
    std::string_view name = pFile;
    if (const size_t slash = name.find_last_of("/\\"); slash != std::string_view::npos)
        name.remove_prefix(slash + 1);
    std::string stem(name.substr(0, name.find_last_of('.')));
    std::transform(stem.begin(), stem.end(), stem.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return stem;
}

} // namespace

void dbAddWarningSubscriber(dbSubscriber pSubscriber) { Add(s_Warnings, pSubscriber); }

void dbRemoveWarningSubscriber(dbSubscriber pSubscriber) { Remove(s_Warnings, pSubscriber); }

void dbAddErrorSubscriber(dbSubscriber pSubscriber) { Add(s_Errors, pSubscriber); }

void dbRemoveErrorSubscriber(dbSubscriber pSubscriber) { Remove(s_Errors, pSubscriber); }

void dbAddAssertCallback(dbAssertCallback pCallback, void* pUser) {
    const std::lock_guard lock(s_TableMutex);
    s_AssertCallbacks.Add({pCallback, pUser});
}

void dbRemoveAssertCallback(dbAssertCallback pCallback, void* pUser) {
    const std::lock_guard lock(s_TableMutex);
    s_AssertCallbacks.Remove({pCallback, pUser});
}

void dbRunAssertCallbacks() {
    const std::lock_guard lock(s_TableMutex);
    // Copied, since a callback may take itself off the table.
    const auto callbacks = s_AssertCallbacks;
    for (uint32_t i = 0; i < callbacks.GetCount(); ++i)
        callbacks[i].pFunction(callbacks[i].pUser);
}

void dbEmit(dbChannel channel, const std::vector<std::string>& lines) {
    std::vector<const char*> texts;
    texts.reserve(lines.size());
    for (const std::string& line : lines)
        texts.push_back(line.c_str());

    const std::lock_guard lock(s_TableMutex);
    const SubscriberTable table = channel == dbChannel::Warning ? s_Warnings : s_Errors;
    for (uint32_t i = 0; i < table.count; ++i)
        table.entries[i](texts);
}

void dbFlush() {
    std::fflush(stdout);
    std::fflush(stderr);
}

std::string dbFormatPrefix(const char* pFile, uint32_t line) {
    const std::string stem = StemOf(pFile);
    char prefix[s_dbMessageSize];
    std::snprintf(prefix, sizeof prefix, "%s/%u%s", stem.c_str(), line, ":!");
    return prefix;
}

std::string dbFormatMessage(const std::string& prefix, const char* pFormat, va_list arguments) {
    char message[s_dbMessageSize];
    const size_t used = prefix.copy(message, sizeof message - 1);
    message[used] = '\0';
    std::vsnprintf(message + used, sizeof message - used, pFormat, arguments);
    return message;
}

// Kept out of line, since its own frame is one of those that are skipped.
[[gnu::noinline]] void dbAppendStack(std::vector<std::string>& lines, uint32_t skip) {
    lines.emplace_back("--stack trace--");
    if (dbHasCommandFlag("notrace"))
        return;
    StackTrace trace;
    dbCaptureStack(trace, skip + 1);
    for (uint32_t i = 0; i < trace.count; ++i) {
        StackFrame frame;
        dbResolveFrame(trace.addresses[i], frame);
        lines.push_back(dbFormatFrame(trace.addresses[i], frame));
    }
}
