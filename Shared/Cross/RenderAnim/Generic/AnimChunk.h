#pragma once

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/RenderAnim/Chunks/AnimRecord.h"
#include "Shared/Cross/RenderAnim/Chunks/ModelLayout.h"

class AnimListNode;
class RenderModel;

namespace ra::generic {

constexpr uint32_t s_AnimVersion = 2;

// An animation of the model's list: its streams for one of the model's own, its place for that of another model. Throws
// std::runtime_error when the stream doesn't take all.
void WriteAnim(Chunky& chunky, const RenderModel& model, const AnimListNode& node);

// The next chunk is an "ANIM". A damaged one throws Chunky::Exception or ByteStream::Exception with the animation, the
// stream and the field.
//
// As it stands in the file: the bones in its order, whatever skeleton they are of.
AnimRecord ReadAnimRecord(Chunky& chunky);
// Into the inventory and the model's list.
void AppendAnim(Chunky& chunky, RenderModel& model);

} // namespace ra::generic
