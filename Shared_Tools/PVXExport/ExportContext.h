#pragma once

#include <cstdint>
#include <string>

#include "Host/Sdk/Types.h"

// The options of one export, handed to every stage.
struct ExportContext {
    std::string m_OutputPath;     // alias path under "TOOL"
    bool m_ExportMeshes = true;   // write meshes and shaders, and take a scene without meshes for an error
    bool m_ExportAnimKeys = true; // sample and write animation
    bool m_XRefAsLocal = false;   // meshes of other scene files count as this scene's own
    bool m_ExportShaders = true;  // write shader and texture data; counts only with m_ExportMeshes
    std::string m_ModelName;
    TimeValue m_Time = 0;         // at which the scene is evaluated
    uint32_t m_XRefMeshCount = 0; // collected mesh nodes that come from other scene files
};
