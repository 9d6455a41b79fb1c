#include "Host/App/PipelineScope.h"

#include "Host/App/Messages.h"
#include "Shared/PC/FileSystem/OSFile.h"

namespace {

std::string GetFullPath(const std::string& nativeFile) {
    return Pipeline::GetFullPath(OSFile::FromNative(nativeFile).c_str());
}

const char* GetFolderWord(Pipeline::DataKind kind) {
    return kind == Pipeline::Kind_Intermediate ? "intermediate" : "generic";
}

std::string DescribeFault(int result, const std::string& nativeFile, const std::string& path) {
    if (result != Pipeline::Result_NoFile)
        return Pipeline::GetInitializeError();
    return nativeFile + ": lies in no project: there is no pipeline.ini in \"" +
           OSFile::ToNative(path.substr(0, path.rfind('\\'))) + "\" or above it";
}

} // namespace

PipelineScope::PipelineScope(const std::string& nativeFile) {
    const std::string path = GetFullPath(nativeFile);
    const int result = Pipeline::Initialize(path.c_str());
    if (result != Pipeline::Result_Ok)
        throw HostError(2, DescribeFault(result, nativeFile, path));
}

void PipelineScope::RequireInProject(const std::string& nativeFile, Pipeline::DataKind kind, const char* pAdvice) {
    if (!Pipeline::Get()->FindProjectForFile(GetFullPath(nativeFile).c_str(), kind))
        throw HostError(2, nativeFile + ": lies in the " + GetFolderWord(kind) + " folder of no project of \"" +
                               OSFile::ToNative(Pipeline::Get()->GetIniFile()) + "\"; " + pAdvice);
}
