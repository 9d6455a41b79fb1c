#include "Shared/Cross/LuaConfig/LuaBridge.h"

#include "Shared/Cross/LuaConfig/LuaGuard.h"

#include <algorithm>

namespace {

constexpr size_t s_PieceSize = 2048; // bytes that the library gets at once
constexpr char s_CompiledMark = LUA_SIGNATURE[0];
constexpr char s_SizesKey[] = "_Sizes";       // registry: a table of the sizes that setn has set, by table
constexpr uint64_t s_BytesPerInstruction = 8; // of a text that is compiled
constexpr uint64_t s_CoroutineCost = 1000;    // instructions; one that is made runs that many before it is looked at

struct TextReader {
    std::string_view left;

    static const char* Read(lua_State*, void* pReader, size_t* pSize) {
        auto& reader = *static_cast<TextReader*>(pReader);
        const std::string_view piece = reader.left.substr(0, s_PieceSize);
        reader.left.remove_prefix(piece.size());
        *pSize = piece.size();
        return piece.data();
    }
};

int LoadAsIs(lua_State* pState, std::string_view text, const std::string& chunkName) {
    TextReader reader{text};
    return lua_load(pState, TextReader::Read, &reader, chunkName.c_str());
}

// _IN(list...): what a loop's list is when it may be a table.
int LoopOver(lua_State* pState) {
    if (lua_type(pState, 1) != LUA_TTABLE)
        return lua_gettop(pState);
    lua_settop(pState, 1);
    lua_pushvalue(pState, lua_upvalueindex(1)); // next
    lua_insert(pState, 1);
    return 2;
}

int CollectGarbage(lua_State* pState) {
    const auto limit = static_cast<int>(luaL_optinteger(pState, 1, 0));
    if (limit > 0)
        LuaConfig::Guard::Get(pState).SetThreshold(static_cast<size_t>(limit));
    else
        lua_gc(pState, LUA_GCCOLLECT, 0);
    return 0;
}

// The handler runs when the fault is over and not in the middle of it, where no limit would reach it. Without a library
// that looks at the stack it can't tell the difference.
int CallWithHandler(lua_State* pState) {
    luaL_checkany(pState, 2);
    lua_settop(pState, 2);
    lua_pushvalue(pState, 1);
    if (lua_pcall(pState, 0, LUA_MULTRET, 0) == 0) {
        lua_pushboolean(pState, true);
        lua_replace(pState, 2);
        return lua_gettop(pState) - 1;
    }
    lua_pushvalue(pState, 2);
    lua_insert(pState, -2);
    lua_pcall(pState, 1, 1, 0);
    lua_pushboolean(pState, false);
    lua_insert(pState, -2);
    return 2;
}

void ChargeScript(lua_State* pState, uint64_t instructions) {
    if (!LuaConfig::Guard::Get(pState).Charge(instructions))
        luaL_error(pState, "the script takes too many instructions");
}

int LoadString(lua_State* pState) {
    size_t size = 0;
    const char* pText = luaL_checklstring(pState, 1, &size);
    ChargeScript(pState, size / s_BytesPerInstruction);
    const std::string_view text(pText, size);
    if (LuaBridge::LoadText(pState, text, luaL_optstring(pState, 2, pText)) == 0)
        return 1;
    lua_pushnil(pState);
    lua_insert(pState, -2);
    return 2;
}

// The library's own function, at a price.
int MakeCoroutine(lua_State* pState) {
    ChargeScript(pState, s_CoroutineCost);
    lua_pushvalue(pState, lua_upvalueindex(1));
    lua_insert(pState, 1);
    lua_call(pState, lua_gettop(pState) - 1, LUA_MULTRET);
    return lua_gettop(pState);
}

void PutPriceOn(lua_State* pState, const char* pFunction) {
    lua_getfield(pState, -1, pFunction);
    lua_pushcclosure(pState, MakeCoroutine, 1);
    lua_setfield(pState, -2, pFunction);
}

int GetSize(lua_State* pState, int table) {
    lua_pushliteral(pState, "n");
    lua_rawget(pState, table);
    if (lua_type(pState, -1) != LUA_TNUMBER) {
        lua_pop(pState, 1);
        lua_getfield(pState, LUA_REGISTRYINDEX, s_SizesKey);
        lua_pushvalue(pState, table);
        lua_rawget(pState, -2);
        lua_remove(pState, -2);
    }
    const int size = lua_isnumber(pState, -1) ? static_cast<int>(lua_tointeger(pState, -1))
                                              : static_cast<int>(lua_objlen(pState, table));
    lua_pop(pState, 1);
    return size;
}

int GetN(lua_State* pState) {
    luaL_checktype(pState, 1, LUA_TTABLE);
    lua_pushinteger(pState, GetSize(pState, 1));
    return 1;
}

// A table with a size of its own keeps it in itself, another one's stands apart.
int SetN(lua_State* pState) {
    luaL_checktype(pState, 1, LUA_TTABLE);
    luaL_checkinteger(pState, 2);
    lua_settop(pState, 2);
    lua_pushliteral(pState, "n");
    lua_rawget(pState, 1);
    const bool isInside = lua_type(pState, -1) == LUA_TNUMBER;
    lua_settop(pState, 2);
    if (isInside) {
        lua_setfield(pState, 1, "n");
        return 0;
    }
    lua_getfield(pState, LUA_REGISTRYINDEX, s_SizesKey);
    lua_insert(pState, 1);
    lua_rawset(pState, 1);
    return 0;
}

int Unpack(lua_State* pState) {
    luaL_checktype(pState, 1, LUA_TTABLE);
    const int size = GetSize(pState, 1);
    if (size > 0 && !lua_checkstack(pState, size))
        return luaL_error(pState, "too many results to unpack");
    for (int i = 1; i <= size; ++i)
        lua_rawgeti(pState, 1, i);
    return std::max(size, 0);
}

// Sizes are forgotten with their tables.
void MakeSizes(lua_State* pState) {
    lua_newtable(pState);
    lua_newtable(pState);
    lua_pushliteral(pState, "k");
    lua_setfield(pState, -2, "__mode");
    lua_setmetatable(pState, -2);
    lua_setfield(pState, LUA_REGISTRYINDEX, s_SizesKey);
}

void Open(lua_State* pState, lua_CFunction open, const char* pName) {
    lua_pushcfunction(pState, open);
    lua_pushstring(pState, pName);
    lua_call(pState, 1, 0);
}

} // namespace

int LuaBridge::LoadText(lua_State* pState, std::string_view text, const std::string& chunkName) {
    if (text.starts_with(s_CompiledMark)) {
        lua_pushliteral(pState, "a compiled script isn't taken");
        return LUA_ERRSYNTAX;
    }
    const std::string translated = Translate(text);
    const int status = LoadAsIs(pState, translated, chunkName);
    if (status != LUA_ERRSYNTAX || translated == text)
        return status;
    // The complaint shall be about what the author wrote.
    lua_pop(pState, 1);
    return LoadAsIs(pState, text, chunkName);
}

void LuaBridge::OpenBase(lua_State* pState) {
    Open(pState, luaopen_base, "");
    // Files, compiled code, and what runs at the collector's pleasure, where no limit reaches it.
    for (const char* pName : {"dofile", "loadfile", "load", "newproxy", "require", "module"}) {
        lua_pushnil(pState);
        lua_setglobal(pState, pName);
    }
    MakeSizes(pState);
    lua_register(pState, "collectgarbage", CollectGarbage);
    lua_register(pState, "loadstring", LoadString);
    lua_register(pState, "unpack", Unpack);
    lua_register(pState, "xpcall", CallWithHandler);
    lua_getglobal(pState, "next");
    lua_pushcclosure(pState, LoopOver, 1);
    lua_setglobal(pState, s_LoopFunction);
    lua_getglobal(pState, LUA_COLIBNAME);
    PutPriceOn(pState, "create");
    PutPriceOn(pState, "wrap");
    lua_pop(pState, 1);
}

void LuaBridge::OpenTable(lua_State* pState) {
    Open(pState, luaopen_table, LUA_TABLIBNAME);
    lua_getglobal(pState, LUA_TABLIBNAME);
    lua_pushcfunction(pState, GetN);
    lua_setfield(pState, -2, "getn");
    lua_pushcfunction(pState, SetN);
    lua_setfield(pState, -2, "setn");
    lua_pop(pState, 1);
}
