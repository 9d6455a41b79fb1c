#pragma once

#include <memory>
#include <string>
#include <vector>

#include <glm/mat4x3.hpp>

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/RenderAnim/Chunks/ModelLayout.h"
#include "Shared/Cross/RenderAnim/Chunks/PayloadWriter.h"

class Skeleton;

namespace ra::intermediate {

using ra::s_SkeletonChunk;

struct BoneRecord {
    std::string name;
    int32_t parent = -1;                       // -1 for none, otherwise another bone of the skeleton
    glm::mat4x3 transform = glm::mat4x3(1.0f); // in the world
};

void WriteSkeleton(Chunky& chunky, PayloadWriter& writer, const Skeleton& skeleton);
// The next chunk is a "SKEL".
std::vector<BoneRecord> ReadBoneRecords(Chunky& chunky);
// With the local data that follows from the world's.
std::unique_ptr<Skeleton> BuildSkeleton(const std::vector<BoneRecord>& bones);

} // namespace ra::intermediate
