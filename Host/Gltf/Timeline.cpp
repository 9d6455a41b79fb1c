#include "Host/Gltf/Timeline.h"

#include "Host/Sdk/HostSetup.h"

#include <algorithm>

namespace gltf {

double Timeline::GetTime(uint32_t key) const {
    float time = 0.0f;
    if (m_Times.IsPlainFloat())
        std::memcpy(&time, m_Times.GetElement(key), sizeof time);
    return double{time};
}

std::span<const KeyPlace> Timeline::Find(std::span<const TimeValue> ticks) {
    if (!std::ranges::equal(ticks, std::span(m_Ticks).first(m_RunLength))) {
        m_RunLength = ticks.size();
        std::ranges::copy(ticks, m_Ticks.begin());
        for (size_t i = 0; i < ticks.size(); ++i)
            m_Places[i] = FindPlace(static_cast<double>(ticks[i]) / TicksPerSecond);
    }
    return std::span(m_Places).first(m_RunLength);
}

KeyPlace Timeline::FindPlace(double seconds) {
    if (!(seconds >= m_From && seconds < m_To))
        MoveTo(seconds);
    if (m_Next == 0)
        return {};
    KeyPlace place{.key = m_Next - 1};
    if (m_Next < m_Times.count) {
        place.isBetween = true;
        place.span = m_To - m_From;
        place.share = (seconds - m_From) / place.span;
    }
    return place;
}

void Timeline::MoveTo(double seconds) {
    m_Next = FindNextKey(seconds);
    m_From = m_Next > 0 ? GetTime(m_Next - 1) : -s_Nowhere;
    m_To = m_Next < m_Times.count ? GetTime(m_Next) : s_Nowhere;
}

// The first key behind `seconds`: most often the one after the last.
uint32_t Timeline::FindNextKey(double seconds) const {
    const uint32_t count = m_Times.count;
    if (m_Next < count && seconds >= m_To && (m_Next + 1 == count || seconds < GetTime(m_Next + 1)))
        return m_Next + 1;
    uint32_t low = 0;
    uint32_t high = count;
    while (low < high) {
        const uint32_t middle = low + (high - low) / 2;
        if (GetTime(middle) <= seconds)
            low = middle + 1;
        else
            high = middle;
    }
    return low;
}

} // namespace gltf
