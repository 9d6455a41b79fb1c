#include "Shared/Cross/Glaze/MemoryVertexSet.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

#include "Shared/Cross/Debug/db.h"

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
    const size_t size = size_t{m_Stride} * count;
    m_pData.reset(static_cast<std::byte*>(MMAlloc(DataPool::Get(), std::max<size_t>(size, 1))));
    std::memset(m_pData.get(), 0, size);
    m_Format = format & s_AllComponents;
    m_Size = static_cast<uint16_t>(count);
    m_Usage = usage;
    m_Locked.reset();
    m_cRange.assign(1, {.start = 0, .count = m_Size});
    return true;
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
