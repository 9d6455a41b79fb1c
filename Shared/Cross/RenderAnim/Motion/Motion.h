#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "Shared/Cross/RenderAnim/Motion/NamedList.h"

namespace ra {

// In seconds. A delay is drawn anew each time that it is wanted.
struct DelayRange {
    float min = 0.0f;
    float max = 0.0f; // >= min

    // For a fraction from 0 to 1, the caller's random number: evenly between the two, and 0 when max isn't above 0.
    float Draw(float fraction) const;
};

// How animations of the model are played: an own one, or one of several other motions by chance; when, and what happens
// meanwhile. What the game alone reads is carried.
class Motion {
public:
    // The numbers are in files.
    enum PlayMode : int32_t { NonLooping = 0, Looping = 1, HoldEnd = 2 };
    static constexpr int32_t PlayModeCount = 3;
    static constexpr float MinWeight = 0.001f;

    struct RandMotion {
        Name motion;
        float weight = 1.0f; // >= MinWeight
    };
    struct TimedEvent {
        Name event;
        float time = 0.0f;
    };
    enum Delay : uint32_t { Delay_First, Delay_Second, Delay_Third, Delay_Fourth, Delay_Count };

    explicit Motion(const Name& name) : m_Name(name) {}

    const Name& GetName() const { return m_Name; }
    uint32_t GetAnimNodeCount() const { return static_cast<uint32_t>(m_animNodes.size()); }
    uint32_t GetRandMotionCount() const { return static_cast<uint32_t>(m_randMotions.size()); }
    void AddRandMotion(const Name& motion, float weight); // a smaller weight becomes MinWeight
    bool HasTimingModifier() const { return m_timingModifier.IsValid(); }

    // For people; empty for none of them.
    static const char* GetText(PlayMode mode);

    std::vector<Name> m_animNodes; // of the model's animations
    std::vector<RandMotion> m_randMotions;
    std::vector<TimedEvent> m_events;
    PlayMode m_playMode = NonLooping;
    std::array<DelayRange, Delay_Count> m_delays;
    float m_transitionTime = 0.0f; // in seconds
    bool m_flag = false;           // goes with the random motions
    bool m_ignoreTransitions = false;
    bool m_secondFlag = false;
    Name m_timingModifier; // INVALID for none

private:
    Name m_Name;
};

using MotionList = NamedList<Motion>;

} // namespace ra
