#include "Shared/PC/Debug/Crash/CrashReporter.h"

#include "Shared/PC/Debug/Crash/CoreFile.h"
#include "Shared/PC/Debug/Crash/CrashedProcess.h"
#include "Shared/PC/Debug/Crash/ErrorLog.h"
#include "Shared/PC/Debug/Crash/ExceptionName.h"
#include "Shared/PC/Debug/Crash/Reporter.h"
#include "Shared/PC/Debug/Crash/StoppedProcess.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <memory>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr char s_ReporterFile[] = "BugReport.exe";
constexpr char s_Reason[] = "Crash";

// The start of both files' names.
std::string MakeStem(const CrashedProcess& process, time_t time) {
    std::tm local = {};
    localtime_r(&time, &local);
    char stem[2048];
    std::snprintf(stem, sizeof stem, "%s%s%d-%d-%d_%02d_%02d_%02d", process.GetRecord().logFolder,
                  process.GetExecutableName().c_str(), local.tm_year + 1900, local.tm_mon + 1, local.tm_mday,
                  local.tm_hour, local.tm_min, local.tm_sec);
    return stem;
}

DumpResult SaveDump(const CrashedProcess& process, const std::string& path) {
    if (!HasStackWalker())
        return DumpResult::NoSymbols;
    const StoppedProcess stopped(process.GetRecord().process);
    return WriteCoreFile(path, process, stopped) ? DumpResult::Saved : DumpResult::Failed;
}

struct ReportFiles {
    time_t time = 0;
    std::string log;
    std::string dump;
    std::unique_ptr<std::FILE, decltype(&std::fclose)> pLog{nullptr, &std::fclose}; // null when it can't be made
};

// A report of the same program and the same second isn't written over: this one then belongs to the next second.
ReportFiles MakeFiles(const CrashedProcess& process) {
    constexpr int s_MostTries = 10;
    std::error_code ignored; // the file tells
    std::filesystem::create_directories(process.GetRecord().logFolder, ignored);
    ReportFiles files;
    for (int i = 0; i < s_MostTries; ++i) {
        files.time = time(nullptr);
        const std::string stem = MakeStem(process, files.time);
        files.log = stem + "_ErrorLog.txt";
        files.dump = stem + "_MiniDump.dmp";
        const int descriptor = open(files.log.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        if (descriptor >= 0)
            files.pLog.reset(fdopen(descriptor, "wb"));
        if (descriptor >= 0 || errno != EEXIST)
            break;
        sleep(1);
    }
    return files;
}

bool WriteReport(const CrashedProcess& process, const ReportFiles& files) {
    if (!files.pLog)
        return false;
    ErrorLog log(files.pLog.get(), process, files.time);
    log.WriteHead();
    log.WriteDump(SaveDump(process, files.dump), files.dump);
    log.WriteRegisters();
    log.WriteCallStack();
    log.WriteStackDump();
    log.WriteModules();
    return std::ferror(files.pLog.get()) == 0;
}

ReporterCall MakeCall(const CrashedProcess& process, const ReportFiles& files) {
    const CrashRecord& record = process.GetRecord();
    ReporterCall call;
    call.folder = record.reporterFolder;
    call.file = s_ReporterFile;
    call.process = record.process;
    call.executable = process.GetExecutableName();
    call.reason = s_Reason;
    call.version = record.version;
    call.language = record.language;
    call.config =
        *record.reporterConfig ? record.reporterConfig : FindReporterConfig(record.configFolder, record.executable);
    call.texts.assign(record.texts, record.texts + record.textCount);
    for (uint32_t i = 0; i < record.fileCount; ++i)
        call.files.push_back({record.files[i].name, record.files[i].deleteAfter});
    call.files.push_back({files.log, true});
    call.files.push_back({files.dump, true});
    return call;
}

} // namespace

void ReportCrash(const CrashedProcess& process) {
    const ReportFiles files = MakeFiles(process);
    if (WriteReport(process, files))
        std::fprintf(stderr, "%s: stopped by %s; see %s\n", process.GetExecutableName().c_str(),
                     GetExceptionName(process), files.log.c_str());
    else
        std::fprintf(stderr, "RecordExceptionInfo: error creating exception report\n");

    const CrashRecord& record = process.GetRecord();
    if (!record.startsReporter || !*record.reporterFolder)
        return;
    const std::string line = BuildReporterCommandLine(MakeCall(process, files));
    if (!StartDetached(SplitCommandLine(line)))
        std::fprintf(stderr, "%s%s: the crash reporter can't be started\n", record.reporterFolder, s_ReporterFile);
}
