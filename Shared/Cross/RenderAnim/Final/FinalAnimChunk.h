#pragma once

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/RenderAnim/Chunks/AnimRecord.h"
#include "Shared/Cross/RenderAnim/Chunks/PayloadWriter.h"

class AnimListNode;
class RenderModel;

namespace ra {

// The streams of an own animation; of another model's the names alone.
void WriteFinalAnim(Chunky& chunky, PayloadWriter& writer, const AnimListNode& node);
// The next chunk is an "ANIM".
AnimRecord ReadFinalAnimRecord(Chunky& chunky);
// Reads it into the inventory and the model's list. The model has a skeleton.
void AppendFinalAnim(Chunky& chunky, RenderModel& model);

} // namespace ra
