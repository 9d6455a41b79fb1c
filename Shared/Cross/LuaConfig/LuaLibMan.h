#pragma once

#include <map>
#include <string>
#include <vector>

class LuaConfig;

// Functions that belong together, for states that want them.
class LuaLib {
public:
    virtual ~LuaLib() = default;
    virtual void Open(LuaConfig& config) = 0;
    virtual void Close(LuaConfig& config) = 0;
};

// Which libraries there are, by name, and which of them are open in which state. A library and a state outlive what is
// bound here, and nothing is bound any more when this goes.
class LuaLibMan {
public:
    LuaLibMan() = default;
    ~LuaLibMan();
    LuaLibMan(const LuaLibMan&) = delete;
    LuaLibMan& operator=(const LuaLibMan&) = delete;

    // The library is borrowed. One name for two of them is the caller's mistake, and false.
    bool AddLibrary(const char* libname, LuaLib& lib);
    // False for an unknown name, and true too when it is open there already.
    bool Bind(LuaConfig& config, const char* libname);
    // Closes what is open there, the last one first.
    void Unbind(LuaConfig& config);

    // The language's own that have no way out of the state: "table", "math". (Matching of strings is left out: a
    // pattern can take for ever within a single call, where no limit reaches it.)
    void AddStandard();

private:
    struct Binding {
        LuaConfig* pConfig;
        LuaLib* pLib;
    };

    std::map<std::string, LuaLib*, std::less<>> m_Libraries;
    std::vector<Binding> m_lcBindList;
};
