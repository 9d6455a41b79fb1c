#pragma once

struct lua_State;

// The functions that the layer itself gives to scripts.
namespace LuaFunctions {

// _ALERT and _PRINT, each for one text.
void AddReporters(lua_State* pState);
// print and import, in place of what the base library has.
void AddOthers(lua_State* pState);

// Whether a global of that name is one of these, or of the standard ones: no part of what a script sets.
bool IsStandardGlobal(const char* pName);

} // namespace LuaFunctions
