#pragma once

#include "Shared/Cross/Debug/CrashReport.h"
#include "Shared/PC/FileSystem/OSFile.h"

#include <string>

// Has a crash report take a file along; answers the name to take it back by, empty when the name is too long for the
// report's list. The reporter is a program of the machine, so it gets the machine's names.
inline std::string AddToReport(const std::string& fullName) {
    std::string native = OSFile::ToNative(fullName);
    if (native.size() > s_dbMaxReportFileLength)
        return {};
    dbAddReportFile(native.c_str(), false);
    return native;
}
