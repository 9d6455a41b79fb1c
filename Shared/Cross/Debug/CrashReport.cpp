#include "Shared/Cross/Debug/CrashReport.h"

#include "Shared/Cross/Debug/db.h"

#include <algorithm>
#include <mutex>
#include <string_view>

namespace {

std::mutex s_Mutex;
std::vector<std::string> s_Texts;
std::vector<dbReportFile> s_Files;

auto FindFile(std::string_view name) { return std::ranges::find(s_Files, name, &dbReportFile::name); }

bool AddText(std::string_view text) {
    const std::lock_guard lock(s_Mutex);
    if (std::ranges::find(s_Texts, text) != s_Texts.end())
        return true;
    if (s_Texts.size() == s_dbMaxReportTexts)
        return false;
    s_Texts.emplace_back(text);
    return true;
}

bool AddFile(std::string_view name, bool deleteAfter) {
    const std::lock_guard lock(s_Mutex);
    if (const auto it = FindFile(name); it != s_Files.end()) {
        it->deleteAfter = deleteAfter;
        return true;
    }
    if (s_Files.size() == s_dbMaxReportFiles || name.size() > s_dbMaxReportFileLength)
        return false;
    s_Files.push_back({std::string(name), deleteAfter});
    return true;
}

} // namespace

void dbAddReportText(const char* pText) {
    if (!AddText(std::string_view(pText).substr(0, s_dbMaxReportTextLength)))
        dbStop("too many texts for the crash report");
}

void dbAddReportFile(const char* pName, bool deleteAfter) {
    if (!AddFile(pName, deleteAfter))
        dbStop("too many files for the crash report, or too long a name");
}

void dbRemoveReportFile(const char* pName) {
    const std::lock_guard lock(s_Mutex);
    if (const auto it = FindFile(pName); it != s_Files.end())
        s_Files.erase(it);
}

std::vector<std::string> dbGetReportTexts() {
    const std::lock_guard lock(s_Mutex);
    return s_Texts;
}

std::vector<dbReportFile> dbGetReportFiles() {
    const std::lock_guard lock(s_Mutex);
    return s_Files;
}
