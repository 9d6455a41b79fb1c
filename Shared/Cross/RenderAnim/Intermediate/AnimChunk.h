#pragma once

#include <memory>

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/RenderAnim/Intermediate/IntermediateLayout.h"

class AnimInterm;

namespace ra::intermediate {

constexpr uint32_t s_AnimVersion = 1;

// Throws std::runtime_error when the stream doesn't take all. Each bone has a name.
void WriteAnim(Chunky& chunky, const AnimInterm& anim);

// The next chunk is an "ANIM". A damaged one throws Chunky::Exception with the animation, the stream and the field.
// This is how it stands in the file: the bones in its order, whatever skeleton they are of. LocalAnim.h reads it for a
// model.
std::unique_ptr<AnimInterm> ReadAnim(Chunky& chunky);

} // namespace ra::intermediate
