#include <array>
#include <cstring>
#include <stdexcept>

#include <gmock/gmock.h>

#include "Shared/Cross/Glaze/MemoryVertexSet.h"
#include "Tests/Shared/Cross/Debug/ReportCapture.h"

using namespace gz;

namespace {

constexpr uint32_t MaskOf(std::initializer_list<VertexComponent> components) {
    uint32_t mask = 0;
    for (const VertexComponent component : components)
        mask |= ComponentBit(component);
    return mask;
}

TEST(VertexFormat, WeightsCarryFourBytesMore) {
    constexpr uint32_t format = MaskOf({VC_Position, VC_Weights});
    EXPECT_EQ(GetVertexStride(format), 32u);
    EXPECT_EQ(GetComponentOffset(format, VC_Position), 0u);
    EXPECT_EQ(GetComponentOffset(format, VC_Weights), 12u);
    EXPECT_EQ(GetComponentOffset(format | ComponentBit(VC_Normal), VC_Normal), 32u);
    EXPECT_EQ(GetComponentOffset(MaskOf({VC_Position, VC_Normal, VC_TexCoord0}), VC_TexCoord0), 24u);
    EXPECT_EQ(GetVertexStride(s_AllComponents), 12u + 20 + 12 + 4 + 4 + 4 * 8);
}

class VertexSetTest : public testing::Test {
protected:
    void Create(uint32_t format, uint32_t count) { ASSERT_TRUE(m_Set.Create(format, count, 2)); }

    ReportCapture m_Reports;
    MemoryVertexSet m_Set;
    uint32_t m_Stride = 0;
};

TEST_F(VertexSetTest, HoldsAtMost65535Vertices) {
    EXPECT_TRUE(m_Set.Create(MaskOf({VC_Position}), 65535));
    EXPECT_EQ(m_Set.GetSize(), 65535);
    EXPECT_EQ(m_Set.GetUsage(), 3u);
    EXPECT_EQ(m_Set.GetRange(0), (VertexRange{.start = 0, .count = 65535}));
    EXPECT_FALSE(m_Set.Create(MaskOf({VC_Position}), 65536));
    EXPECT_TRUE(ReportCapture::HasWarning("Size too large for VertexSet::Create()"));
}

TEST_F(VertexSetTest, LockGivesTheComponentOfTheFirstVertexOfTheStretch) {
    Create(MaskOf({VC_Position, VC_Normal}), 10);
    const auto* pBase = static_cast<const std::byte*>(m_Set.GetData(VC_Position));
    EXPECT_EQ(m_Set.Lock(VC_Normal, 3, 7, m_Stride), pBase + 3 * 24 + 12);
    EXPECT_EQ(m_Stride, 24u);
    m_Set.Unlock(VC_Normal);
    EXPECT_EQ(m_Set.Lock(VC_Position, 0, VertexSet::WholeSet, m_Stride), pBase);
    EXPECT_EQ(m_Set.Lock(VC_TexCoord0, 0, 1, m_Stride), nullptr);
    EXPECT_TRUE(m_Reports.GetWarnings().empty());
    EXPECT_EQ(m_Set.Lock(VC_Position, 0, 1, m_Stride), pBase);
    EXPECT_EQ(ReportCapture::CountWarnings("VertexComponent already locked."), 1u);
    m_Set.Unlock(VC_Position);
    EXPECT_FALSE(ReportCapture::HasWarning("VertexComponent not locked."));
    m_Set.Unlock(VC_Position);
    EXPECT_TRUE(ReportCapture::HasWarning("VertexComponent not locked."));
}

TEST_F(VertexSetTest, LockRefusesWhatGoesBeyondTheSet) {
    Create(MaskOf({VC_Position}), 10);
    for (const auto& [start, count] : {std::pair(0u, 11u), {10u, 1u}, {11u, 0xFFFFFFF5u}, {1u, 0xFFFFu}}) {
        ReportCapture::Clear();
        EXPECT_EQ(m_Set.Lock(VC_Position, start, count, m_Stride), nullptr) << start << ", " << count;
        EXPECT_TRUE(ReportCapture::HasWarning("LockArray range exceeds size of VertexSet"));
    }
    EXPECT_THROW(m_Set.Lock(VC_Position, 0, 0, m_Stride), std::runtime_error);
    EXPECT_THROW(m_Set.Lock(static_cast<VertexComponent>(VC_Count), 0, 1, m_Stride), std::out_of_range);
}

TEST_F(VertexSetTest, RangesGetIdsInTheirOrder) {
    Create(MaskOf({VC_Position}), 10);
    EXPECT_EQ(m_Set.AddRange(2, 8), 1u);
    EXPECT_EQ(m_Set.AddRange(0, 10), 2u);
    EXPECT_EQ(m_Set.GetRange(1), (VertexRange{.start = 2, .count = 8}));
    EXPECT_THROW(m_Set.AddRange(10, 1), std::runtime_error);
    EXPECT_THROW(m_Set.AddRange(0, 0), std::runtime_error);
    EXPECT_THROW(m_Set.AddRange(0, 11), std::runtime_error);
    EXPECT_EQ(m_Set.GetRangeCount(), 3u);
}

TEST_F(VertexSetTest, WriteArrayFillsOneComponentAndLeavesTheOthers) {
    ASSERT_TRUE(m_Set.CreateFrom(MaskOf({VC_Position, VC_TexCoord0}), 3, {}));
    const std::array<float, 4> texCoords = {1, 2, 3, 4};
    EXPECT_TRUE(m_Set.WriteArray(VC_TexCoord0, texCoords.data(), 1, 2));
    std::array<float, 15> all;
    std::memcpy(all.data(), m_Set.GetData(VC_Position), sizeof(all));
    EXPECT_THAT(all, testing::ElementsAre(0, 0, 0, 0, 0, 0, 0, 0, 1, 2, 0, 0, 0, 3, 4));
    EXPECT_FALSE(m_Set.WriteArray(VC_Normal, all.data()));
    EXPECT_TRUE(ReportCapture::HasWarning("VertexSet does not have the requested vertex component."));
    EXPECT_FALSE(m_Set.WriteArray(VC_Position, all.data(), 1));
    EXPECT_TRUE(ReportCapture::HasWarning("Must set both 'start' and 'range' parameters for WriteArray()."));
    EXPECT_TRUE(m_Set.WriteArray(VC_Position, all.data()));
    EXPECT_TRUE(m_Set.WriteArray(VC_Position, all.data(), 0, VertexSet::WholeSet));
}

TEST_F(VertexSetTest, CreatesFromArraysWithZerosForTheRest) {
    constexpr uint32_t count = 300; // more than are filled at a time
    std::array<std::array<float, 3>, count> positions;
    std::array<std::array<float, 4>, count> weights;
    for (uint32_t i = 0; i < count; ++i) {
        const auto value = static_cast<float>(i);
        positions[i] = {value, value + 0.25f, value + 0.5f};
        weights[i] = {-value, 1, 2, 3};
    }
    VertexSet::Arrays arrays = {};
    arrays[VC_Position] = positions.data();
    arrays[VC_Weights] = weights.data();
    arrays[VC_TexCoord0] = positions.data(); // not of the format
    ASSERT_TRUE(m_Set.CreateFrom(MaskOf({VC_Position, VC_Weights, VC_Normal}), count, arrays, 2));
    EXPECT_EQ(m_Set.GetUsage(), 2u);
    const auto* pVertex = static_cast<const std::byte*>(m_Set.GetData(VC_Position));
    for (uint32_t i = 0; i < count; ++i, pVertex += m_Set.GetStride()) {
        std::array<float, 11> vertex; // the position, the weights and 4 bytes more, and a normal
        std::memcpy(vertex.data(), pVertex, sizeof(vertex));
        const auto& [x, y, z] = positions[i];
        EXPECT_THAT(vertex, testing::ElementsAre(x, y, z, -x, 1, 2, 3, 0, 0, 0, 0)) << i;
    }
}

} // namespace
