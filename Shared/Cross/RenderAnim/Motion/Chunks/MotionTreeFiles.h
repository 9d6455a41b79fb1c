#pragma once

#include "Shared/Cross/RenderAnim/Motion/Chunks/MotionChunks.h"
#include "Shared/Cross/RenderAnim/Motion/MotionParts.h"

// Motion lists and action trees in files of their own, by which they go from one model to another. Each takes along
// what it refers to, as far as that may be missing in the other model.

namespace ra {

// The files' tops.
constexpr uint32_t s_MotionListFileChunk = FourCC("ERML");
constexpr uint32_t s_ActionTreeFileChunk = FourCC("ERTR");
constexpr uint32_t s_MotionTreeFileVersion = 1; // of both

// Under an alias path. False, with a line in the log, when it can't be written; what stood there is still there then.
bool ExportMotionList(const char* pPath, const ConstMotionParts& parts);
bool ExportActionTree(const char* pPath, const ConstMotionParts& parts);

// Puts the file's motions, or actions, in place of the model's. Of what they refer to, the model's own counts where a
// name is known to both; references that are missing afterwards are logged and left out. False, with a line in the log
// and the model as it was, when the file can't be read.
bool ImportMotionList(const char* pPath, const MotionParts& parts, const MotionContext& context);
bool ImportActionTree(const char* pPath, const MotionParts& parts, const MotionContext& context);

} // namespace ra
