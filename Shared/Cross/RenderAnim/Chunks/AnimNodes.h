#pragma once

#include <cstdint>
#include <memory>

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/RenderAnim/AnimListNode.h"

class RenderModel;

// How animations that are read get into their model.

namespace ra {

// An animation can't be read into a model without a skeleton. Logs that, with the chunk's name.
bool CanHoldAnim(const RenderModel& model, const ChunkInfo& child);

// Enters an animation, which has its name, in the inventory, as the model's own.
std::unique_ptr<AnimListNode> MakeLocalNode(const RenderModel& model, std::unique_ptr<Anim> pAnim);
// An animation of another model, which is loaded at need. One that isn't there is logged, and an empty one of that name
// stands in for it. Null, with a line in the log, when the model has an animation of that name already.
std::unique_ptr<AnimListNode> MakeXRefNode(const RenderModel& model, const char* pXRefModel, const char* pAnimName);

// To the end of the model's list, which is made at need. `version` is that of the chunk that it came from.
void AddAnimNode(RenderModel& model, std::unique_ptr<AnimListNode> pNode, uint32_t version);

} // namespace ra
