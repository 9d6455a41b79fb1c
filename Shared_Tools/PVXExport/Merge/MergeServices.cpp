#include "Shared_Tools/PVXExport/Merge/MergeServices.h"

#include <memory>
#include <string>

#include "Shared/Cross/Assist/Inventory.h"
#include "Shared/Cross/Debug/Log/ProcessLog.h"
#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/FileSystem/Paths/FilePathHDRaw.h"
#include "Shared/Cross/Glaze/Device.h"
#include "Shared/Cross/Pipeline/Pipeline.h"
#include "Shared/Cross/Pipeline/ToolsData.h"
#include "Shared/Cross/RenderAnim/Files/ResourceLoaders.h"
#include "Shared/Cross/RenderAnim/Generic/GenericFile.h"

namespace {

constexpr const char* s_ToolAlias = "TOOL";
constexpr const char* s_ToolSource = "HD";
constexpr int32_t s_ToolPriority = 99;

constexpr int s_LogFailed = -1;

// What is mapped for as long as the services are up.
struct Mappings {
    ToolsData toolsData;
    Pipeline::Mapper generic;

    void Release() {
        toolsData.Unmap();
        generic = {};
    }
};

// Never destroyed: what a failed merge has left must not be unmapped among the statics of a process that ends.
Mappings& GetMappings() {
    static Mappings* const s_pMappings = new Mappings;
    return *s_pMappings;
}

// Up to the first point, even one of a folder's name: whoever looks for the log knows where it has always been.
std::string LogNameFor(const std::string& modelFile) {
    const size_t pExt = modelFile.find('.');
    dbAssertText(pExt != modelFile.npos, "pExt");
    return modelFile.substr(0, pExt) + ".log";
}

void OpenLog(const std::string& modelFile) {
    const std::string logName = LogNameFor(modelFile);
    // Of a merge that failed; the reset has taken down all the rest.
    ProcessLog::Close(s_LogFailed);
    ProcessLog::Open(logName.c_str(), true);
}

bool MapProject(const std::string& modelFile) {
    const std::string fullPath = Pipeline::GetFullPath(modelFile.c_str());
    const char* const pProject = Pipeline::Get()->FindProjectForFile(fullPath.c_str(), Pipeline::Kind_Intermediate);
    if (!pProject) {
        dbWarningf("PIPELINE -- '%s' lies in the intermediate folder of no project of '%s'", modelFile.c_str(),
                   Pipeline::Get()->GetIniFile());
        return false;
    }
    GetMappings().generic = Pipeline::Get()->CreateMapper(pProject, Pipeline::Kind_Generic, false);
    GetMappings().generic.Map();
    return true;
}

} // namespace

bool AniMergeStartup(const char* pModelFile) {
    dbAssertText(!Pipeline::IsInitialized(), "s_instance == NULL");
    const std::string modelFile = pModelFile;
    GetMappings().Release();
    OpenLog(modelFile);
    if (!FilePath::AddSource(s_ToolAlias, s_ToolSource, s_ToolPriority, std::make_shared<FilePathHDRaw>(false)))
        return false;
    // Why it fails, if it does, is in the log.
    if (Pipeline::Initialize(Pipeline::GetFullPath(pModelFile).c_str()) != Pipeline::Result_Ok)
        return false;
    if (!GetMappings().toolsData.Map() || !MapProject(modelFile))
        return false;
    gz::DeviceConfig config;
    config.name = "Null";
    gz::Start(config);
    Inv::Initialize();
    ra::InstallResourceLoaders();
    ra::InstallGenericModelLoader();
    return true;
}

void AniMergeShutdown(int exitCode) {
    // A fault on the way down must not keep the rest up.
    const dbNoThrowScope noThrow;
    if (Inv::IsInitialized())
        Inv::Shutdown();
    gz::Stop();
    FilePath::RemoveSource(s_ToolAlias, s_ToolSource);
    GetMappings().Release();
    if (Pipeline::IsInitialized())
        Pipeline::Shutdown();
    ProcessLog::Close(exitCode);
}
