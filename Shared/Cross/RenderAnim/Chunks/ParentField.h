#pragma once

#include "Shared/Cross/RenderAnim/Chunks/PayloadReader.h"
#include "Shared/Cross/RenderAnim/Chunks/PayloadWriter.h"

class Skeleton;

namespace ra {

// The int32 by which all forms of skeletons name a bone's parent: its index, or -1 for none.
void WriteParent(PayloadWriter& writer, const Skeleton& skeleton, int32_t index);
// Another one of `count` bones.
int32_t ReadParent(PayloadReader& reader, int64_t index, int64_t count);

} // namespace ra
