#pragma once

#include <cstdint>

// What is done when the process crashes: the callbacks run, an error log and a dump are written, and a separate
// reporter is started with them. Set up while all is well, from one thread.

// From then on. Does nothing with a debugger present, or with "notrap" on the command line; a second call does nothing
// either. "noreport" keeps the reporter from being started.
void dbInstallCrashFilter();

using dbCrashCallback = void (*)(void* pUser);
constexpr uint32_t s_dbMaxCrashCallbacks = 16;

// Called in the order of registration on the crashing thread, where nothing can be relied on: locks may be held and
// memory be broken. One that crashes itself is left, and the next one called. A null function, the same one twice and
// one too many stop, as dbStop does.
void dbAddCrashCallback(dbCrashCallback pCallback, void* pUser);
void dbRemoveCrashCallback(dbCrashCallback pCallback, void* pUser);

// Where the reporter is: in the folder "BugReport" inside of the path's folder, which is what stands up to its last
// slash. The machine's form; an empty path means that there is none, as before the first call. `pConfig` names the
// reporter's configuration; null or empty has it looked for at a crash. A path that is too long stops, as dbStop does.
void dbSetBugReportPath(const char* pPath, const char* pConfig);

// Handed to the reporter when set. Null or empty is not set.
void dbSetReportStrings(const char* pVersion, const char* pLanguage);
