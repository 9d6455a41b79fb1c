#include "Shared/Cross/Debug/Message.h"

#include "Shared/Cross/Debug/CallbackTable.h"
#include "Shared/Cross/Debug/StackTrace.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <mutex>
#include <string_view>

namespace {

// A subscriber may report something itself, so the thread that holds the lock may come back.
std::recursive_mutex s_TableMutex;
CallbackTable<dbSubscriber, s_dbMaxSubscribers> s_Warnings;
CallbackTable<dbSubscriber, s_dbMaxSubscribers> s_Errors;
CallbackTable<dbCallback, s_dbMaxAssertCallbacks> s_AssertCallbacks;

template <class Table, class Entry>
void Add(Table& table, const Entry& entry) {
    const std::lock_guard lock(s_TableMutex);
    table.Add(entry);
}

template <class Table, class Entry>
void Remove(Table& table, const Entry& entry) {
    const std::lock_guard lock(s_TableMutex);
    table.Remove(entry);
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
    Add(s_AssertCallbacks, dbCallback{pCallback, pUser});
}

void dbRemoveAssertCallback(dbAssertCallback pCallback, void* pUser) {
    Remove(s_AssertCallbacks, dbCallback{pCallback, pUser});
}

void dbRunAssertCallbacks() {
    const std::lock_guard lock(s_TableMutex);
    // Copied, since a callback may take itself off the table.
    const auto callbacks = s_AssertCallbacks;
    for (const dbCallback& callback : callbacks)
        callback.pFunction(callback.pUser);
}

void dbEmit(dbChannel channel, const std::vector<std::string>& lines) {
    std::vector<const char*> texts;
    texts.reserve(lines.size());
    for (const std::string& line : lines)
        texts.push_back(line.c_str());

    const std::lock_guard lock(s_TableMutex);
    const auto subscribers = channel == dbChannel::Warning ? s_Warnings : s_Errors;
    for (const dbSubscriber pSubscriber : subscribers)
        pSubscriber(texts);
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
