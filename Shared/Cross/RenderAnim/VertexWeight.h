#pragma once

#include <array>
#include <cstdint>

// How four bones share a vertex, as it lies in vertex sets and files. The strongest bone comes first; the fourth weight
// is what the three leave of 1.
struct VertexWeight {
    static constexpr uint8_t NoBone = 0xFF;

    std::array<float, 3> weight = {};
    std::array<uint8_t, 4> bone = {NoBone, NoBone, NoBone, NoBone}; // indices in the skeleton

    bool operator==(const VertexWeight&) const = default;
};
static_assert(sizeof(VertexWeight) == 16);

// Gathers the bones of one vertex and keeps the four strongest.
class VertexWeightBuilder {
public:
    // A weight from 0 to 1. A bone that is there already gains it and keeps its place.
    void Add(uint8_t bone, float weight);
    // Clears weights that can't be seen, with a line in the log for each that was above 0, joins entries of one bone
    // and orders by bone, empty slots last.
    void Tidy();
    float GetSum() const { return m_Weight[0] + m_Weight[1] + m_Weight[2] + m_Weight[3]; }
    // Scaled so that the four add up to 1; all 0 stays so. The sum may be at most 1.001.
    VertexWeight Finish() const;

    const std::array<uint8_t, 4>& GetBones() const { return m_Bone; }
    const std::array<float, 4>& GetWeights() const { return m_Weight; }

private:
    // By bone; there are at most four bones, so it has room.
    void Insert(uint8_t bone, float weight);

    std::array<uint8_t, 4> m_Bone = {VertexWeight::NoBone, VertexWeight::NoBone, VertexWeight::NoBone,
                                     VertexWeight::NoBone};
    std::array<float, 4> m_Weight = {};
};
