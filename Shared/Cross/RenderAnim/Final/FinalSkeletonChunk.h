#pragma once

#include <vector>

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/RenderAnim/Chunks/PayloadWriter.h"
#include "Shared/Cross/RenderAnim/Generic/SkeletonChunk.h"

class Skeleton;

namespace ra {

void WriteFinalSkeleton(Chunky& chunky, PayloadWriter& writer, const Skeleton& skeleton);
// The next chunk is a "SKEL" of the final form. What it holds is what the generic form does.
std::vector<generic::BoneRecord> ReadFinalBoneRecords(Chunky& chunky);

} // namespace ra
