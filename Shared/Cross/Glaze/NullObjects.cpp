#include "Shared/Cross/Glaze/NullObjects.h"

#include <algorithm>
#include <bit>
#include <utility>

#include "Shared/Cross/Debug/db.h"

namespace gz {

NullPrimSet::NullPrimSet(VertexSet& vertexSet, std::shared_ptr<Shader> pShader, uint32_t usage)
    : m_VertexSet(vertexSet), m_pShader(std::move(pShader)), m_Usage(usage) {}

void NullPrimSet::SetUp(uint32_t rangeId, uint32_t indexCount, PrimKind kind) {
    SetUp(rangeId, std::vector<uint16_t>(indexCount), kind);
}

void NullPrimSet::SetUp(uint32_t rangeId, std::vector<uint16_t> indices, PrimKind kind) {
    m_RangeId = rangeId;
    m_Range = m_VertexSet.GetRange(rangeId);
    m_Kind = kind;
    m_Indices = std::move(indices);
}

void NullPrimSet::SetIndices(std::span<const uint16_t> indices) {
    dbAssert(indices.size() <= m_Indices.size());
    std::copy_n(indices.begin(), std::min(indices.size(), m_Indices.size()), m_Indices.begin());
}

void NullPrimSet::CopyFrom(const PrimSet& other) {
    m_RangeId = other.GetRangeId();
    m_Range = other.GetRange();
    m_Kind = other.GetKind();
    m_Indices.assign(other.GetIndices().begin(), other.GetIndices().end());
}

bool NullTexture::Create(uint32_t width, uint32_t height, uint32_t format, uint32_t levelCount) {
    if (width == 0 || height == 0 || width > MaxSide || height > MaxSide)
        return false;
    const auto mostLevels = static_cast<uint32_t>(std::bit_width(std::max(width, height)));
    if (levelCount == 0 || levelCount > mostLevels)
        return false;
    m_Width = width;
    m_Height = height;
    m_Format = format;
    m_Levels.assign(levelCount, {});
    return true;
}

bool NullTexture::SetLevel(uint32_t level, std::span<const std::byte> data) {
    auto pCopy = std::make_shared<std::vector<std::byte>>(data.begin(), data.end());
    const std::span<const std::byte> copy = *pCopy;
    return ShareLevel(level, copy, std::move(pCopy));
}

bool NullTexture::ShareLevel(uint32_t level, std::span<const std::byte> data, std::shared_ptr<const void> pOwner) {
    if (level >= m_Levels.size())
        return false;
    m_Levels[level] = {data, std::move(pOwner)};
    return true;
}

std::span<const std::byte> NullTexture::GetLevel(uint32_t level) const {
    return level < m_Levels.size() ? m_Levels[level].data : std::span<const std::byte>();
}

} // namespace gz
