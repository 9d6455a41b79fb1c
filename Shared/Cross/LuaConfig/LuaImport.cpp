#include "Shared/Cross/LuaConfig/LuaImport.h"

#include "Shared/Cross/FileSystem/ByteStream.h"
#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/FileSystem/Paths/FilePathHDRaw.h"
#include "Shared/Cross/FileSystem/Paths/FilePathUtil.h"
#include "Shared/Cross/LuaConfig/LuaBridge.h"
#include "Shared/Cross/LuaConfig/LuaConfig.h"

namespace {

// Leaves the script's function or an error on the stack.
int LoadImported(lua_State* pState, LuaConfig& self, const char* pName) {
    try {
        const std::unique_ptr<ByteStream> pStream = self.GetCallbacks().import(pName);
        std::string text;
        if (pStream && LuaImport::Importer(*pStream).Read(text))
            return LuaBridge::LoadText(pState, text, std::string("@") + pName);
        self.Report("Failed to import lua file '%s'", pName);
        luaL_where(pState, 1);
        lua_pushfstring(pState, "failed to import '%s', file failed to open", pName);
        lua_concat(pState, 2);
    } catch (const std::exception& error) {
        lua_pushstring(pState, error.what());
    }
    return LUA_ERRFILE;
}

int Import(lua_State* pState) {
    if (lua_type(pState, 1) != LUA_TSTRING)
        return luaL_error(pState, "import called without valid parameters");
    LuaConfig* pSelf = LuaConfig::FromState(pState);
    if (!pSelf)
        return luaL_error(pState, "import called without valid self");
    if (!pSelf->GetCallbacks().import)
        return luaL_error(pState, "import not set for this state");
    if (LoadImported(pState, *pSelf, lua_tostring(pState, 1)) != 0)
        return lua_error(pState);
    lua_call(pState, 0, 0);
    return 0;
}

bool IsRelative(const char* pName) {
    const bool hasDrive = pName[0] != '\0' && pName[1] == ':';
    return !hasDrive && pName[0] != '\\' && pName[0] != '/' && !FilePathUtil::HasAlias(pName);
}

} // namespace

void LuaImport::AddFunction(lua_State* pState) { lua_register(pState, "import", Import); }

void LuaImport::SetFileImport(LuaConfig& config, const std::string& folder) {
    config.GetCallbacks().import = [folder](const char* pName) -> std::unique_ptr<ByteStream> {
        const std::string name = IsRelative(pName) ? folder + pName : pName;
        if (FilePathUtil::HasAlias(name.c_str()))
            return FilePath::OpenStream(name.c_str(), ByteStream::Mode_Read);
        return FilePathHDRaw(true).Open(name.c_str(), ByteStream::Mode_Read);
    };
}

bool LuaImport::Importer::Read(std::string& text, size_t blockSize) const {
    text.clear();
    for (;;) {
        const size_t before = text.size();
        text.resize(before + blockSize);
        const uint32_t got = m_Stream.Read(text.data() + before, static_cast<uint32_t>(blockSize));
        text.resize(before + got);
        if (got == 0)
            return true;
        if (text.size() > s_MaxText)
            return false;
    }
}
