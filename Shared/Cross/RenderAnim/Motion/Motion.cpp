#include "Shared/Cross/RenderAnim/Motion/Motion.h"

#include <algorithm>

#include "Shared/Cross/Debug/db.h"

namespace ra {

float DelayRange::Draw(float fraction) const {
    if (!(max > 0.0f))
        return 0.0f;
    dbAssert(max >= min);
    return min + (std::max(max, min) - min) * fraction;
}

void Motion::AddRandMotion(const Name& motion, float weight) {
    dbAssertText(weight >= 0.001f, "weight >= 0.001f");
    m_randMotions.push_back({.motion = motion, .weight = weight >= MinWeight ? weight : MinWeight});
}

const char* Motion::GetText(PlayMode mode) {
    static constexpr std::array<const char*, PlayModeCount> s_Texts = {"Non-Looping", "Looping", "Hold End"};
    return mode >= 0 && mode < PlayModeCount ? s_Texts[static_cast<size_t>(mode)] : "";
}

} // namespace ra
