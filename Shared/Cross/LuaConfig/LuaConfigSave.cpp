#include "Shared/Cross/LuaConfig/LuaConfigSave.h"

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/FileSystem/Paths/FilePathHDRaw.h"
#include "Shared/Cross/FileSystem/Paths/FilePathUtil.h"
#include "Shared/Cross/FileSystem/RamStream.h"
#include "Shared/Cross/LuaConfig/LuaConfig.h"
#include "Shared/Cross/LuaConfig/LuaExtension.h"
#include "Shared/Cross/LuaConfig/LuaImport.h"
#include "Shared/Cross/LuaConfig/LuaWriter.h"
#include "Shared/Cross/LuaConfig/ScriptChunk.h"

namespace {

constexpr size_t s_ReadSize = 2048;

bool HasAlias(const char* pPath) { return FilePathUtil::HasAlias(pPath); }

std::unique_ptr<ByteStream> OpenFile(const char* pPath) {
    if (HasAlias(pPath))
        return FilePath::OpenStream(pPath, ByteStream::Mode_Read);
    return FilePathHDRaw(true).Open(pPath, ByteStream::Mode_Read);
}

bool WriteOut(const std::string& text, ByteStream& stream) {
    return stream.Write(text.data(), static_cast<uint32_t>(text.size())) == text.size() && stream.Flush();
}

bool WriteGlobals(LuaConfig& config, LuaWriter& writer) {
    const LuaExtension::StackScope scope(config.GetState());
    lua_pushvalue(config.GetState(), LUA_GLOBALSINDEX);
    return writer.WriteEntry("", 0, false);
}

bool WriteNamed(LuaConfig& config, const char* pName, LuaWriter& writer) {
    if (!LuaExtension::CheckKey(pName))
        return false;
    lua_State* pState = config.GetState();
    const LuaExtension::StackScope scope(pState);
    LuaExtension::PushWalked(pState, lua_gettop(pState));
    LuaExtension::PushKey(pState, pName);
    lua_rawget(pState, -2);
    return writer.WriteEntry(pName, 0, false);
}

} // namespace

bool LuaConfigSave::LoadFromStream(LuaConfig& config, ByteStream& stream) {
    std::string text;
    if (LuaImport::Importer(stream).Read(text, s_ReadSize))
        return config.RunText(text, stream.GetName());
    config.Report("[%s] the script is too long", stream.GetName());
    return false;
}

bool LuaConfigSave::LoadFromFile(LuaConfig& config, const char* pPath) {
    if (const std::unique_ptr<ByteStream> pStream = OpenFile(pPath))
        return LoadFromStream(config, *pStream);
    config.Report("Failed to load lua file '%s'", pPath);
    return false;
}

bool LuaConfigSave::SaveToStream(LuaConfig& config, bool indent, bool sorted, ByteStream& stream) {
    LuaWriter writer(config, indent, sorted);
    return WriteGlobals(config, writer) && WriteOut(writer.GetText(), stream);
}

bool LuaConfigSave::SaveToFile(LuaConfig& config, bool indent, bool sorted, const char* pPath) {
    const std::unique_ptr<FileReplacement> pFile =
        HasAlias(pPath) ? FilePath::ReplaceFile(pPath) : FilePathHDRaw(false).Replace(pPath);
    return pFile && SaveToStream(config, indent, sorted, pFile->GetStream()) && pFile->Finish();
}

bool LuaConfigSave::SaveTableToStream(LuaConfig& config, const char* pName, bool indent, bool sorted,
                                      ByteStream& stream) {
    LuaWriter writer(config, indent, sorted);
    return WriteNamed(config, pName, writer) && WriteOut(writer.GetText(), stream);
}

bool LuaConfigSave::WriteTable(LuaConfig& config, const char* pName, bool indent, bool sorted, ByteStream& stream) {
    if (config.GetType(pName) != LuaConfig::Type_Table) {
        config.Report("Failed to write lua table.  %s is not a table.", pName);
        return false;
    }
    if (SaveTableToStream(config, pName, indent, sorted, stream))
        return true;
    config.Report("Failed to write lua table to ram stream");
    return false;
}

bool LuaConfigSave::SaveToChunky(LuaConfig& config, Chunky& chunky) {
    LuaWriter writer(config, false, false);
    const bool isWhole = WriteGlobals(config, writer);
    if (isWhole) {
        const std::string& text = writer.GetText();
        chunky.BeginData(s_ScriptChunk, s_ScriptVersion, "LuaConfig Chunky");
        const bool written = chunky.GetStream().Write(text.data(), static_cast<uint32_t>(text.size())) == text.size();
        chunky.EndChunk();
        if (written)
            return true;
    }
    config.Report("Failed to save lua file to chunky");
    return false;
}

bool LuaConfigSave::LoadFromChunky(LuaConfig& config, Chunky& chunky) {
    const ChunkInfo info = chunky.EnterData(s_ScriptChunk, s_ScriptVersion);
    std::string text(info.size, '\0');
    text.resize(chunky.GetStream().Read(text.data(), info.size));
    chunky.EndChunk();
    return config.RunText(text, chunky.GetStream().GetName());
}

bool LuaConfigSave::SurvivesSave(const std::string& text) {
    const std::string encoded = LuaWriter::EncodeString(text);
    if (encoded != text || text.find('\r') != std::string::npos)
        return false;
    return !LuaWriter::NeedsBrackets(encoded) ||
           (text.find("[[") == std::string::npos && text.find("]]") == std::string::npos && text.back() != ']');
}
