#include "Shared/Cross/LuaConfig/LuaFunctions.h"

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/LuaConfig/LuaBridge.h"
#include "Shared/Cross/LuaConfig/LuaConfig.h"
#include "Shared/Cross/LuaConfig/LuaImport.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace {

using TextCallback = std::function<void(const char*)>;

// A callback is foreign code: what it throws must not get lost in the library.
void HandOver(lua_State* pState, const TextCallback& callback, const char* pText) {
    try {
        if (callback)
            callback(pText);
        else
            dbPrintf("LUA -- %s", pText);
        return;
    } catch (const std::exception& error) {
        lua_pushstring(pState, error.what());
    }
    lua_error(pState);
}

// "1, two": the arguments as the script's own tostring tells them, in one text on top of the stack.
const char* JoinArguments(lua_State* pState) {
    const int count = lua_gettop(pState);
    lua_pushliteral(pState, "");
    for (int i = 1; i <= count; ++i) {
        if (i > 1)
            lua_pushliteral(pState, "\t");
        lua_pushvalue(pState, lua_upvalueindex(1));
        lua_pushvalue(pState, i);
        lua_call(pState, 1, 1);
        if (!lua_isstring(pState, -1))
            luaL_error(pState, "Print called without valid parameters");
        lua_concat(pState, i > 1 ? 3 : 2);
    }
    return lua_tostring(pState, -1);
}

int PrintArguments(lua_State* pState) {
    if (lua_gettop(pState) == 0)
        return luaL_error(pState, "Print called without valid parameters");
    LuaConfig* pSelf = LuaConfig::FromState(pState);
    if (!pSelf)
        return luaL_error(pState, "Print called without valid self");
    HandOver(pState, pSelf->GetCallbacks().print, JoinArguments(pState));
    return 0;
}

template <TextCallback LuaConfig::Callbacks::*Member>
int PrintText(lua_State* pState) {
    const char* pText = luaL_checkstring(pState, 1);
    LuaConfig* pSelf = LuaConfig::FromState(pState);
    if (!pSelf)
        return luaL_error(pState, "Print called without valid self");
    HandOver(pState, pSelf->GetCallbacks().*Member, pText);
    return 0;
}

} // namespace

void LuaFunctions::AddReporters(lua_State* pState) {
    lua_register(pState, "_ALERT", &PrintText<&LuaConfig::Callbacks::alert>);
    lua_register(pState, "_PRINT", &PrintText<&LuaConfig::Callbacks::print>);
}

void LuaFunctions::AddOthers(lua_State* pState) {
    lua_getglobal(pState, "tostring");
    lua_pushcclosure(pState, PrintArguments, 1);
    lua_setglobal(pState, "print");
    LuaImport::AddFunction(pState);
}

bool LuaFunctions::IsStandardGlobal(const char* pName) {
    static constexpr std::string_view names[] = {"_VERSION",
                                                 "_LOADED",
                                                 "_G",
                                                 "table",
                                                 "string",
                                                 "math",
                                                 "debug",
                                                 "coroutine",
                                                 "_ALERT",
                                                 "_PRINT",
                                                 "print",
                                                 "import",
                                                 LuaBridge::s_LoopFunction};
    return std::ranges::find(names, std::string_view(pName)) != std::end(names);
}
