#pragma once

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/RenderAnim/Chunks/PayloadWriter.h"
#include "Shared/Cross/RenderAnim/Motion/Action.h"
#include "Shared/Cross/RenderAnim/Motion/Chunks/MotionChunks.h"

namespace ra {

constexpr uint32_t GetActionTreeChunk(MotionForm form) {
    return form == MotionForm::Final ? FourCC("ACTS") : FourCC("ACTR");
}

void WriteActions(Chunky& chunky, PayloadWriter& writer, const ActionTree& actions, MotionForm form);
// The next chunk is the form's.
void ReadActions(Chunky& chunky, ActionTree& actions, MotionForm form);

} // namespace ra
