#include "Shared/Cross/LuaConfig/LuaLibMan.h"

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/LuaConfig/LuaBridge.h"
#include "Shared/Cross/LuaConfig/LuaConfig.h"

#include <algorithm>

namespace {

class StandardLib : public LuaLib {
public:
    using OpenFunction = void (*)(lua_State* pState);
    StandardLib(const char* pName, OpenFunction open) : m_pName(pName), m_Open(open) {}

    void Open(LuaConfig& config) override { m_Open(config.GetState()); }
    void Close(LuaConfig& config) override {
        lua_pushnil(config.GetState());
        lua_setglobal(config.GetState(), m_pName);
    }

private:
    const char* m_pName;
    OpenFunction m_Open;
};

void OpenMath(lua_State* pState) {
    lua_pushcfunction(pState, luaopen_math);
    lua_pushliteral(pState, LUA_MATHLIBNAME);
    lua_call(pState, 1, 0);
}

} // namespace

LuaLibMan::~LuaLibMan() {
    const dbNoThrowScope noThrow;
    dbAssert(m_lcBindList.empty());
}

bool LuaLibMan::AddLibrary(const char* libname, LuaLib& lib) {
    dbAssertText(libname != nullptr, "libname != NULL");
    if (!libname)
        return false;
    const auto found = m_Libraries.try_emplace(libname, &lib).first;
    dbAssertText(found->second == &lib, "found->lib == lib");
    return found->second == &lib;
}

bool LuaLibMan::Bind(LuaConfig& config, const char* libname) {
    dbAssertText(libname != nullptr, "libname != NULL");
    const auto found = libname ? m_Libraries.find(libname) : m_Libraries.end();
    if (found == m_Libraries.end())
        return false;
    LuaLib* pLib = found->second;
    const bool isOpen = std::ranges::any_of(
        m_lcBindList, [&](const Binding& binding) { return binding.pConfig == &config && binding.pLib == pLib; });
    if (!isOpen) {
        pLib->Open(config);
        m_lcBindList.push_back({&config, pLib});
    }
    return true;
}

void LuaLibMan::Unbind(LuaConfig& config) {
    for (size_t i = m_lcBindList.size(); i-- > 0;) {
        if (m_lcBindList[i].pConfig != &config)
            continue;
        m_lcBindList[i].pLib->Close(config);
        m_lcBindList.erase(m_lcBindList.begin() + static_cast<std::ptrdiff_t>(i));
    }
}

void LuaLibMan::AddStandard() {
    static StandardLib s_Table(LUA_TABLIBNAME, LuaBridge::OpenTable);
    static StandardLib s_Math(LUA_MATHLIBNAME, OpenMath);
    AddLibrary(LUA_TABLIBNAME, s_Table);
    AddLibrary(LUA_MATHLIBNAME, s_Math);
}
