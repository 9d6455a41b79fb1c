#include "Shared/Cross/Debug/Log/ReportedFile.h"

#include "Shared/Cross/Debug/CrashReport.h"
#include "Shared/PC/FileSystem/OSFile.h"

void ReportedFile::Hold(const std::string& fullName) {
    Release();
    // The reporter is a program of the machine, so it gets the machine's names.
    std::string native = OSFile::ToNative(fullName);
    if (native.size() > s_dbMaxReportFileLength)
        return;
    dbAddReportFile(native.c_str(), false);
    m_Name = std::move(native);
}

void ReportedFile::Release() {
    if (!m_Name.empty())
        dbRemoveReportFile(m_Name.c_str());
    m_Name.clear();
}
