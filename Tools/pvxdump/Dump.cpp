#include "Tools/pvxdump/Dump.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <optional>
#include <stdexcept>
#include <utility>

#include <nlohmann/json.hpp>

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/FileSystem/ChunkyReservedTypes.h"
#include "Shared/Cross/LuaConfig/ScriptChunk.h"
#include "Shared/Cross/RenderAnim/Chunks/TextureChunk.h"
#include "Shared/Cross/RenderAnim/Files/SharedShaderLayout.h"
#include "Shared/Cross/RenderAnim/Final/FinalLayout.h"
#include "Shared/Cross/RenderAnim/Motion/Chunks/EventChunk.h"
#include "Shared/Cross/RenderAnim/Motion/Chunks/MotionChunks.h"
#include "Shared/Cross/RenderAnim/Motion/Chunks/MotionTreeFiles.h"
#include "Shared/Cross/TeamColour/PatternLayout.h"
#include "Tools/pvxdump/ChunkTree.h"
#include "Tools/pvxdump/ModelContent.h"
#include "Tools/pvxdump/ModelJson.h"
#include "Tools/pvxdump/ModelText.h"
#include "Tools/pvxdump/MotionContent.h"
#include "Tools/pvxdump/MotionJson.h"
#include "Tools/pvxdump/MotionText.h"
#include "Tools/pvxdump/PatternDump.h"
#include "Tools/pvxdump/ScriptDump.h"
#include "Tools/pvxdump/TextFormat.h"
#include "Tools/pvxdump/TextureContent.h"
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

FileBurnInfo ReadBurnInfo(Chunky& chunky) {
    try {
        return ReadFileBurnInfo(chunky);
    } catch (const std::runtime_error& error) {
        throw std::runtime_error("who burned it can't be read (" + std::string(error.what()) +
                                 "); --chunks shows its chunks");
    }
}

json ToJson(const FileBurnInfo& info) {
    return {{"source", info.first}, {"burnerVersion", info.number}, {"user", info.second}, {"date", info.date}};
}

std::string ToLine(const FileBurnInfo& info) {
    return "burned from \"" + TextFormat::Name(info.first) + "\" by " + TextFormat::Name(info.second) + ", " +
           TextFormat::Name(info.date) + ", burner version " + std::to_string(info.number) + '\n';
}

struct FileKind;

// One file on its way to text. `top` and `kind` are what stands at its top.
struct Dumper {
    Chunky& chunky;
    const std::string& file;
    uint32_t size;
    const DumpOptions& options;
    const ChunkInfo& top;
    const FileKind& kind;
    const std::optional<FileBurnInfo>& burnInfo; // that stands ahead of it

    // The file's content, as `makeJson` gives it or as `print` appends it to a text, which it begins with a line that
    // sums it up.
    template <typename MakeJson, typename Print>
    std::string Finish(MakeJson makeJson, Print print) const {
        if (options.json)
            return FinishJson(makeJson());
        std::string content;
        print(content);
        return FinishText(std::move(content));
    }

private:
    std::string FinishJson(json content) const {
        content["file"] = file;
        content["size"] = size;
        if (burnInfo)
            content["burnInfo"] = ToJson(*burnInfo);
        return ToText(content);
    }
    std::string FinishText(std::string content) const {
        if (burnInfo)
            content.insert(content.find('\n') + 1, ToLine(*burnInfo));
        return file + ": " + TextFormat::Count(size, "byte", "bytes") + ", " + content;
    }
};

// A kind of file, by its top chunk.
struct FileKind {
    uint32_t topChunk;
    uint32_t newestVersion;
    const char* pWords;
    std::string (*pDump)(const Dumper& dumper);
};

std::string DumpModel(const Dumper& dumper) {
    const DumpOptions& options = dumper.options;
    const ModelContent content = ReadModelContent(dumper.chunky, options.vertices, MakeTextureFiles(options).get());
    return dumper.Finish([&] { return ToJson(content, options.vertices, options.keys); },
                         [&](std::string& out) { PrintModel(out, content); });
}

std::string DumpShaderFile(const Dumper& dumper) {
    const ModelContent content = ReadShaderFileContent(dumper.chunky, MakeTextureFiles(dumper.options).get());
    return dumper.Finish([&] { return ShaderFileToJson(content); },
                         [&](std::string& out) { PrintShaderFile(out, content); });
}

std::string DumpTextureFile(const Dumper& dumper) {
    const TextureContent content = ReadTextureContent(dumper.chunky, MakeTextureFiles(dumper.options).get());
    return dumper.Finish([&] { return TextureFileToJson(content); },
                         [&](std::string& out) { PrintTextureFile(out, content); });
}

std::string DumpMotionFile(const Dumper& dumper) {
    MotionContent content = ReadMotionContent(dumper.chunky, dumper.top, dumper.kind.pWords);
    return dumper.Finish([&] { return ToJson(content, dumper.options.keys); },
                         [&](std::string& out) { PrintMotionFile(out, content); });
}

std::string DumpPatternFile(const Dumper& dumper) {
    const PatternContent content = ReadPatternContent(dumper.chunky, dumper.file, dumper.options);
    return dumper.Finish([&] { return ToJson(content); }, [&](std::string& out) { PrintPattern(out, content); });
}

std::string DumpScriptFile(const Dumper& dumper) {
    const ScriptContent content = ReadScriptContent(dumper.chunky);
    return dumper.Finish([&] { return ToJson(content); }, [&](std::string& out) { PrintScript(out, content); });
}

// The first top chunk of these decides; others may stand around it.
constexpr FileKind s_Kinds[] = {
    {ra::s_ModelChunk, ra::s_FinalModelVersion, "model", DumpModel},
    {ra::s_MotionFileChunk, ra::s_MotionFileVersion, "motion file", DumpMotionFile},
    {ra::s_SharedShaderFileChunk, ra::s_SharedShaderFileVersion, "shader file", DumpShaderFile},
    {ra::s_TextureChunk, s_TextureVersion, "texture", DumpTextureFile},
    {ra::s_MotionListFileChunk, ra::s_MotionTreeFileVersion, "motion list", DumpMotionFile},
    {ra::s_ActionTreeFileChunk, ra::s_MotionTreeFileVersion, "action tree", DumpMotionFile},
    {ra::s_EventChunk, ra::s_EventVersion, "event", DumpMotionFile},
    {s_PatternChunk, s_PatternVersion, "pattern", DumpPatternFile},
    {s_ScriptChunk, s_ScriptVersion, "script", DumpScriptFile},
};

const FileKind* FindKind(const ChunkInfo& top) {
    const auto* const pKind = std::ranges::find(s_Kinds, top.id, &FileKind::topChunk);
    return pKind == std::end(s_Kinds) ? nullptr : pKind;
}

void CheckVersion(const ChunkInfo& top, const FileKind& kind) {
    if (top.version > kind.newestVersion)
        throw std::runtime_error("the " + std::string(kind.pWords) + " has version " + std::to_string(top.version) +
                                 ", this build decodes up to " + std::to_string(kind.newestVersion) +
                                 "; --chunks shows its chunks");
}

std::string DumpContent(ByteStream& stream, const std::string& file, const DumpOptions& options) {
    Chunky chunky{ByteStreamAdapter(&stream)};
    std::optional<FileBurnInfo> burnInfo;
    for (ChunkInfo info; chunky.NextChunk(info);) {
        const FileKind* const pKind = FindKind(info);
        if (pKind) {
            CheckVersion(info, *pKind);
            std::string out = pKind->pDump({chunky, file, stream.GetLength(), options, info, *pKind, burnInfo});
            // To the last byte: what follows has to be sound too.
            while (chunky.NextChunk(info)) {
            }
            return out;
        }
        if (info.kind == ChunkKind_Data && info.id == GetChunkyReservedCode(ChunkyReserved_FileBurnInfo))
            burnInfo = ReadBurnInfo(chunky);
    }
    throw std::runtime_error("holds nothing that this build decodes; --chunks shows its chunks");
}

} // namespace

std::string DumpFile(ByteStream& stream, const std::string& file, const DumpOptions& options) {
    return options.chunks ? DumpChunks(stream, file, options) : DumpContent(stream, file, options);
}
