#pragma once

#include <memory>
#include <optional>
#include <string>

#include <glm/vec3.hpp>

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/RenderAnim/Anim.h"
#include "Shared/Cross/RenderAnim/Chunks/PayloadWriter.h"

class AnimListNode;
class RenderModel;

namespace ra {

struct AnimBounds {
    glm::vec3 minimum = glm::vec3(0.0f);
    glm::vec3 maximum = glm::vec3(0.0f);
};

// An "ANIM" of the final form, as it lies in a file.
struct FinalAnimRecord {
    std::string name;
    std::unique_ptr<Anim> pAnim; // with its name; null when it is another model's
    std::string xrefModel;       // of one that is
    std::string xrefAnim;
    std::optional<AnimBounds> bounds;
};

// The streams of an own animation; of another model's the names alone.
void WriteFinalAnim(Chunky& chunky, PayloadWriter& writer, const AnimListNode& node);
// The next chunk is an "ANIM".
FinalAnimRecord ReadFinalAnimRecord(Chunky& chunky);
// Reads it into the inventory and the model's list. False, with a line in the log, for a model without a skeleton.
bool AppendFinalAnim(Chunky& chunky, const ChunkInfo& child, RenderModel& model);

} // namespace ra
