#pragma once

#include "Host/Sdk/Plugin.h"

// How the host finds the exporter and makes one for each export.
class PVXExportClassDesc : public ClassDesc2 {
public:
    bool IsPublic() const override { return true; }
    void* Create(bool loading) override; // a SceneExport, the caller's
    const char* ClassName() const override;
    SClass_ID SuperClassID() const override;
    Class_ID ClassID() const override;
    const char* Category() const override;
    const char* InternalName() const override { return "PVXExport"; }
    HINSTANCE HInstance() const override;
};

// The module's only one.
PVXExportClassDesc& GetPVXExportClassDesc();
