#include "Shared/Cross/LuaConfig/LuaBinding.h"

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/LuaConfig/LuaBridge.h"
#include "Shared/Cross/LuaConfig/LuaExtension.h"

#include <cstdio>
#include <new>

namespace {

constexpr char s_BoundType[] = "LuaBinding";

struct Bound {
    std::string m_funcname;
    std::vector<LuaConfig::ValueType> arguments;
    LuaBinding::Function function;
};

[[gnu::format(printf, 1, 2)]] std::string Format(const char* pFormat, ...);

std::string Format(const char* pFormat, ...) {
    char text[512];
    va_list arguments;
    va_start(arguments, pFormat);
    std::vsnprintf(text, sizeof text, pFormat, arguments);
    va_end(arguments);
    return text;
}

int DestroyBound(lua_State* pState) {
    static_cast<Bound*>(lua_touserdata(pState, 1))->~Bound();
    return 0;
}

} // namespace

// What the library calls for a bound function, which is its upvalue.
struct LuaBinding::Dispatch {
    static void CheckArguments(lua_State* pState, const Bound& bound) {
        if (lua_gettop(pState) != static_cast<int>(bound.arguments.size()))
            throw Exception("invalid number of arguments");
        for (size_t i = 0; i < bound.arguments.size(); ++i) {
            const int index = static_cast<int>(i) + 1;
            if (bound.arguments[i] != LuaConfig::Type_Nil && LuaExtension::GetType(pState, index) != bound.arguments[i])
                throw Exception(Format("Invalid parameter %d (type=%s) in function %s", index,
                                       lua_typename(pState, lua_type(pState, index)), bound.m_funcname.c_str()));
        }
    }

    static int Run(lua_State* pState, LuaConfig& config, const Bound& bound) {
        CheckArguments(pState, bound);
        LuaConfig::CallScope scope(config, pState);
        const int before = lua_gettop(pState);
        Call call(config, scope);
        dbAssert(call.m_count == 0);
        bound.function(call);
        const int after = lua_gettop(pState);
        if (after != before + call.m_count || !scope.Leave())
            throw Exception(Format("Invalid stack after function call (stack index before %d, return count %d, stack "
                                   "index after %d)",
                                   before, call.m_count, after));
        return call.m_count;
    }

    // What a function throws must not get lost in the library, which knows only its own errors.
    static int OnCall(lua_State* pState) {
        const auto& bound = *static_cast<Bound*>(lua_touserdata(pState, lua_upvalueindex(1)));
        try {
            LuaConfig* pConfig = LuaConfig::FromState(pState);
            if (!pConfig)
                throw Exception("LUA -- Invalid LuaBinding stack");
            return Run(pState, *pConfig, bound);
        } catch (const std::exception& error) {
            lua_settop(pState, 0);
            luaL_where(pState, 1);
            lua_pushstring(pState, error.what());
        }
        lua_concat(pState, 2);
        return lua_error(pState);
    }

    static void Push(lua_State* pState, Bound bound) {
        void* pBlock = lua_newuserdata(pState, sizeof(Bound));
        new (pBlock) Bound(std::move(bound));
        if (luaL_newmetatable(pState, s_BoundType)) {
            lua_pushcfunction(pState, DestroyBound);
            lua_setfield(pState, -2, "__gc");
        }
        lua_setmetatable(pState, -2);
        lua_pushcclosure(pState, OnCall, 1);
    }
};

bool LuaBinding::Bind(LuaConfig& config, const char* pName, std::initializer_list<LuaConfig::ValueType> arguments,
                      Function function) {
    const std::string m_funcname = pName ? pName : "";
    dbAssert(!m_funcname.empty());
    if (m_funcname.empty())
        return false;
    lua_State* pState = config.GetState();
    if (!lua_checkstack(pState, LUA_MINSTACK))
        return false;
    Dispatch::Push(pState, {m_funcname, arguments, std::move(function)});
    lua_setglobal(pState, m_funcname.c_str());
    return true;
}

LuaBinding::Call::Call(LuaConfig& config, LuaConfig::CallScope& scope)
    : m_lc(config), m_Scope(scope), m_pState(config.GetState()), m_Arguments(lua_gettop(m_pState) - 1) {}

void LuaBinding::Call::CheckArgument(int index, int type) const {
    if (index < 1 || index > m_Arguments || lua_type(m_pState, index) != type)
        throw Exception(Format("argument %d is no %s", index, lua_typename(m_pState, type)));
}

double LuaBinding::Call::GetNumber(int index) const {
    CheckArgument(index, LUA_TNUMBER);
    return lua_tonumber(m_pState, index);
}

bool LuaBinding::Call::GetBool(int index) const {
    CheckArgument(index, LUA_TBOOLEAN);
    return lua_toboolean(m_pState, index) != 0;
}

std::string LuaBinding::Call::GetString(int index) const {
    CheckArgument(index, LUA_TSTRING);
    size_t size = 0;
    const char* pText = lua_tolstring(m_pState, index, &size);
    return {pText, size};
}

void LuaBinding::Call::AddNumber(double value) {
    lua_pushnumber(m_pState, value);
    AddResult();
}

void LuaBinding::Call::AddBool(bool value) {
    lua_pushboolean(m_pState, value);
    AddResult();
}

void LuaBinding::Call::AddString(const std::string& value) {
    lua_pushlstring(m_pState, value.data(), value.size());
    AddResult();
}

void LuaBinding::Call::AddResult() {
    m_Scope.PutBelow();
    ++m_count;
    luaL_checkstack(m_pState, LUA_MINSTACK, "too many results");
}
