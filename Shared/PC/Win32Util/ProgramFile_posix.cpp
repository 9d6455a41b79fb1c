#include "Shared/PC/Win32Util/ProgramFile.h"

#include "Shared/PC/FileSystem/OSFile.h"

#include <filesystem>
#include <system_error>

ProgramCopy CopyProgram(const char* pFrom, const char* pTo) {
    namespace fs = std::filesystem;
    const fs::path from = OSFile::ToNative(pFrom);
    const fs::path to = OSFile::ToNative(pTo);
    std::error_code error;
    if (from.empty() || to.empty())
        return ProgramCopy::Failed;
    if (fs::exists(fs::symlink_status(to, error)))
        return ProgramCopy::NameTaken;
    if (fs::copy_file(from, to, error))
        fs::permissions(to, fs::perms::owner_all, fs::perm_options::add, error);
    if (!error)
        return ProgramCopy::Made;
    // Another process may have been quicker with the name; what stands there then isn't ours.
    if (error == std::errc::file_exists)
        return ProgramCopy::NameTaken;
    fs::remove(to, error);
    return ProgramCopy::Failed;
}
