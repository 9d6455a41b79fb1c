#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include <glm/vec3.hpp>

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/RenderAnim/Anim.h"
#include "Shared/Cross/RenderAnim/Chunks/PayloadWriter.h"

class AnimListNode;
class RenderModel;

// What the animations of the generic and the final form have in common.

namespace ra {

constexpr uint32_t s_XRefAnimChunk = FourCC("XREF");
constexpr uint32_t s_AnimBoundsChunk = FourCC("ANBV");

struct AnimBounds {
    glm::vec3 minimum = glm::vec3(0.0f);
    glm::vec3 maximum = glm::vec3(0.0f);
};

// An "ANIM" as it lies in a file: an animation of the model's own, or the place of another model's.
struct AnimRecord {
    std::string name;
    uint32_t version = 0;        // of the chunk
    std::unique_ptr<Anim> pAnim; // with its name; null when it is another model's
    std::string xrefModel;       // of one that is
    std::string xrefAnim;
    std::optional<AnimBounds> bounds;
};

// The names of a node that is another model's.
void WriteXRefAnim(Chunky& chunky, PayloadWriter& writer, const AnimListNode& node, uint32_t version);
// The next chunk is an "XREF", of that version or an older one, which comes back.
uint32_t ReadXRefAnim(Chunky& chunky, AnimRecord& record, uint32_t version);

// Nothing for a node without bounds.
void WriteAnimBounds(Chunky& chunky, PayloadWriter& writer, const AnimListNode& node);
// The next chunk is an "ANBV".
AnimBounds ReadAnimBounds(Chunky& chunky, const std::string& animName);

// Enters the animation in the inventory and the model's list; another model is loaded at need. One of another model
// whose name the list has already is logged and left out.
void AppendAnimRecord(RenderModel& model, AnimRecord record);

} // namespace ra
