#include "Shared/Cross/Debug/CrashFilter.h"

#include "Shared/Cross/Debug/CallbackTable.h"
#include "Shared/Cross/Debug/CrashState.h"
#include "Shared/Cross/Debug/Message.h"
#include "Shared/PC/Debug/CrashTrap.h"

#include <exception>

namespace {

CallbackTable<dbCallback, s_dbMaxCrashCallbacks> s_CrashCallbacks;
std::terminate_handler s_pFormerTerminate = nullptr;

void RunCallbacks() {
    // The count is asked each time: a callback may take itself off.
    for (uint32_t i = 0; i < s_CrashCallbacks.GetCount(); ++i)
        CrashTrap::RunGuarded(s_CrashCallbacks[i].pFunction, s_CrashCallbacks[i].pUser);
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

void dbAddCrashCallback(dbCrashCallback pCallback, void* pUser) { s_CrashCallbacks.Add({pCallback, pUser}); }

void dbRemoveCrashCallback(dbCrashCallback pCallback, void* pUser) { s_CrashCallbacks.Remove({pCallback, pUser}); }

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
