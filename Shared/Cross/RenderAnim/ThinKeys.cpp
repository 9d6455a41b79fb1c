#include <algorithm>
#include <cmath>

#include "Shared/Cross/RenderAnim/AnimSampling.h"
#include "Shared/Cross/RenderAnim/AnimStream.h"

namespace {

// The keys of a stream in the midst of a pass: those that are through it at the front, then a gap, then those ahead.
// The key at `m_Next` is the one that is tried.
class ThinningPass {
public:
    ThinningPass(std::span<FloatKey> keys, bool isInOrder, float tolerance)
        : m_Keys(keys), m_IsInOrder(isInOrder), m_Tolerance(tolerance) {}

    // The count of keys that are left, at the front.
    size_t Run() {
        while (m_Next < m_Keys.size() && (m_Kept < 2 || m_Next != m_Keys.size() - 1)) {
            if (IsNeeded())
                Keep();
            else
                ++m_Next;
            if (m_Next < m_Keys.size())
                Keep(); // not tried in this pass
        }
        while (m_Next < m_Keys.size())
            Keep();
        return m_Kept;
    }

private:
    void Keep() { m_Keys[m_Kept++] = m_Keys[m_Next++]; }

    bool IsNeeded() const {
        const FloatKey& tried = m_Keys[m_Next];
        return std::abs(SampleOthers(tried.time) - tried.value) > m_Tolerance;
    }

    float SampleOthers(float time) const {
        // With times in order the key's neighbours are the pair that a search from the first key would come to.
        if (m_IsInOrder && time >= 0.0f && time <= 1.0f && m_Next + 1 < m_Keys.size()) {
            const FloatKey& before = m_Keys[m_Kept - 1];
            const FloatKey& after = m_Keys[m_Next + 1];
            if (before.time < time && time <= after.time)
                return InterpolateKeys(before, after, time);
        }
        uint16_t hint = 0;
        const size_t gap = m_Next + 1 - m_Kept;
        const auto keyAt = [&](size_t i) -> const FloatKey& { return m_Keys[i < m_Kept ? i : i + gap]; };
        return SampleKeys<float>(m_Keys.size() - gap, keyAt, time, true, hint);
    }

    std::span<FloatKey> m_Keys;
    bool m_IsInOrder;
    float m_Tolerance;
    size_t m_Kept = 1;
    size_t m_Next = 1;
};

} // namespace

void ThinKeys(FloatStream& stream, float tolerance) {
    std::span<FloatKey> keys = stream.GetKeys();
    if (keys.empty())
        return;
    const bool isInOrder = std::ranges::is_sorted(keys, {}, &FloatKey::time);
    for (;;) {
        const size_t left = ThinningPass(keys, isInOrder, tolerance).Run();
        if (left == keys.size())
            break;
        keys = keys.first(left);
    }
    stream.SetKeyCount(static_cast<uint32_t>(keys.size()));
}
