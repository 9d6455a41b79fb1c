// The current table's entries.
#include "Shared/Cross/LuaConfig/LuaConfig.h"

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/LuaConfig/LuaBridge.h"
#include "Shared/Cross/LuaConfig/LuaExtension.h"

#include <algorithm>
#include <cmath>
#include <limits>

using LuaExtension::CheckKey;
using LuaExtension::StackScope;

namespace {

constexpr size_t s_MaxListedKey = 128;

int GetIndexed(lua_State* pState) {
    lua_gettable(pState, 1);
    return 1;
}

int SetIndexed(lua_State* pState) {
    lua_settable(pState, 1);
    return 0;
}

int OnReadOnlyWrite(lua_State* pState) {
    return luaL_error(pState, "attempt to write to `%s' (a read-only value)",
                      lua_tostring(pState, lua_upvalueindex(1)));
}

bool HasMetatable(lua_State* pState, int table) {
    if (!lua_getmetatable(pState, table))
        return false;
    lua_pop(pState, 1);
    return true;
}

// Whether the metatable of the table on top has a table under the key.
bool IsMetaKey(lua_State* pState, const char* pKey) {
    const StackScope scope(pState);
    if (!lua_getmetatable(pState, -1))
        return false;
    LuaExtension::PushKey(pState, pKey);
    lua_rawget(pState, -2);
    return lua_istable(pState, -1);
}

} // namespace

bool LuaConfig::CheckTable() const {
    if (lua_gettop(m_pState) >= m_Bottom && lua_istable(m_pState, -1) && lua_checkstack(m_pState, LUA_MINSTACK))
        return true;
    const std::string text = m_Name.empty() ? "LUA -- luaconfig" : "LUA -- luaconfig '" + m_Name + "'";
    dbAssertText(false, text.c_str());
    return false;
}

// Only a plain look can do without protection: a metatable may have anything happen, errors included.
void LuaConfig::PushEntry(const char* pKey) {
    LuaExtension::PushKey(m_pState, pKey);
    lua_rawget(m_pState, -2);
    if (!lua_isnil(m_pState, -1) || !HasMetatable(m_pState, -2))
        return;
    lua_pop(m_pState, 1);
    lua_pushcfunction(m_pState, GetIndexed);
    lua_pushvalue(m_pState, -2);
    LuaExtension::PushKey(m_pState, pKey);
    if (!Call(2, 1, "reading"))
        lua_pushnil(m_pState);
}

// The value on top goes to the table below it, and off the stack.
bool LuaConfig::StoreEntry(const char* pKey) {
    LuaExtension::PushKey(m_pState, pKey);
    lua_insert(m_pState, -2);
    if (!HasMetatable(m_pState, -3)) {
        lua_rawset(m_pState, -3);
        return true;
    }
    lua_pushcfunction(m_pState, SetIndexed);
    lua_pushvalue(m_pState, -4);
    lua_pushvalue(m_pState, -4);
    lua_pushvalue(m_pState, -4);
    const bool stored = Call(3, 0, "writing");
    lua_pop(m_pState, 2);
    return stored;
}

LuaConfig::ValueType LuaConfig::GetType(const char* pKey) {
    if (!CheckTable() || !CheckKey(pKey))
        return Type_Nil;
    if (IsMetaKey(m_pState, pKey))
        return Type_Meta;
    const StackScope scope(m_pState);
    PushEntry(pKey);
    return LuaExtension::GetType(m_pState, -1);
}

bool LuaConfig::BeginTable(const char* pKey) {
    if (!CheckTable() || !CheckKey(pKey))
        return false;
    PushEntry(pKey);
    if (lua_istable(m_pState, -1))
        return true;
    lua_pop(m_pState, 1);
    lua_newtable(m_pState);
    lua_pushvalue(m_pState, -1);
    lua_insert(m_pState, -3); // below the current table, which has to be next to the value
    const bool stored = StoreEntry(pKey);
    lua_insert(m_pState, -2);
    if (!stored)
        lua_pop(m_pState, 1);
    return stored;
}

void LuaConfig::EndTable() {
    if (!CheckTable())
        return;
    dbAssertText(lua_gettop(m_pState) > m_Bottom, "EndTable without BeginTable");
    if (lua_gettop(m_pState) > m_Bottom)
        lua_pop(m_pState, 1);
}

bool LuaConfig::GetString(const char* pKey, std::string& out) {
    if (!CheckTable() || !CheckKey(pKey))
        return false;
    const StackScope scope(m_pState);
    PushEntry(pKey);
    const char* pText = lua_tostring(m_pState, -1);
    if (pText)
        out = pText;
    return pText != nullptr;
}

bool LuaConfig::GetNumber(const char* pKey, double& out) {
    if (!CheckTable() || !CheckKey(pKey))
        return false;
    const StackScope scope(m_pState);
    PushEntry(pKey);
    const bool found = lua_type(m_pState, -1) == LUA_TNUMBER;
    if (found)
        out = lua_tonumber(m_pState, -1);
    return found;
}

bool LuaConfig::GetUnsigned(const char* pKey, uint32_t& out) {
    double number = 0;
    if (!GetNumber(pKey, number) || !(number >= 0 && number <= std::numeric_limits<uint32_t>::max()))
        return false;
    out = static_cast<uint32_t>(number);
    return true;
}

bool LuaConfig::GetBool(const char* pKey, bool& out) {
    if (!CheckTable() || !CheckKey(pKey))
        return false;
    const StackScope scope(m_pState);
    PushEntry(pKey);
    const bool found = lua_isboolean(m_pState, -1);
    if (found)
        out = lua_toboolean(m_pState, -1) != 0;
    return found;
}

// What a script or a program has put there to be called or looked up isn't a value to be set.
bool LuaConfig::CanStore(const char* pKey) {
    if (!CheckTable() || !CheckKey(pKey))
        return false;
    const ValueType type = GetType(pKey);
    const bool isValue = type != Type_Function && type != Type_UserData && type != Type_Meta;
    dbAssertText(isValue, "type != function && type != user data && type != metatable entry");
    return isValue;
}

bool LuaConfig::SetString(const char* pKey, const char* pValue) {
    dbAssert(pValue);
    if (!pValue || !CanStore(pKey))
        return false;
    lua_pushstring(m_pState, pValue);
    return StoreEntry(pKey);
}

bool LuaConfig::SetNumber(const char* pKey, double value) {
    if (!CanStore(pKey))
        return false;
    lua_pushnumber(m_pState, value);
    return StoreEntry(pKey);
}

bool LuaConfig::SetBool(const char* pKey, bool value) {
    if (!CanStore(pKey))
        return false;
    lua_pushboolean(m_pState, value);
    return StoreEntry(pKey);
}

// An empty table takes its place, which has the real one behind it and refuses what isn't there, which is all.
bool LuaConfig::SetReadOnly(const char* pKey) {
    if (!CheckTable() || !CheckKey(pKey))
        return false;
    const StackScope scope(m_pState);
    lua_pushvalue(m_pState, -1);
    PushEntry(pKey);
    if (!lua_istable(m_pState, -1))
        return false;
    lua_newtable(m_pState); // the metatable
    lua_insert(m_pState, -2);
    lua_setfield(m_pState, -2, "__index");
    lua_pushstring(m_pState, pKey);
    lua_pushcclosure(m_pState, OnReadOnlyWrite, 1);
    lua_setfield(m_pState, -2, "__newindex");
    lua_pushboolean(m_pState, false);
    lua_setfield(m_pState, -2, "__metatable");
    lua_newtable(m_pState);
    lua_insert(m_pState, -2);
    lua_setmetatable(m_pState, -2);
    return StoreEntry(pKey);
}

LuaConfig::Iterator LuaConfig::Begin() {
    Iterator iterator;
    if (!CheckTable())
        return iterator;
    const auto pEntries = std::make_shared<std::vector<Iterator::Entry>>();
    LuaExtension::ForEach(m_pState, -1, [&] {
        const std::string key = LuaExtension::GetKeyText(m_pState, -2);
        Iterator::Entry& entry = pEntries->emplace_back();
        entry.key = key.substr(0, s_MaxListedKey);
        entry.keyType = LuaExtension::GetType(m_pState, -2);
        entry.type = LuaExtension::GetType(m_pState, -1);
        entry.isPlain = LuaExtension::PushKey(m_pState, entry.key.c_str()) && lua_rawequal(m_pState, -1, -3);
    });
    iterator.m_pEntries = pEntries;
    return iterator;
}

LuaConfig::Iterator LuaConfig::End() { return {}; }

std::string LuaConfig::Iterator::Key() const {
    const Entry& entry = (*m_pEntries)[m_Index];
    const auto keytype = entry.keyType;
    dbAssertText(keytype == Type_String || keytype == Type_Number, "keytype == LUA_TSTRING || keytype == LUA_TNUMBER");
    return entry.key;
}
