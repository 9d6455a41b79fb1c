#pragma once

#include "Shared/Cross/RenderAnim/Anim.h"

class RenderModel;

namespace ra {
class MeshGroup;
}

namespace ra::intermediate {

// Makes a shader's values offsets to what the shader itself has. False for a stream that the model has no use for: that
// drives nothing of it, which is logged, has no keys, or never leaves 0, a mesh's visibility aside.
bool MakeOffsets(Anim::ControlStream& control, const RenderModel& model, const char* pAnimName);

// One key of 0 for each mesh whose visibility isn't driven.
void AddMissingVisibility(Anim& anim, const MeshGroup& group);

} // namespace ra::intermediate
