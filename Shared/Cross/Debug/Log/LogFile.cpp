#include "Shared/Cross/Debug/Log/LogFile.h"

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/FileSystem/Paths/FilePathHD.h"
#include "Shared/Cross/Util/Hash.h"
#include "Shared/PC/Debug/Process.h"
#include "Shared/PC/FileSystem/OSFile.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <string_view>

namespace {

constexpr char s_Alias[] = "log:";
constexpr int s_MostNumberedNames = 9;
constexpr size_t s_PrintfSize = 2048;

bool IsUnderLog(std::string_view name) {
    const std::string_view alias = s_Alias;
    return std::ranges::equal(name.substr(0, alias.size()), alias, {}, ToLower);
}

// Whoever wants its logs elsewhere has mounted the alias by now. It stays mounted, for the process's other logs.
void MountLog() {
    if (FilePath::HasAlias(s_Alias))
        return;
    const std::string folder = OSFile::FromNative(Process::GetLogFolder());
    if (auto pSource = FilePathHD::Create(folder.c_str(), FilePath::Mode::Mode_Both))
        FilePath::AddSource("log", "Logs", 0, std::move(pSource));
}

// In lower case and without what a file name can't hold.
std::string CleanStem(std::string_view stem) {
    std::string clean(stem);
    std::ranges::transform(clean, clean.begin(), [](char c) {
        const bool forbidden = static_cast<unsigned char>(c) < ' ' || std::strchr("<>:\"/\\|?*", c);
        return forbidden ? '-' : ToLower(c);
    });
    return clean;
}

// The folder of this run, with a final backslash: all its logs lie together, those of other runs elsewhere.
std::string GetRunFolder() {
    static const time_t s_Start = Process::GetStartTime();
    std::tm local = {};
    localtime_r(&s_Start, &local);
    char folder[64];
    std::snprintf(folder, sizeof folder, "%04d-%02d-%02d.%02d-%02d-%02d\\", local.tm_year + 1900, local.tm_mon + 1,
                  local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec);
    return folder;
}

bool IsFree(const std::string& name) { return FilePath::GetType(name.c_str()) == FilePath::Type_None; }

// Empty when all are taken.
std::string FindFreeName(const std::string& folder, const std::string& title, const char* pExt) {
    std::string name = s_Alias + folder + title + pExt;
    for (int number = 1; !IsFree(name); ++number) {
        if (number > s_MostNumberedNames)
            return {};
        char numbered[FilePath::MAXPATH + 1];
        std::snprintf(numbered, sizeof numbered, "%s%s%s.%d%s", s_Alias, folder.c_str(), title.c_str(), number, pExt);
        name = numbered;
    }
    return name;
}

} // namespace

LogFile::LogFile() = default;

LogFile::~LogFile() = default;

bool LogFile::Open(const char* pStem, const char* pExt, bool addLineEnd, bool sendWithReport) {
    dbAssertText(pStem && std::strlen(pStem), "name && strlen(name)");
    dbAssertText(pExt, "ext");
    if (!pStem || !*pStem || !pExt)
        return false;
    MountLog();
    const std::string name = FindFreeName(GetRunFolder(), CleanStem(pStem), pExt);
    if (name.empty()) {
        dbWarningf("LOG -- no free name for '%s%s'", pStem, pExt);
        return false;
    }
    return OpenStream(name, addLineEnd, sendWithReport);
}

bool LogFile::OpenAlias(const char* pName, bool addLineEnd, bool sendWithReport) {
    dbAssertText(pName && std::strlen(pName), "name && strlen(name)");
    if (!pName || !*pName)
        return false;
    std::string name = pName;
    if (name.find(':') == std::string::npos)
        name.insert(0, s_Alias);
    const size_t folderEnd = name.find_last_of(":\\/");
    if (name.find('.', folderEnd) == std::string::npos)
        name += ".txt";
    if (IsUnderLog(name))
        MountLog();
    return OpenStream(name, addLineEnd, sendWithReport);
}

bool LogFile::OpenStream(const std::string& name, bool addLineEnd, bool sendWithReport) {
    Close();
    m_pStream = FilePath::OpenStream(name.c_str(), FilePath::Mode::Mode_Write);
    if (!m_pStream) {
        dbWarningf("LOG -- unable to make '%s'", name.c_str());
        return false;
    }
    m_Name = name;
    m_AddLineEnd = addLineEnd;
    std::string fullName = name;
    if (sendWithReport && FilePath::GetFullName(fullName, FilePath::Mode::Mode_Write))
        m_Reported.Hold(fullName);
    return true;
}

bool LogFile::Write(const char* pText) {
    dbAssertText(m_pStream && pText, "m_pStream && text");
    return m_pStream && pText && m_pStream->WriteText(pText, m_AddLineEnd) && m_pStream->Flush();
}

bool LogFile::Printf(const char* pFormat, ...) {
    char text[s_PrintfSize];
    va_list arguments;
    va_start(arguments, pFormat);
    std::vsnprintf(text, sizeof text, pFormat, arguments);
    va_end(arguments);
    return Write(text);
}

void LogFile::Close() {
    m_pStream.reset();
    m_Name.clear();
    m_Reported.Release();
}
