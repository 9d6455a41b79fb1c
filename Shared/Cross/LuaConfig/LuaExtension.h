#pragma once

#include "Shared/Cross/LuaConfig/LuaConfig.h"

// Small work on a state's stack, for the sources of this layer.
namespace LuaExtension {

// Takes what was pushed since its construction off the stack.
class StackScope {
public:
    explicit StackScope(lua_State* pState);
    ~StackScope();
    StackScope(const StackScope&) = delete;
    StackScope& operator=(const StackScope&) = delete;

private:
    lua_State* m_pState;
    int m_Top;
};

// Whether a key means a number, and which.
bool IsNumberKey(const char* pKey, long& number);
// Whether a caller's key means anything; one that doesn't is an assertion.
bool CheckKey(const char* name);
// Pushes what the key means. False, with nothing pushed, for one that means nothing: an empty one and a number below 1.
bool PushKey(lua_State* pState, const char* pKey);
// The key that lies at that index as a text. Empty for one that is neither a text nor a number.
std::string GetKeyText(lua_State* pState, int index);

// Calls `visit` with each of PushWalked's keys at index -2 and its value at -1, in the table's own order; the stack is
// put right behind it, and the table isn't changed meanwhile.
void ForEach(lua_State* pState, int table, const std::function<void()>& visit);

// Pushes the table whose entries count as those of the given one: itself, or the one behind a read-only table.
void PushWalked(lua_State* pState, int table);

LuaConfig::ValueType GetType(lua_State* pState, int index);
// "LUA_ERRRUN"
const char* GetErrorName(int status);

} // namespace LuaExtension
