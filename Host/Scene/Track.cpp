#include "Host/Scene/Track.h"

#include <algorithm>

namespace scene {

FloatTrack::FloatTrack(std::vector<Key> keys) : m_Keys(std::move(keys)) {
    std::ranges::stable_sort(m_Keys, {}, &Key::ticks);
    if (!m_Keys.empty())
        m_Constant = m_Keys.front().value;
}

float FloatTrack::Evaluate(TimeValue t) const {
    if (!IsAnimated())
        return m_Constant;
    const auto after = std::ranges::upper_bound(m_Keys, static_cast<double>(t), {}, &Key::ticks);
    if (after == m_Keys.begin())
        return m_Keys.front().value;
    if (after == m_Keys.end())
        return m_Keys.back().value;
    const Key& a = *(after - 1);
    const double share = (t - a.ticks) / (after->ticks - a.ticks);
    return static_cast<float>(a.value + (static_cast<double>(after->value) - a.value) * share);
}

} // namespace scene
