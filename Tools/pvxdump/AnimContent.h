#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/RenderAnim/Anim.h"
#include "Shared/Cross/RenderAnim/Chunks/AnimRecord.h"

// The levels of data that a file may be of.
enum class DataLevel { Intermediate, Generic, Final };
const char* GetText(DataLevel level);

// An animation of a file, as it stands there.
struct AnimationContent {
    std::string name;
    uint32_t version = 0;
    uint32_t size = 0; // bytes
    DataLevel level = DataLevel::Intermediate;
    std::unique_ptr<Anim> pAnim; // at the intermediate level an AnimInterm; null for another model's
    std::string xrefModel;
    std::string xrefAnim;
    std::optional<ra::AnimBounds> bounds;
};

// The next chunk is an "ANIM", which `child` describes; its version tells the level. Throws for damage and for a newer
// one.
AnimationContent ReadAnimationContent(Chunky& chunky, const ChunkInfo& child);
