#include "Shared/Cross/RenderAnim/VertexWeight.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "Shared/Cross/Debug/db.h"

namespace {

constexpr float s_WeakestWeight = 0.003f; // below it a bone moves a vertex by less than can be seen

} // namespace

void VertexWeightBuilder::Add(uint8_t bone, float w) {
    dbAssert((w >= 0) && (w <= 1));
    const auto same = std::ranges::find(m_Bone, bone);
    if (same != m_Bone.end() && bone != VertexWeight::NoBone) {
        m_Weight[static_cast<size_t>(same - m_Bone.begin())] += w;
        return;
    }
    const auto weaker = std::ranges::find_if(m_Weight, [w](float weight) { return weight < w; });
    const auto slot = static_cast<size_t>(weaker - m_Weight.begin());
    for (size_t i = m_Weight.size(); i-- > slot;) {
        m_Weight[i] = i > slot ? m_Weight[i - 1] : w;
        m_Bone[i] = i > slot ? m_Bone[i - 1] : bone;
    }
}

void VertexWeightBuilder::Tidy() {
    // One entry for each bone that stays, in the order of the bones; an array of four sorts itself by insertion.
    std::array<std::pair<uint8_t, float>, 4> entries;
    size_t count = 0;
    for (size_t i = 0; i < m_Weight.size(); ++i) {
        const float weight = m_Weight[i];
        if (weight < s_WeakestWeight) {
            if (weight > 0.0f)
                dbWarningf("Rejecting bone weight for strength %f\n", static_cast<double>(weight));
            continue;
        }
        const auto end = entries.begin() + static_cast<ptrdiff_t>(count);
        const auto same =
            std::find_if(entries.begin(), end, [&](const auto& entry) { return entry.first == m_Bone[i]; });
        if (same != end)
            same->second += weight;
        else
            entries[count++] = {m_Bone[i], weight};
    }
    std::sort(entries.begin(), entries.begin() + static_cast<ptrdiff_t>(count));
    *this = VertexWeightBuilder();
    for (size_t i = 0; i < count; ++i)
        std::tie(m_Bone[i], m_Weight[i]) = entries[i];
    const std::array<float, 4>& weight = m_Weight;
    dbAssert(weight[0] + weight[1] + weight[2] + weight[3] < 1.0001f);
}

VertexWeight VertexWeightBuilder::Finish() const {
    const std::array<float, 4>& weight = m_Weight;
    dbAssert(weight[0] + weight[1] + weight[2] + weight[3] <= 1.001f);
    const float sum = GetSum();
    const float scale = sum > 0.0f ? 1.0f / sum : sum;
    return {.weight = {weight[0] * scale, weight[1] * scale, weight[2] * scale}, .bone = m_Bone};
}
