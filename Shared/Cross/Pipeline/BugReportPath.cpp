#include "Shared/Cross/Pipeline/BugReportPath.h"

#include "Shared/Cross/Debug/CrashFilter.h"
#include "Shared/Cross/Pipeline/Pipeline.h"
#include "Shared/PC/FileSystem/OSFile.h"

void SetBugReportPath(const Pipeline& pipeline) {
    std::string path;
    pipeline.GetPath("bugreport", "ExePath", path);
    // The folder counts, which is all up to the last separator; the crash filter goes by the machine's names.
    path.erase(path.find_last_of("\\/:") + 1);
    std::string folder = path.empty() ? path : OSFile::ToNative(path);
    if (!folder.empty() && !folder.ends_with('/'))
        folder += '/';
    dbSetBugReportPath(folder.c_str(), nullptr);
}
