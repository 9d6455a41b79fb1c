#include "Shared/Cross/LuaConfig/LuaConfig.h"

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/LuaConfig/LuaBridge.h"
#include "Shared/Cross/LuaConfig/LuaExtension.h"
#include "Shared/Cross/LuaConfig/LuaFunctions.h"
#include "Shared/Cross/LuaConfig/LuaGuard.h"

#include <cstdarg>
#include <cstdio>
#include <new>

namespace {

constexpr size_t s_GcThreshold = 102400; // kilobytes

// Registry keys.
constexpr char s_TagsKey[] = "_Tags";
constexpr char s_PointerKey[] = "_ConfigPointer";
constexpr char s_NameKey[] = "_ConfigName";

// Only reached by a fault of ours: all that can fail is called in a way that catches it.
int OnPanic(lua_State* pState) { dbFatalf("LUA -- Fatal error (%d)", lua_status(pState)); }

int SetUp(lua_State* pState) {
    auto& config = *static_cast<LuaConfig*>(lua_touserdata(pState, 1));
    lua_newtable(pState);
    lua_setfield(pState, LUA_REGISTRYINDEX, s_TagsKey);
    lua_pushlightuserdata(pState, &config);
    lua_setfield(pState, LUA_REGISTRYINDEX, s_PointerKey);
    lua_pushstring(pState, config.GetName());
    lua_setfield(pState, LUA_REGISTRYINDEX, s_NameKey);
    LuaFunctions::AddReporters(pState);
    LuaBridge::OpenBase(pState);
    LuaFunctions::AddOthers(pState);
    return 0;
}

// A name shows in full unless it is too long for the library, which keeps its end then.
std::string MakeChunkName(const char* pName) { return std::string(*pName ? "@" : "=?") + pName; }

} // namespace

LuaConfig::LuaConfig(const char* pName) : LuaConfig(pName, Limits()) {}

LuaConfig::LuaConfig(const char* pName, const Limits& limits)
    : m_Name(pName ? pName : ""), m_pGuard(std::make_unique<Guard>(limits, m_Callbacks.interrupt)) {
    dbAssertText(pName, "name");
    m_pState = lua_newstate(Guard::Allocate, m_pGuard.get());
    if (!m_pState)
        throw std::bad_alloc();
    m_pGuard->pMain = m_pState;
    if (lua_cpcall(m_pState, SetUp, this) != 0)
        throw std::bad_alloc();
    lua_settop(m_pState, 0);
    lua_atpanic(m_pState, OnPanic);
    m_pGuard->SetThreshold(s_GcThreshold);
    lua_pushvalue(m_pState, LUA_GLOBALSINDEX);
}

LuaConfig::~LuaConfig() { lua_close(m_pState); }

LuaConfig* LuaConfig::FromState(lua_State* pState) {
    lua_pushstring(pState, s_PointerKey);
    lua_rawget(pState, LUA_REGISTRYINDEX);
    auto* pConfig = static_cast<LuaConfig*>(lua_touserdata(pState, -1));
    lua_pop(pState, 1);
    return pConfig;
}

bool LuaConfig::RunCommand(const char* pText) {
    constexpr const char* s_What = "running command";
    const LuaExtension::StackScope scope(m_pState);
    return Load(pText, "=command", s_What) && Call(0, LUA_MULTRET, s_What);
}

bool LuaConfig::RunText(const std::string& text, const char* pName) {
    if (m_Name.empty())
        m_Name = pName;
    const LuaExtension::StackScope scope(m_pState);
    return Load(text, MakeChunkName(pName), "loading") && Call(0, LUA_MULTRET, "running");
}

bool LuaConfig::Load(const std::string& text, const std::string& chunkName, const char* pWhat) {
    const Guard::Scope running(*m_pGuard, true);
    const int status = LuaBridge::LoadText(m_pState, text, chunkName);
    if (status != 0)
        Report("[%s] error %s (%s): %s", GetName(), pWhat, LuaExtension::GetErrorName(status),
               TakeError(status).c_str());
    return status == 0;
}

bool LuaConfig::Call(int arguments, int results, const char* pWhat) {
    int status = 0;
    {
        const Guard::Scope running(*m_pGuard, false);
        status = lua_pcall(m_pState, arguments, results, 0);
    }
    if (status != 0)
        Report("[%s] error %s (%s): %s", GetName(), pWhat, LuaExtension::GetErrorName(status),
               TakeError(status).c_str());
    return status == 0;
}

std::string LuaConfig::TakeError(int status) {
    const char* pText = lua_tostring(m_pState, -1);
    const std::string text = pText ? pText : "unknown load error";
    lua_pop(m_pState, 1);
    return status == LUA_ERRMEM ? m_pGuard->GetMemoryText() : text;
}

void LuaConfig::Report(const char* pFormat, ...) const {
    va_list arguments;
    va_start(arguments, pFormat);
    va_list again;
    va_copy(again, arguments);
    std::string text(static_cast<size_t>(std::max(std::vsnprintf(nullptr, 0, pFormat, again), 0)), '\0');
    va_end(again);
    std::vsnprintf(text.data(), text.size() + 1, pFormat, arguments);
    va_end(arguments);
    if (m_Callbacks.report)
        m_Callbacks.report(text.c_str());
    else
        dbPrintf("LUA -- %s", text.c_str());
}

void LuaConfig::PushGlobal(const char* pKey) {
    LuaExtension::PushKey(m_pState, pKey);
    lua_rawget(m_pState, LUA_GLOBALSINDEX);
}

bool LuaConfig::ClearGlobal(const char* pKey) {
    LuaExtension::PushKey(m_pState, pKey);
    lua_pushnil(m_pState);
    lua_settable(m_pState, LUA_GLOBALSINDEX);
    return true;
}

bool LuaConfig::ClearFunction(const char* pName) {
    if (!LuaExtension::CheckKey(pName))
        return false;
    const LuaExtension::StackScope scope(m_pState);
    PushGlobal(pName);
    if (lua_isfunction(m_pState, -1))
        return ClearGlobal(pName);
    Report(lua_isnil(m_pState, -1) ? "[%s] ClearFunction called on NIL function '%s'."
                                   : "[%s] ClearFunction called on non-function '%s'.",
           GetName(), pName);
    return false;
}

bool LuaConfig::ClearVariable(const char* pName) {
    if (!LuaExtension::CheckKey(pName))
        return false;
    const LuaExtension::StackScope scope(m_pState);
    PushGlobal(pName);
    if (!lua_isnil(m_pState, -1))
        return ClearGlobal(pName);
    Report("[%s] ClearVariable called on NIL variable '%s'.", GetName(), pName);
    return false;
}

LuaConfig::CallScope::CallScope(LuaConfig& config, lua_State* pState)
    : m_Config(config), m_pBefore(config.m_pState), m_BottomBefore(config.m_Bottom) {
    luaL_checkstack(pState, LUA_MINSTACK, "too many calls");
    lua_pushvalue(pState, LUA_GLOBALSINDEX);
    m_Config.m_pState = pState;
    m_Config.m_Bottom = lua_gettop(pState);
}

LuaConfig::CallScope::~CallScope() {
    m_Config.m_pState = m_pBefore;
    m_Config.m_Bottom = m_BottomBefore;
}

void LuaConfig::CallScope::PutBelow() {
    lua_insert(m_Config.m_pState, m_Config.m_Bottom);
    ++m_Config.m_Bottom;
}

bool LuaConfig::CallScope::Leave() {
    lua_State* pState = m_Config.m_pState;
    if (lua_gettop(pState) < m_Config.m_Bottom || !lua_rawequal(pState, m_Config.m_Bottom, LUA_GLOBALSINDEX))
        return false;
    lua_remove(pState, m_Config.m_Bottom);
    return true;
}
