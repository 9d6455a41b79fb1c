#include "Tools/pvxdump/ChunkTree.h"

#include <limits>

#include <nlohmann/json.hpp>

#include "Tools/pvxdump/TextFormat.h"
#include "Tools/pvxdump/TextTable.h"

namespace {

constexpr uint32_t s_FileHeaderSize = 24;
constexpr uint32_t s_DeepestLevel = 200; // no file of this system comes near; one that does would go on for ever
constexpr uint32_t s_AnyVersion = std::numeric_limits<uint32_t>::max();

nlohmann::json ToJson(const ChunkNode& node) {
    return {{"kind", node.kind == ChunkKind_Folder ? "FOLD" : "DATA"},
            {"id", TextFormat::Code(node.id)},
            {"version", node.version},
            {"size", node.size},
            {"offset", node.offset},
            {"name", node.name}};
}

} // namespace

std::vector<ChunkNode> ReadChunkTree(ByteStream& stream) {
    Chunky chunky{ByteStreamAdapter(&stream)};
    std::vector<ChunkNode> nodes;
    // Where the next header of each open level begins.
    std::vector<uint32_t> places = {s_FileHeaderSize};
    while (true) {
        ChunkInfo info;
        if (!chunky.NextChunk(info)) {
            if (places.size() == 1)
                return nodes;
            places.pop_back();
            chunky.EndChunk();
            continue;
        }
        const auto depth = static_cast<uint32_t>(places.size()) - 1;
        const uint32_t dataPos = stream.GetPos();
        nodes.push_back({.kind = info.kind,
                         .id = info.id,
                         .version = info.version,
                         .size = info.size,
                         .offset = places.back(),
                         .depth = depth,
                         .name = std::string(info.name.GetView())});
        places.back() = dataPos + info.size;
        if (info.kind != ChunkKind_Folder)
            continue;
        if (depth == s_DeepestLevel)
            throw Chunky::Exception(ChunkyError_BadChunk, "chunks are nested more than 200 levels deep");
        chunky.EnterFolder(info.id, s_AnyVersion);
        places.push_back(dataPos);
    }
}

void PrintChunkTree(std::string& out, const std::vector<ChunkNode>& nodes) {
    using enum TextTable::Align;
    TextTable table({{"chunk"}, {"kind"}, {"version", Right}, {"bytes", Right}, {"offset", Right}, {"name"}});
    for (const ChunkNode& node : nodes)
        table.AddRow({std::string(size_t{node.depth} * 2, ' ') + TextFormat::Code(node.id),
                      node.kind == ChunkKind_Folder ? "FOLD" : "DATA", std::to_string(node.version),
                      TextFormat::Count(node.size), TextFormat::Count(node.offset), TextFormat::Name(node.name)});
    table.Print(out, 0);
}

nlohmann::json ToJson(const std::vector<ChunkNode>& nodes) {
    // The open levels' lists, the innermost last; a level that ends goes into the last chunk of the one around it.
    std::vector<nlohmann::json> levels = {nlohmann::json::array()};
    const auto closeLevel = [&] {
        nlohmann::json children = std::move(levels.back());
        levels.pop_back();
        levels.back().back()["children"] = std::move(children);
    };
    for (const ChunkNode& node : nodes) {
        while (levels.size() > node.depth + 1)
            closeLevel();
        levels.back().push_back(ToJson(node));
        if (node.kind == ChunkKind_Folder)
            levels.push_back(nlohmann::json::array());
    }
    while (levels.size() > 1)
        closeLevel();
    return std::move(levels.front());
}
