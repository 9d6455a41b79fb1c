#include "Tools/pvxdump/ScriptDump.h"

#include <algorithm>

#include <nlohmann/json.hpp>

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/LuaConfig/ScriptChunk.h"
#include "Tools/pvxdump/TextFormat.h"

ScriptContent ReadScriptContent(Chunky& chunky) {
    const ChunkInfo info = chunky.EnterData(s_ScriptChunk, s_ScriptVersion);
    ScriptContent content{
        .name = std::string(info.name.GetView()), .version = info.version, .text = std::string(info.size, '\0')};
    content.text.resize(chunky.GetStream().Read(content.text.data(), info.size));
    chunky.EndChunk();
    return content;
}

void PrintScript(std::string& out, const ScriptContent& content) {
    auto lineCount = static_cast<uint64_t>(std::ranges::count(content.text, '\n'));
    const bool endsInside = !content.text.empty() && content.text.back() != '\n';
    lineCount += endsInside ? 1 : 0;
    out += "script \"" + TextFormat::Name(content.name) + "\": " + TextFormat::Count(lineCount, "line", "lines") + '\n';
    if (content.text.empty())
        return;
    out += '\n';
    for (const char c : content.text)
        out += c == '\n' || c == '\t' ? std::string(1, c) : TextFormat::Name({&c, 1});
    if (endsInside)
        out += '\n';
}

nlohmann::json ToJson(const ScriptContent& content) {
    return {{"kind", "script"}, {"name", content.name}, {"version", content.version}, {"text", content.text}};
}
