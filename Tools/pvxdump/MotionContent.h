#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/RenderAnim/Motion/MotionParts.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"
#include "Tools/pvxdump/AnimContent.h"
#include "Tools/pvxdump/ModelContent.h"

// What a motion file holds, or a motion list, an action tree or an event in a file of its own; with all references,
// wherever they lead.
struct MotionContent : ra::MotionLists {
    const char* pKind = ""; // in words
    uint32_t version = 0;
    DataLevel level = DataLevel::Generic;
    std::vector<AnimationContent> animations;
    std::optional<SelectionInfo> selection;
    UndecodedChunks undecoded;
};

// The next chunk is the folder at the top of such a file, which `top` describes, or an "EVNT".
MotionContent ReadMotionContent(Chunky& chunky, const ChunkInfo& top, const char* pKind);
