#include "Shared/Cross/LuaConfig/LuaExtension.h"

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/LuaConfig/LuaBridge.h"

#include <cstdio>
#include <cstdlib>

namespace {

bool IsEmpty(lua_State* pState, int table) {
    lua_pushnil(pState);
    if (!lua_next(pState, table))
        return true;
    lua_pop(pState, 2);
    return false;
}

} // namespace

LuaExtension::StackScope::StackScope(lua_State* pState) : m_pState(pState), m_Top(lua_gettop(pState)) {}
LuaExtension::StackScope::~StackScope() { lua_settop(m_pState, m_Top); }

bool LuaExtension::IsNumberKey(const char* pKey, long& number) {
    char* pEnd = nullptr;
    number = std::strtol(pKey, &pEnd, 10);
    return pEnd != pKey && *pEnd == '\0';
}

bool LuaExtension::CheckKey(const char* name) {
    dbAssert(name && *name);
    if (!name || !*name)
        return false;
    long index = 0;
    if (!IsNumberKey(name, index))
        return true;
    dbAssert(index > 0);
    return index > 0;
}

bool LuaExtension::PushKey(lua_State* pState, const char* pKey) {
    if (!pKey || !*pKey)
        return false;
    long index = 0;
    if (!IsNumberKey(pKey, index)) {
        lua_pushstring(pState, pKey);
        return true;
    }
    if (index <= 0)
        return false;
    lua_pushnumber(pState, static_cast<lua_Number>(index));
    return true;
}

std::string LuaExtension::GetKeyText(lua_State* pState, int index) {
    const int type = lua_type(pState, index);
    if (type == LUA_TSTRING)
        return lua_tostring(pState, index);
    if (type != LUA_TNUMBER)
        return "";
    // In place it would turn the key itself into a text, and the walk over the table would lose its way.
    char text[32];
    std::snprintf(text, sizeof text, LUA_NUMBER_FMT, lua_tonumber(pState, index));
    return text;
}

void LuaExtension::PushWalked(lua_State* pState, int table) {
    lua_pushvalue(pState, table);
    if (!IsEmpty(pState, table) || !lua_getmetatable(pState, table))
        return;
    lua_pushliteral(pState, "__index");
    lua_rawget(pState, -2);
    if (lua_istable(pState, -1))
        lua_replace(pState, -3);
    else
        lua_pop(pState, 1);
    lua_pop(pState, 1);
}

void LuaExtension::ForEach(lua_State* pState, int table, const std::function<void()>& visit) {
    const StackScope scope(pState);
    lua_checkstack(pState, LUA_MINSTACK);
    PushWalked(pState, table < 0 && table > LUA_REGISTRYINDEX ? lua_gettop(pState) + table + 1 : table);
    const int walked = lua_gettop(pState);
    lua_pushnil(pState);
    while (lua_next(pState, walked)) {
        visit();
        lua_settop(pState, walked + 1); // the key
    }
}

LuaConfig::ValueType LuaExtension::GetType(lua_State* pState, int index) {
    switch (lua_type(pState, index)) {
    case LUA_TBOOLEAN:
        return LuaConfig::Type_Boolean;
    case LUA_TNUMBER:
        return LuaConfig::Type_Number;
    case LUA_TSTRING:
        return LuaConfig::Type_String;
    case LUA_TTABLE:
        return LuaConfig::Type_Table;
    case LUA_TFUNCTION:
        return LuaConfig::Type_Function;
    case LUA_TUSERDATA:
    case LUA_TLIGHTUSERDATA:
    case LUA_TTHREAD:
        return LuaConfig::Type_UserData;
    default:
        return LuaConfig::Type_Nil;
    }
}

const char* LuaExtension::GetErrorName(int status) {
    switch (status) {
    case LUA_ERRRUN:
        return "LUA_ERRRUN";
    case LUA_ERRFILE:
        return "LUA_ERRFILE";
    case LUA_ERRSYNTAX:
        return "LUA_ERRSYNTAX";
    case LUA_ERRMEM:
        return "LUA_ERRMEM";
    case LUA_ERRERR:
        return "LUA_ERRERR";
    default:
        return "Unknown error";
    }
}
