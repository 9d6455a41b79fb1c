#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "Shared/Cross/FileSystem/Chunky.h"

// One chunk of a file, whatever it means.
struct ChunkNode {
    ChunkKind kind = ChunkKind_Data;
    uint32_t id = 0;
    uint32_t version = 0;
    uint32_t size = 0;   // bytes of payload
    uint32_t offset = 0; // of the header, from the start of the file
    uint32_t depth = 0;  // 0 at the top level
    std::string name;
};

// All chunks of a file in its order, a folder ahead of what it holds. Walks to the last byte; throws Chunky::Exception
// when the file is damaged.
std::vector<ChunkNode> ReadChunkTree(ByteStream& stream);

void PrintChunkTree(std::string& out, const std::vector<ChunkNode>& nodes);
// Nested as in the file.
nlohmann::json ToJson(const std::vector<ChunkNode>& nodes);
