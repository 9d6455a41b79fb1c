#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <glm/gtc/quaternion.hpp>
#include <glm/vec3.hpp>

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/RenderAnim/Chunks/ModelLayout.h"
#include "Shared/Cross/RenderAnim/Chunks/PayloadWriter.h"

class Skeleton;

namespace ra::generic {

// A bone as it lies in a file, relative to its parent.
struct BoneRecord {
    std::string name;
    int32_t parent = -1; // -1 for none, otherwise another bone of the skeleton
    glm::vec3 position = glm::vec3(0.0f);
    glm::quat rotation = glm::quat(1.0f, 0.0f, 0.0f, 0.0f);
};

void WriteSkeleton(Chunky& chunky, PayloadWriter& writer, const Skeleton& skeleton);
// The next chunk is a "SKEL", a folder.
std::vector<BoneRecord> ReadBoneRecords(Chunky& chunky);
// With the world's matrices that follow from the local data. Parents stand ahead of their children; a bone that stands
// ahead of its parent comes out wrong.
std::unique_ptr<Skeleton> BuildSkeleton(const std::vector<BoneRecord>& bones);

} // namespace ra::generic
