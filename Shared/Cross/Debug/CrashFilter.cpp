#include "Shared/Cross/Debug/CrashFilter.h"

#include "Shared/Cross/Debug/CrashState.h"
#include "Shared/Cross/Debug/Message.h"
#include "Shared/PC/Debug/CrashTrap.h"

#include <algorithm>
#include <array>
#include <exception>

namespace {

struct Callback {
    dbCrashCallback pFunction = nullptr;
    void* pUser = nullptr;

    bool operator==(const Callback&) const = default;
};

std::array<Callback, s_dbMaxCrashCallbacks> s_Callbacks;
uint32_t s_CallbackCount = 0;
std::terminate_handler s_pFormerTerminate = nullptr;

void RunCallbacks() {
    // The count is asked each time: a callback may take itself off.
    for (uint32_t i = 0; i < s_CallbackCount; ++i)
        CrashTrap::RunGuarded(s_Callbacks[i].pFunction, s_Callbacks[i].pUser);
}

void OnTerminate() {
    dbGetCrashRecord().isLanguageException = std::current_exception() != nullptr;
    s_pFormerTerminate();
}

std::string_view OrEmpty(const char* pText) { return pText ? pText : ""; }

} // namespace

void dbInstallCrashFilter() {
    if (s_pFormerTerminate || dbHasCommandFlag("notrap") || dbIsDebuggerPresent())
        return;
    CrashRecord& record = dbGetCrashRecord();
    record.startsReporter = !dbHasCommandFlag("noreport");
    if (!CrashTrap::Install(record, RunCallbacks)) {
        dbWarningf("DEBUG -- the crash filter can't be installed");
        return;
    }
    s_pFormerTerminate = std::set_terminate(OnTerminate);
}

void dbAddCrashCallback(dbCrashCallback pCallback, void* pUser) {
    const auto pEnd = s_Callbacks.begin() + s_CallbackCount;
    const Callback callback = {pCallback, pUser};
    if (!pCallback)
        dbStop("a null callback");
    else if (std::find(s_Callbacks.begin(), pEnd, callback) != pEnd)
        dbStop("a callback registered twice");
    else if (s_CallbackCount == s_Callbacks.size())
        dbStop("too many callbacks");
    else
        s_Callbacks[s_CallbackCount++] = callback;
}

void dbRemoveCrashCallback(dbCrashCallback pCallback, void* pUser) {
    const auto pEnd = s_Callbacks.begin() + s_CallbackCount;
    const Callback callback = {pCallback, pUser};
    s_CallbackCount = static_cast<uint32_t>(std::remove(s_Callbacks.begin(), pEnd, callback) - s_Callbacks.begin());
}

void dbSetBugReportPath(const char* pPath, const char* pConfig) {
    const std::string_view path = OrEmpty(pPath);
    std::string folder(path.substr(0, path.find_last_of('/') + 1));
    if (!path.empty())
        folder += "BugReport/";
    CrashRecord& record = dbGetCrashRecord();
    if (!dbCopyText(record.reporterFolder, folder) || !dbCopyText(record.reporterConfig, OrEmpty(pConfig)))
        dbStop("too long a path of the crash reporter");
}

void dbSetReportStrings(const char* pVersion, const char* pLanguage) {
    CrashRecord& record = dbGetCrashRecord();
    if (!dbCopyText(record.version, OrEmpty(pVersion)) || !dbCopyText(record.language, OrEmpty(pLanguage)))
        dbStop("too long a text for the crash reporter");
}
