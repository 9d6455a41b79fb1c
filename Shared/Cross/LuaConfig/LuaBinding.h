#pragma once

#include "Shared/Cross/LuaConfig/LuaConfig.h"

#include <initializer_list>
#include <stdexcept>

// Functions of the program for scripts to call.
namespace LuaBinding {

// A fault in a call: the script gets it as an error, at its own line. A bound function may throw it as well.
class Exception : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct Dispatch;

// One call, as the bound function sees it. The current table of the configuration is that of the globals.
class Call {
public:
    LuaConfig& GetConfig() { return m_lc; }

    // How many arguments came; at least the bound ones, whose types are right.
    int GetArgumentCount() const { return m_Arguments; }
    // Arguments count from 1. One that isn't there, or of another type, is an Exception.
    double GetNumber(int index) const;
    bool GetBool(int index) const;
    std::string GetString(int index) const;

    // A result; they are given to the script in this order.
    void AddNumber(double value);
    void AddBool(bool value);
    void AddString(const std::string& value);

private:
    friend struct Dispatch;
    Call(LuaConfig& config, LuaConfig::CallScope& scope);
    void CheckArgument(int index, int type) const;
    void AddResult();

    LuaConfig& m_lc;
    LuaConfig::CallScope& m_Scope;
    lua_State* m_pState;
    int m_Arguments;
    int m_count = 0; // of results
};

using Function = std::function<void(Call& call)>;

// Makes a global function of it. A call has to have as many arguments, of these types; Type_Nil takes any. False for an
// empty name, which is the caller's mistake.
bool Bind(LuaConfig& config, const char* pName, std::initializer_list<LuaConfig::ValueType> arguments,
          Function function);

} // namespace LuaBinding
