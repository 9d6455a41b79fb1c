#include "Shared/Cross/Glaze/MemoryVertexSet.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/Glaze/StridedCopy.h"

namespace gz {

namespace {

size_t CheckedIndex(VertexComponent component) {
    if (component >= VC_Count)
        throw std::out_of_range("bitset");
    return component;
}

} // namespace

bool MemoryVertexSet::Create(uint32_t format, uint32_t count, uint32_t usage) {
    if (count > MaxSize) {
        dbWarningf("Size too large for VertexSet::Create()");
        return false;
    }
    m_Stride = GetVertexStride(format);
    m_Format = format & s_AllComponents;
    m_Size = static_cast<uint16_t>(count);
    m_Usage = usage;
    m_Locked.reset();
    m_cRange.assign(1, {.start = 0, .count = m_Size});
    m_pData.reset(static_cast<std::byte*>(MMAlloc(DataPool::Get(), std::max<size_t>(GetDataSize(), 1))));
    return true;
}

// Few vertices at a time, so that they are still in the cache when their next component comes.
bool MemoryVertexSet::CreateFrom(uint32_t format, uint32_t count, const Arrays& arrays, uint32_t usage) {
    if (!Create(format, count, usage))
        return false;
    constexpr uint32_t blockSize = 128;
    for (uint32_t start = 0; start < count; start += blockSize)
        for (uint32_t i = 0; i < VC_Count; ++i)
            if (m_Format[i])
                Fill(static_cast<VertexComponent>(i), arrays[i], start, std::min(blockSize, count - start));
    return true;
}

void MemoryVertexSet::Fill(VertexComponent component, const void* pArray, uint32_t start, uint32_t count) {
    static constexpr std::array<std::byte, 16> s_Zeros = {};
    const size_t size = s_ComponentSizes[component];
    std::byte* pTarget = m_pData.get() + GetComponentOffset(GetFormat(), component) + size_t{m_Stride} * start;
    if (pArray)
        CopyStrided(size, pTarget, m_Stride, static_cast<const std::byte*>(pArray) + size * start, size, count);
    else
        CopyStrided(size, pTarget, m_Stride, s_Zeros.data(), 0, count);
    if (component == VC_Weights)
        CopyStrided(s_BoneIndexBytes, pTarget + size, m_Stride, s_Zeros.data(), 0, count);
}

void* MemoryVertexSet::Lock(VertexComponent component, uint32_t start, uint32_t count, uint32_t& stride) {
    if (!m_Format[CheckedIndex(component)])
        return nullptr;
    if (count == WholeSet)
        count = m_Size;
    if (start > m_Size || count > m_Size - start) {
        dbWarningf("LockArray range exceeds size of VertexSet");
        return nullptr;
    }
    dbAssert(count);
    if (m_Locked[component])
        dbWarningf("VertexComponent already locked.");
    m_Locked.set(component);
    stride = m_Stride;
    return m_pData.get() + GetComponentOffset(GetFormat(), component) + size_t{m_Stride} * start;
}

void MemoryVertexSet::Unlock(VertexComponent component) {
    if (!m_Locked[CheckedIndex(component)])
        dbWarningf("VertexComponent not locked.");
    m_Locked.reset(component);
}

bool MemoryVertexSet::HasComponent(VertexComponent component) const { return m_Format[CheckedIndex(component)]; }

uint32_t MemoryVertexSet::AddRange(uint16_t start, uint16_t count) {
    dbAssert(start < m_Size);
    dbAssert(count > 0);
    dbAssert(count <= m_Size);
    if (start >= m_Size || count == 0 || count > m_Size)
        return 0;
    m_cRange.push_back({.start = start, .count = count});
    return static_cast<uint32_t>(m_cRange.size() - 1);
}

VertexRange MemoryVertexSet::GetRange(uint32_t id) const {
    dbAssert(id < m_cRange.size());
    return id < m_cRange.size() ? m_cRange[id] : m_cRange[0];
}

const void* MemoryVertexSet::GetData(VertexComponent component) const {
    return HasComponent(component) ? m_pData.get() + GetComponentOffset(GetFormat(), component) : nullptr;
}

} // namespace gz
