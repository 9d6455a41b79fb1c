#include "Shared/Cross/Debug/CrashReport.h"

#include "Shared/Cross/Debug/CrashState.h"
#include "Shared/Cross/Debug/db.h"

#include <algorithm>
#include <atomic>
#include <mutex>
#include <span>
#include <string_view>

namespace {

static_assert(s_dbMaxReportTexts == CrashRecord::MaxTexts && s_dbMaxReportFiles == CrashRecord::MaxFiles);
static_assert(s_dbMaxReportTextLength + 1 == sizeof CrashRecord::texts[0]);
static_assert(s_dbMaxReportFileLength + 1 == sizeof CrashReportFile::name);

constinit CrashRecord s_Record = {};
std::mutex s_ListMutex; // of the lists; a crash doesn't ask for it

using Text = char[s_dbMaxReportTextLength + 1];

std::span<Text> GetTexts() { return {s_Record.texts, s_Record.textCount}; }
std::span<CrashReportFile> GetFiles() { return {s_Record.files, s_Record.fileCount}; }

// What an entry holds is there before it counts, should the process crash in between.
void CountUp(uint32_t& count) {
    std::atomic_signal_fence(std::memory_order_release);
    ++count;
}

CrashReportFile* FindFile(std::string_view name) {
    const std::span<CrashReportFile> files = GetFiles();
    const auto it = std::ranges::find_if(files, [=](const CrashReportFile& file) { return file.name == name; });
    return it != files.end() ? &*it : nullptr;
}

bool AddText(std::string_view text) {
    const std::lock_guard lock(s_ListMutex);
    const std::span<Text> texts = GetTexts();
    if (std::ranges::any_of(texts, [=](const Text& known) { return known == text; }))
        return true;
    if (texts.size() == s_dbMaxReportTexts)
        return false;
    dbCopyText(s_Record.texts[s_Record.textCount], text);
    CountUp(s_Record.textCount);
    return true;
}

bool AddFile(std::string_view name, bool deleteAfter) {
    const std::lock_guard lock(s_ListMutex);
    if (CrashReportFile* pFile = FindFile(name)) {
        pFile->deleteAfter = deleteAfter;
        return true;
    }
    if (s_Record.fileCount == s_dbMaxReportFiles)
        return false;
    CrashReportFile& file = s_Record.files[s_Record.fileCount];
    if (!dbCopyText(file.name, name))
        return false;
    file.deleteAfter = deleteAfter;
    CountUp(s_Record.fileCount);
    return true;
}

} // namespace

CrashRecord& dbGetCrashRecord() { return s_Record; }

void dbAddReportText(const char* pText) {
    if (!AddText(std::string_view(pText).substr(0, s_dbMaxReportTextLength)))
        dbStop("too many texts for the crash report");
}

void dbAddReportFile(const char* pName, bool deleteAfter) {
    if (!AddFile(pName, deleteAfter))
        dbStop("too many files for the crash report, or too long a name");
}

void dbRemoveReportFile(const char* pName) {
    const std::lock_guard lock(s_ListMutex);
    CrashReportFile* pFile = FindFile(pName);
    if (!pFile)
        return;
    std::copy(pFile + 1, s_Record.files + s_Record.fileCount, pFile);
    --s_Record.fileCount;
}

std::vector<std::string> dbGetReportTexts() {
    const std::lock_guard lock(s_ListMutex);
    const std::span<Text> texts = GetTexts();
    return {texts.begin(), texts.end()};
}

std::vector<dbReportFile> dbGetReportFiles() {
    const std::lock_guard lock(s_ListMutex);
    std::vector<dbReportFile> files;
    for (const CrashReportFile& file : GetFiles())
        files.push_back({file.name, file.deleteAfter});
    return files;
}
