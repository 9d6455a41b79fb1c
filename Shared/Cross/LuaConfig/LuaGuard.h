#pragma once

#include "Shared/Cross/LuaConfig/LuaBridge.h"
#include "Shared/Cross/LuaConfig/LuaConfig.h"

#include <cfenv>
#include <chrono>

// What a state may use up while a script runs. What the layer itself does on the state has no limits: an error there
// would have nobody to go to.
struct LuaConfig::Guard {
    Guard(const Limits& given, const std::function<bool()>& asked) : limits(given), interrupt(asked) {}

    // As long as one lives, a script runs, with floating point as its numbers need it. What it uses up goes from what
    // is left; the outermost one may begin to count anew.
    class Scope {
    public:
        Scope(Guard& guard, bool anew);
        ~Scope();
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

    private:
        Guard& m_Guard;
        std::fenv_t m_FloatSettings{};
    };

    // Takes from what is left, for work that isn't told by the number of instructions. False when nothing is left.
    bool Charge(uint64_t instructions);
    // Why the library ran out of memory, with the script's place.
    std::string GetMemoryText() const;
    // From so many kilobytes in use on the collector works.
    void SetThreshold(size_t kilobytes);

    static Guard& Get(lua_State* pState) {
        void* pGuard = nullptr;
        lua_getallocf(pState, &pGuard);
        return *static_cast<Guard*>(pGuard);
    }
    static void* Allocate(void* pGuard, void* pBlock, size_t oldSize, size_t newSize);

    const Limits limits;
    const std::function<bool()>& interrupt;
    lua_State* pMain = nullptr;

private:
    using Clock = std::chrono::steady_clock;

    static void OnCount(lua_State* pState, lua_Debug* pPlace);
    const char* FindExcess();
    void NotePlace();

    int m_Depth = 0;
    size_t m_Threshold = 0;
    size_t m_Used = 0;
    uint64_t m_Left = 0;
    Clock::duration m_TimeLeft{};
    Clock::time_point m_End;
    std::string m_MemoryPlace;
};
