// What the host finds in the module by name.

#include <cstdint>

#include "Host/Sdk/Core.h"
#include "Host/Sdk/Plugin.h"
#include "Shared_Tools/PVXExport/ModuleResources.h"
#include "Shared_Tools/PVXExport/PVXExportClassDesc.h"
#include "Shared_Tools/PVXExport/PVXUtil.h"

namespace {

bool s_ControlsInitialised = false;

} // namespace

extern "C" {

__attribute__((visibility("default"))) bool DllMain(HINSTANCE handle, uint32_t reason, void*) {
    PVXUtil::SetDLLInstance(handle);
    if (reason == DLL_PROCESS_ATTACH)
        RegisterModuleResources(handle);
    if (!s_ControlsInitialised) {
        s_ControlsInitialised = true;
        InitCustomControls(handle);
        InitCommonControls();
    }
    return true;
}

__attribute__((visibility("default"))) const char* LibDescription() { return PVXUtil::GetString(IDS_LIB_DESCRIPTION); }

__attribute__((visibility("default"))) int LibNumberClasses() { return 1; }

__attribute__((visibility("default"))) ClassDesc* LibClassDesc(int index) {
    return index == 0 ? &GetPVXExportClassDesc() : nullptr;
}

__attribute__((visibility("default"))) uint32_t LibVersion() { return SdkVersionWord; }

} // extern "C"
