#pragma once

#include <memory>

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/RenderAnim/Intermediate/IntermediateLayout.h"

class AnimInterm;
class RenderModel;

namespace ra::intermediate {

constexpr uint32_t s_AnimVersion = 1;

// Throws std::runtime_error when the stream doesn't take all. Each bone has a name.
void WriteAnim(Chunky& chunky, const AnimInterm& anim);

// The next chunk is an "ANIM". A damaged one throws Chunky::Exception with the animation, the stream and the field.
//
// As it stands in the file: the bones in its order, whatever skeleton they are of.
std::unique_ptr<AnimInterm> ReadAnim(Chunky& chunky);
// For a model: the bones are those of its skeleton, by their indices. One that the skeleton lacks is logged and left
// out; a model without a skeleton throws std::runtime_error at the first bone.
std::unique_ptr<AnimInterm> ReadAnimOf(Chunky& chunky, const RenderModel& model);

} // namespace ra::intermediate
