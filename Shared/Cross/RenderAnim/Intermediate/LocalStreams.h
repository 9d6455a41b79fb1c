#pragma once

#include <memory>
#include <vector>

#include "Shared/Cross/RenderAnim/Anim.h"

class Skeleton;

namespace ra::intermediate {

// For each bone of a skeleton its matrices in the world; null for one without keys.
using WorldStreams = std::vector<std::unique_ptr<MatrixStream>>;

// Gives each animated bone its position and rotation relative to its parent, with the keys at the same times. A bone
// whose parent has no key for one of its own is logged and stays in the world there. Of a rotation's two signs each key
// has the one nearer to the key before it, and the first that nearer to the bone at rest.
void MakeLocalStreams(Anim& anim, const WorldStreams& world, const Skeleton& skeleton);

} // namespace ra::intermediate
