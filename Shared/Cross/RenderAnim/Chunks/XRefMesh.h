#pragma once

#include <string>

#include "Shared/Cross/RenderAnim/ResourceRefs.h"

namespace ra {

// A mesh of another model, which is loaded at need. Empty when the model or the mesh isn't there.
MeshRef FindXRefMesh(const std::string& meshName, const std::string& modelName);
// The first mesh of the model that stands in for missing ones. Empty when that is missing, too.
MeshRef GetMissingMesh();

} // namespace ra
