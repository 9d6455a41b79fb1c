#include "Shared/Cross/RenderAnim/AnimStream.h"

#include <algorithm>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/AnimSampling.h"

namespace {

void ReportFull(uint32_t limit) {
    dbWarningf("Animation has exceeded %d key frames. Failing addition.", static_cast<int>(limit));
}

} // namespace

// Keys of any kind lie behind each other without a gap.
static_assert(alignof(FloatKey) == 4 && alignof(Vec3Key) == 4 && alignof(QuatKey) == 4 && alignof(MatrixKey) == 4);

template <class V>
std::span<AnimKey<V>> AnimStream<V>::SetKeyCount(uint32_t count) {
    if (count > MaxKeyCount)
        ReportFull(MaxKeyCount);
    m_keyData.resize(std::min(count, MaxKeyCount));
    return m_keyData;
}

template <class V>
AnimKey<V> AnimStream<V>::GetKey(uint32_t index) const {
    dbAssert(index < m_keyData.size());
    return index < m_keyData.size() ? m_keyData[index] : Key{};
}

template <class V>
void AnimStream<V>::SetKey(uint32_t index, const V& value) {
    dbAssert(index < m_keyData.size());
    if (index < m_keyData.size())
        m_keyData[index].value = value;
}

template <class V>
void AnimStream<V>::RemoveKey(uint32_t index) {
    dbAssert(index < m_keyData.size());
    if (index < m_keyData.size())
        m_keyData.erase(m_keyData.begin() + index);
}

template <class V>
bool AnimStream<V>::AddKey(float time, const V& value) {
    const auto place = std::ranges::lower_bound(m_keyData, time, {}, &Key::time);
    if (place != m_keyData.end() && place->time == time) {
        place->value = value;
        return true;
    }
    if (m_keyData.size() >= MaxKeyCount) {
        ReportFull(MaxKeyCount);
        return false;
    }
    m_keyData.insert(place, Key{time, value});
    return true;
}

template <class V>
V AnimStream<V>::Sample(float time, bool loops, uint16_t& hint) const requires(!std::is_same_v<V, glm::mat4x3>) {
    dbAssert(!IsEmpty());
    if (IsEmpty())
        return V{};
    return SampleKeys<V>(
        m_keyData.size(), [this](size_t i) -> const Key& { return m_keyData[i]; }, time, loops, hint);
}

template class AnimStream<float>;
template class AnimStream<glm::vec3>;
template class AnimStream<glm::quat>;
template class AnimStream<glm::mat4x3>;
