#include "Shared_Tools/PVXExport/PVXExportClassDesc.h"

#include "Host/Sdk/ClassIds.h"
#include "Shared_Tools/PVXExport/ModuleResources.h"
#include "Shared_Tools/PVXExport/PVXExport.h"
#include "Shared_Tools/PVXExport/PVXUtil.h"

void* PVXExportClassDesc::Create(bool) {
    SceneExport* pExport = new PVXExport; // the host deletes it as what SuperClassID says
    return pExport;
}

const char* PVXExportClassDesc::ClassName() const { return PVXUtil::GetString(IDS_CLASS_NAME); }
SClass_ID PVXExportClassDesc::SuperClassID() const { return SCENE_EXPORT_CLASS_ID; }
Class_ID PVXExportClassDesc::ClassID() const { return Class_ID(0x43f317c7, 0x24937085); }
const char* PVXExportClassDesc::Category() const { return PVXUtil::GetString(IDS_CATEGORY); }
HINSTANCE PVXExportClassDesc::HInstance() const { return PVXUtil::GetDLLInstance(); }

PVXExportClassDesc& GetPVXExportClassDesc() {
    static PVXExportClassDesc s_ClassDesc;
    return s_ClassDesc;
}
