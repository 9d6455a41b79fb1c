#pragma once

#include <cstdint>

#include "Shared/Cross/RenderAnim/Motion/Chunks/MotionChunks.h"
#include "Shared/Cross/RenderAnim/Motion/MotionParts.h"

namespace ra {

// References to what isn't there are logged and taken out, from the object of that index on. An event that a motion
// wants and the model hasn't is loaded from its own file.
void CheckConditions(const MotionParts& parts, const MotionContext& context, uint32_t first);
void CheckMotions(const MotionParts& parts, const MotionContext& context, uint32_t first);
void CheckActions(const MotionParts& parts, const MotionContext& context, uint32_t first);

} // namespace ra
