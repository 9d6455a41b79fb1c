#include "Shared/Cross/LuaConfig/LuaGuard.h"

#include <algorithm>
#include <cstdlib>

namespace {

constexpr int s_CountInterval = 1000; // instructions between two looks at the limits

std::string DescribePlace(lua_State* pState, lua_Debug& place) {
    if (!lua_getinfo(pState, "Sl", &place) || place.currentline <= 0)
        return "";
    return std::string(place.short_src) + ":" + std::to_string(place.currentline) + ": ";
}

} // namespace

LuaConfig::Guard::Scope::Scope(Guard& guard, bool anew) : m_Guard(guard) {
    std::feholdexcept(&m_FloatSettings);
    if (guard.m_Depth++ > 0)
        return;
    if (anew) {
        guard.m_Left = guard.limits.instructions;
        guard.m_TimeLeft = std::chrono::milliseconds(guard.limits.milliseconds);
    }
    guard.m_End = Clock::now() + guard.m_TimeLeft;
    lua_sethook(guard.pMain, OnCount, LUA_MASKCOUNT, s_CountInterval);
}

LuaConfig::Guard::Scope::~Scope() {
    if (--m_Guard.m_Depth == 0) {
        m_Guard.m_TimeLeft = std::max(m_Guard.m_End - Clock::now(), Clock::duration::zero());
        lua_sethook(m_Guard.pMain, nullptr, 0, 0);
    }
    std::fesetenv(&m_FloatSettings);
}

bool LuaConfig::Guard::Charge(uint64_t instructions) {
    m_Left -= std::min(m_Left, instructions);
    return m_Left > 0;
}

std::string LuaConfig::Guard::GetMemoryText() const {
    return m_MemoryPlace + "the script takes more than " + std::to_string(limits.memory) + " bytes of memory";
}

void LuaConfig::Guard::SetThreshold(size_t kilobytes) {
    m_Threshold = std::min(kilobytes, limits.memory / 2 / 1024) * 1024;
    lua_gc(pMain, LUA_GCSTOP, 0);
}

// Null for what goes over the limit: the library then ends the script. A smaller block is never refused, which it
// counts on.
void* LuaConfig::Guard::Allocate(void* pGuard, void* pBlock, size_t oldSize, size_t newSize) {
    auto& guard = *static_cast<Guard*>(pGuard);
    if (newSize == 0) {
        std::free(pBlock);
        guard.m_Used -= oldSize;
        return nullptr;
    }
    if (newSize > oldSize && guard.m_Depth > 0 && guard.m_Used - oldSize + newSize > guard.limits.memory) {
        guard.NotePlace();
        return nullptr;
    }
    void* pNew = std::realloc(pBlock, newSize);
    if (pNew)
        guard.m_Used += newSize - oldSize;
    return pNew;
}

// The library's own error has no place. A coroutine counts as the line that resumed it.
void LuaConfig::Guard::NotePlace() {
    m_MemoryPlace.clear();
    lua_Debug place;
    for (int level = 0; m_MemoryPlace.empty() && pMain && lua_getstack(pMain, level, &place); ++level)
        m_MemoryPlace = DescribePlace(pMain, place);
}

const char* LuaConfig::Guard::FindExcess() {
    if (!Charge(s_CountInterval))
        return "the script takes too many instructions";
    if (Clock::now() > m_End) {
        m_Left = 0;
        return "the script takes too long";
    }
    if (interrupt && interrupt()) {
        m_Left = 0;
        return "the script was interrupted";
    }
    return nullptr;
}

void LuaConfig::Guard::OnCount(lua_State* pState, lua_Debug* pPlace) {
    Guard& guard = Get(pState);
    if (guard.m_Used > guard.m_Threshold)
        lua_gc(pState, LUA_GCRESTART, 0);
    const char* pExcess = guard.FindExcess();
    if (!pExcess)
        return;
    // From now on every instruction fails, so that a script that catches its errors comes to an end as well.
    lua_sethook(pState, OnCount, LUA_MASKCOUNT, 1);
    const std::string text = DescribePlace(pState, *pPlace) + pExcess;
    lua_pushlstring(pState, text.data(), text.size());
    lua_error(pState);
}
