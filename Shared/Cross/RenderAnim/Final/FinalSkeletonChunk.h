#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <glm/gtc/quaternion.hpp>
#include <glm/vec3.hpp>

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/RenderAnim/Chunks/PayloadWriter.h"

class Skeleton;

namespace ra {

// A bone at rest, relative to its parent.
struct FinalBoneRecord {
    std::string name;
    int32_t parent = -1; // -1 for none, otherwise another bone of the skeleton
    glm::vec3 position = glm::vec3(0.0f);
    glm::quat rotation = glm::quat(1.0f, 0.0f, 0.0f, 0.0f);
};

void WriteFinalSkeleton(Chunky& chunky, PayloadWriter& writer, const Skeleton& skeleton);
// The next chunk is a "SKEL" of the final form.
std::vector<FinalBoneRecord> ReadFinalBoneRecords(Chunky& chunky);
// With the places in the world that follow from it.
std::unique_ptr<Skeleton> BuildFinalSkeleton(const std::vector<FinalBoneRecord>& bones);

} // namespace ra
