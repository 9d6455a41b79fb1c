#include "Shared_Tools/PVXExport/PVXExport.h"

#include <stdexcept>
#include <string>

#include "Host/Sdk/Core.h"
#include "Host/Sdk/Interface.h"
#include "Host/Sdk/Listener.h"
#include "Shared/Cross/Assist/Inventory.h"
#include "Shared/Cross/Debug/Log/ProcessLog.h"
#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/FileSystem/Paths/FilePathHDRaw.h"
#include "Shared/Cross/Glaze/Device.h"
#include "Shared/Cross/RenderAnim/AnimListGeneric.h"
#include "Shared/Cross/RenderAnim/Intermediate/IntermediateFile.h"
#include "Shared/Cross/RenderAnim/MeshGroup.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"
#include "Shared/Cross/Util/Hash.h"
#include "Shared_Tools/PVXExport/AnimSampling.h"
#include "Shared_Tools/PVXExport/ExportContext.h"
#include "Shared_Tools/PVXExport/ExportDialogs.h"
#include "Shared_Tools/PVXExport/MeshBuilder.h"
#include "Shared_Tools/PVXExport/MeshGroupBuilder.h"
#include "Shared_Tools/PVXExport/ModelNodes.h"
#include "Shared_Tools/PVXExport/ModuleResources.h"
#include "Shared_Tools/PVXExport/PVXErrors.h"
#include "Shared_Tools/PVXExport/PVXUtil.h"
#include "Shared_Tools/PVXExport/SceneWalk.h"

namespace {

constexpr const char* s_ToolAlias = "TOOL";
constexpr const char* s_ToolSource = "HD";
constexpr int32_t s_ToolPriority = 99;

constexpr int s_LogSucceeded = 0;
constexpr int s_LogFailed = -1;

std::string LogNameFor(const char* pName) {
    const std::string name = pName;
    const size_t dot = name.rfind('.');
    dbAssertText(dot != name.npos, "pExt");
    return name.substr(0, dot) + ".log";
}

// A log that a cancelled export has left open is reported and stays, which is no reason to refuse this one.
void OpenLog(const char* pName) {
    const std::string logName = LogNameFor(pName);
    const dbNoThrowScope noThrow;
    ProcessLog::Open(logName.c_str(), true);
}

class WaitCursorScope {
public:
    WaitCursorScope() { SetCursor(Cursor::Wait); }
    ~WaitCursorScope() { SetCursor(Cursor::Arrow); }
    WaitCursorScope(const WaitCursorScope&) = delete;
    WaitCursorScope& operator=(const WaitCursorScope&) = delete;
};

} // namespace

const char* PVXExport::LongDesc() const { return PVXUtil::GetString(IDS_LONG_DESC); }
const char* PVXExport::ShortDesc() const { return PVXUtil::GetString(IDS_SHORT_DESC); }
const char* PVXExport::AuthorName() const { return PVXUtil::GetString(IDS_AUTHOR); }
const char* PVXExport::CopyrightMessage() const { return PVXUtil::GetString(IDS_COPYRIGHT); }

void PVXExport::ShowAbout(HWND hWnd) { ExportDialogs::ShowAbout(PVXUtil::GetDLLInstance(), hWnd); }

int PVXExport::DoExport(const char* pName, ExpInterface*, Interface* pInterface, bool suppressPrompts, uint32_t) {
    OpenLog(pName);
    try {
        ExportContext context;
        if (!Start(context, pName, pInterface, suppressPrompts))
            return 1;
        const int result = Run(context) ? 1 : 0;
        TearDown();
        ProcessLog::Close(s_LogSucceeded);
        return result;
    } catch (const std::exception& exception) {
        // What hasn't come up can't go down without a complaint, which belongs in the log and must not get in the way
        // of the rest.
        const dbNoThrowScope noThrow;
        dbWarningf("Export of '%s' failed: %s", pName, exception.what());
        PutListenerText((std::string(exception.what()) + "\n").c_str());
        TearDown();
        ProcessLog::Close(s_LogFailed);
        return 0;
    }
}

bool PVXExport::Start(ExportContext& context, const char* pName, Interface* pInterface, bool suppressPrompts) {
    DebugPrint("Exporting File %s...\n", pName);
    m_hInstance = PVXUtil::GetDLLInstance();
    m_Interface = pInterface;
    context.m_OutputPath = std::string(s_ToolAlias) + ":" + pName;
    PVXUtil::ModelNameFromPath(context.m_ModelName, pName);
    ReadFileProperties(context);
    if (!ChooseOptions(context, pName, suppressPrompts))
        return false;
    StartServices();
    return true;
}

// A property works by being there, whatever its value.
void PVXExport::ReadFileProperties(ExportContext& context) const {
    for (int i = 0; i < m_Interface->GetNumProperties(PROPSET_USERDEFINED); ++i) {
        const PROPSPEC* pSpec = m_Interface->GetPropertySpec(PROPSET_USERDEFINED, i);
        if (!pSpec || pSpec->ulKind == PRSPEC_PROPID || !EqualNoCase(pSpec->name, "IgnoreShaders"))
            continue;
        context.m_ExportShaders = false;
        PutListenerText("Exporter: IgnoreShaders property has turned off shaders!\n");
    }
}

bool PVXExport::ChooseOptions(ExportContext& context, const char* pName, bool suppressPrompts) const {
    if (!suppressPrompts)
        return ExportDialogs::AskOptions(m_hInstance, m_Interface->GetMAXHWnd(), context);
    context.m_XRefAsLocal = false;
    context.m_ExportMeshes = PVXUtil::IsReferenceFile(pName);
    context.m_ExportAnimKeys = !context.m_ExportMeshes;
    return true;
}

void PVXExport::StartServices() const {
    FilePath::AddSource(s_ToolAlias, s_ToolSource, s_ToolPriority, std::make_shared<FilePathHDRaw>(false));
    PVXErrors::Create(m_hInstance, m_Interface);
    gz::DeviceConfig config;
    config.name = "Null";
    if (!gz::Start(config))
        throw std::runtime_error("Unable to initialize GLAZE!");
    Inv::Initialize();
}

bool PVXExport::Run(ExportContext& context) {
    std::unique_ptr<RenderModel> pModel;
    {
        const WaitCursorScope waiting;
        SceneWalk::Collect(m_Interface->GetRootNode(), context, m_Scene);
        SceneWalk::SortMeshNodes(m_Scene);
        pModel = BuildRenderModel(context);
        if (pModel && pModel->GetMeshGroup())
            Save(*pModel, context);
    }
    PVXErrors& errors = PVXErrors::Get();
    errors.ShowDialog();
    const int32_t errorCount = errors.GetErrorCount();
    errors.Clear();
    return errorCount == 0;
}

std::unique_ptr<RenderModel> PVXExport::BuildRenderModel(ExportContext& context) {
    auto pModel = std::make_unique<RenderModel>();
    pModel->SetName(context.m_ModelName.c_str());
    pModel->SetAnimList(std::make_unique<AnimListGeneric>(*pModel));
    if (!MeshBuilder(m_Scene, context).BuildMeshes())
        return nullptr;
    ModelNodes::AddMarkers(m_Scene, context, *pModel);
    ModelNodes::AddCameras(m_Scene, context, *pModel);
    ModelNodes::BuildSkeleton(m_Scene);
    if (!MeshGroupBuilder::Build(m_Scene, context, *pModel))
        return nullptr;
    if (context.m_ExportAnimKeys && pModel->GetSkeleton()) {
        AnimSampling::Sample(m_Scene, context, *m_Interface, *pModel);
        if (!AnimSampling::RebindToMeshGroup(m_Scene, *pModel))
            return nullptr;
    }
    return pModel;
}

// The folder has to be there: an alias path names none that could be made here.
void PVXExport::Save(RenderModel& model, const ExportContext& context) const {
    ra::SaveIntermediate(context.m_OutputPath.c_str(), model, context.m_ExportMeshes, context.m_ExportAnimKeys,
                         context.m_ExportShaders);
}

void PVXExport::TearDown() {
    m_Scene.Clear();
    PVXErrors::Destroy();
    Inv::Shutdown();
    gz::Stop();
    FilePath::RemoveSource(s_ToolAlias, s_ToolSource);
    DebugPrint("======== end =============\n");
}
