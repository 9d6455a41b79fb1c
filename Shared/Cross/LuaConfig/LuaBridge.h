#pragma once

#include <string>
#include <string_view>

#include <lauxlib.h>
#include <lua.h>
#include <lualib.h>

// The scripts are written for Lua 5.0; the library is 5.1. What differs is bridged here, and no other file knows of it.
//
//   for k, v in t do             a table in place of an iterator: rewritten to for k, v in _IN(t) do
//   [[ a [[ b ]] c ]]            nested long brackets: rewritten to brackets of another level
//   lua_setgcthreshold           GuardedState: the collector sleeps until so much is in use
//   collectgarbage(limit)        the same, in kilobytes; 0 or nothing collects
//   table.getn, table.setn       a size that was set counts, as does a field "n"; the same in unpack
//   xpcall                       calls its handler afterwards
//   loadstring                   the same rewriting; texts alone, as anywhere
//   arg of variadic functions, math.mod, string.gfind    5.1 has them still
namespace LuaBridge {

// The global function that rewritten loops call.
inline constexpr char s_LoopFunction[] = "_IN";

// A 5.0 text as 5.1 wants it, line by line the same. What can't be understood stays as it is.
std::string Translate(std::string_view text);

// Loads a text and leaves its function on the stack, or the error; the library's status comes back. A compiled chunk
// is refused. The name is shown in messages. The library asks for the text in small pieces.
int LoadText(lua_State* pState, std::string_view text, const std::string& chunkName);

// The base library without what reads files or compiled code.
void OpenBase(lua_State* pState);
// "table" with getn and setn.
void OpenTable(lua_State* pState);

} // namespace LuaBridge
