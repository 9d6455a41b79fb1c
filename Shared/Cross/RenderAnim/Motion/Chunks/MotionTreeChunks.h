#pragma once

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/RenderAnim/Chunks/PayloadWriter.h"
#include "Shared/Cross/RenderAnim/Motion/Modifier.h"
#include "Shared/Cross/RenderAnim/Motion/Motion.h"

namespace ra {

constexpr uint32_t s_ModifierListChunk = FourCC("MODL");
constexpr uint32_t s_MotionTreeChunk = FourCC("MTRE");

void WriteModifiers(Chunky& chunky, PayloadWriter& writer, const ModifierList& modifiers);
// The next chunk is a "MODL".
void ReadModifiers(Chunky& chunky, ModifierList& modifiers);

void WriteMotions(Chunky& chunky, PayloadWriter& writer, const MotionList& motions);
// The next chunk is a "MTRE". One of the oldest kind is logged and gives no motions.
void ReadMotions(Chunky& chunky, MotionList& motions, const char* pModelName);

} // namespace ra
