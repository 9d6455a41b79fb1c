#include "Tools/pvxdump/Dump.h"

#include <memory>
#include <stdexcept>

#include <nlohmann/json.hpp>

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/RenderAnim/Files/SharedShaderLayout.h"
#include "Shared/Cross/RenderAnim/Intermediate/IntermediateLayout.h"
#include "Shared/Cross/TeamColour/PatternLayout.h"
#include "Tools/pvxdump/ChunkTree.h"
#include "Tools/pvxdump/ModelContent.h"
#include "Tools/pvxdump/ModelJson.h"
#include "Tools/pvxdump/ModelText.h"
#include "Tools/pvxdump/PatternDump.h"
#include "Tools/pvxdump/TextFormat.h"
#include "Tools/pvxdump/TextureFiles.h"

namespace {

using nlohmann::json;

std::string ToText(const json& value) {
    // Names in files have no fixed character set.
    return value.dump(1, '\t', false, json::error_handler_t::replace) + '\n';
}

std::string DumpChunks(ByteStream& stream, const std::string& file, const DumpOptions& options) {
    const std::vector<ChunkNode> nodes = ReadChunkTree(stream);
    if (options.json)
        return ToText({{"file", file}, {"size", stream.GetLength()}, {"chunks", ToJson(nodes)}});
    std::string out = file + ": " + TextFormat::Count(stream.GetLength(), "byte", "bytes") + ", " +
                      TextFormat::Count(nodes.size(), "chunk", "chunks") + '\n';
    PrintChunkTree(out, nodes);
    return out;
}

std::unique_ptr<TextureFiles> MakeTextureFiles(const DumpOptions& options) {
    return options.texturesFolder.empty() ? nullptr : std::make_unique<TextureFiles>(options.texturesFolder);
}

std::string DumpShaderFile(Chunky& chunky, const std::string& file, uint32_t size, const DumpOptions& options) {
    const ModelContent content = ReadShaderFileContent(chunky, MakeTextureFiles(options).get());
    if (!options.json) {
        std::string out = file + ": " + TextFormat::Count(size, "byte", "bytes") + ", ";
        PrintShaderFile(out, content);
        return out;
    }
    json out = ShaderFileToJson(content);
    out["file"] = file;
    out["size"] = size;
    return ToText(out);
}

std::string DumpModel(Chunky& chunky, const std::string& file, uint32_t size, const DumpOptions& options) {
    const ModelContent content = ReadModelContent(chunky, options.vertices, MakeTextureFiles(options).get());
    if (!options.json) {
        std::string out = file + ": " + TextFormat::Count(size, "byte", "bytes") + ", ";
        PrintModel(out, content);
        return out;
    }
    json out = ToJson(content, options.vertices, options.keys);
    out["file"] = file;
    out["size"] = size;
    return ToText(out);
}

// The kinds of files by their top chunk. The first one that is known decides; others, such as a burner's note, may
// stand around it.
struct FileKind {
    uint32_t topChunk;
    uint32_t newestVersion;
    const char* pWords;
    std::string (*pDump)(Chunky& chunky, const std::string& file, uint32_t size, const DumpOptions& options);
};
constexpr FileKind s_Kinds[] = {
    {ra::s_ModelChunk, ra::s_ModelVersion, "model", DumpModel},
    {ra::s_SharedShaderFileChunk, ra::s_SharedShaderFileVersion, "shader file", DumpShaderFile},
    {s_PatternChunk, s_PatternVersion, "pattern", DumpPattern},
};

std::string DumpContent(ByteStream& stream, const std::string& file, const DumpOptions& options) {
    Chunky chunky{ByteStreamAdapter(&stream)};
    for (ChunkInfo info; chunky.NextChunk(info);)
        for (const FileKind& kind : s_Kinds) {
            if (info.id != kind.topChunk)
                continue;
            if (info.version > kind.newestVersion)
                throw std::runtime_error("the " + std::string(kind.pWords) + " has version " +
                                         std::to_string(info.version) + ", this build decodes up to " +
                                         std::to_string(kind.newestVersion) + "; --chunks shows its chunks");
            std::string out = kind.pDump(chunky, file, stream.GetLength(), options);
            // To the last byte: what follows has to be sound too.
            while (chunky.NextChunk(info)) {
            }
            return out;
        }
    throw std::runtime_error("holds nothing that this build decodes; --chunks shows its chunks");
}

} // namespace

std::string DumpFile(ByteStream& stream, const std::string& file, const DumpOptions& options) {
    return options.chunks ? DumpChunks(stream, file, options) : DumpContent(stream, file, options);
}
