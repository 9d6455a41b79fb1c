#include "Shared/Cross/RenderAnim/VertexWeight.h"

#include <algorithm>

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
    VertexWeightBuilder tidy;
    for (size_t i = 0; i < m_Weight.size(); ++i) {
        if (m_Weight[i] >= s_WeakestWeight)
            tidy.Insert(m_Bone[i], m_Weight[i]);
        else if (m_Weight[i] > 0.0f)
            dbWarningf("Rejecting bone weight for strength %f\n", static_cast<double>(m_Weight[i]));
    }
    *this = tidy;
    const std::array<float, 4>& weight = m_Weight;
    dbAssert(weight[0] + weight[1] + weight[2] + weight[3] < 1.0001f);
}

void VertexWeightBuilder::Insert(uint8_t bone, float weight) {
    // Empty slots have the highest number of all and so stay last.
    size_t slot = 0;
    while (m_Bone[slot] < bone)
        ++slot;
    if (m_Bone[slot] == bone) {
        m_Weight[slot] += weight;
        return;
    }
    std::shift_right(m_Bone.begin() + static_cast<ptrdiff_t>(slot), m_Bone.end(), 1);
    std::shift_right(m_Weight.begin() + static_cast<ptrdiff_t>(slot), m_Weight.end(), 1);
    m_Bone[slot] = bone;
    m_Weight[slot] = weight;
}

VertexWeight VertexWeightBuilder::Finish() const {
    const std::array<float, 4>& weight = m_Weight;
    dbAssert(weight[0] + weight[1] + weight[2] + weight[3] <= 1.001f);
    const float sum = GetSum();
    const float scale = sum > 0.0f ? 1.0f / sum : 1.0f;
    return {.weight = {weight[0] * scale, weight[1] * scale, weight[2] * scale}, .bone = m_Bone};
}
