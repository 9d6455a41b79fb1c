#include "Shared_Tools/BurnerImp/Services.h"

#include "Shared/Cross/Assist/Inventory.h"
#include "Shared/Cross/FileSystem/Paths/FilePathHDRaw.h"
#include "Shared/Cross/Glaze/Device.h"
#include "Shared/Cross/Pipeline/Pipeline.h"
#include "Shared/Cross/RenderAnim/Files/ResourceLoaders.h"
#include "Shared/Cross/RenderAnim/Generic/GenericFile.h"
#include "Shared/Cross/RenderAnim/LoadSwitch.h"
#include "Shared/PC/FileSystem/OSFile.h"

#include <memory>
#include <stdexcept>

namespace {

constexpr const char* s_ToolAlias = "TOOL";
constexpr const char* s_ToolSource = "HD";
constexpr int32_t s_ToolPriority = 99;

} // namespace

BurnServices::BurnServices(const std::string& pipelineFile) {
    try {
        Start(pipelineFile);
    } catch (...) {
        Stop();
        throw;
    }
}

BurnServices::~BurnServices() { Stop(); }

void BurnServices::Start(const std::string& pipelineFile) {
    if ((OSFile::FileAttr(pipelineFile.c_str()) & OSFile::F_ATTRIBUTE_FILE) == 0)
        throw std::runtime_error("there is no pipeline configuration '" + pipelineFile + "'");
    if (Pipeline::Initialize(pipelineFile.c_str()) != Pipeline::Result_Ok)
        throw std::runtime_error("the pipeline configuration can't be used: " + Pipeline::GetInitializeError());
    if (!FilePath::AddSource(s_ToolAlias, s_ToolSource, s_ToolPriority, std::make_shared<FilePathHDRaw>(true)))
        throw std::runtime_error("unable to add the alias 'TOOL'");
    std::string folder;
    if (!Pipeline::Get()->GetPath("Global", "ToolsData", folder))
        throw std::runtime_error("'ToolsData' is not listed under [Global] in " + pipelineFile);
    if (!m_ToolsData.Map())
        throw std::runtime_error("the tools' data '" + folder + "' can't be mapped");
    gz::DeviceConfig config;
    config.name = "Null";
    if (!gz::Start(config))
        throw std::runtime_error("there is no device 'Null'");
    Inv::Initialize();
    ra::SetGenericLoad(true);
    ra::InstallResourceLoaders();
    ra::InstallGenericModelLoader();
}

void BurnServices::Stop() {
    if (Inv::IsInitialized())
        Inv::Shutdown();
    gz::Stop();
    m_ToolsData.Unmap();
    FilePath::RemoveSource(s_ToolAlias, s_ToolSource);
    if (Pipeline::IsInitialized())
        Pipeline::Shutdown();
}
