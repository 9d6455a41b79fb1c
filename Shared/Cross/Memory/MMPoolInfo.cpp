#include "Shared/Cross/Memory/MMPoolInfo.h"

#include "Shared/Cross/Memory/MMStackTable.h"
#include "Shared/Cross/Memory/MMSystem.h"

#include <algorithm>

namespace {

// The classic hash of P. J. Weinberger over the bytes of the address, lowest first.
uint32_t HashAddress(const void* pBlock) {
    uint32_t hash = 0;
    uintptr_t address = reinterpret_cast<uintptr_t>(pBlock);
    for (size_t i = 0; i < sizeof(address); ++i, address >>= 8) {
        hash = (hash << 4) + static_cast<uint8_t>(address);
        const uint32_t top = hash & 0xF0000000;
        hash = (hash ^ top >> 24) & ~top;
    }
    return hash;
}

} // namespace

MMPoolInfo::MMPoolInfo(MMPoolBase& inner)
    : MMPoolBase(inner.GetName(), MMMagic::Info, inner.GetFlags()), m_Inner(inner) {}

MMPoolInfo::~MMPoolInfo() { m_Inner.Destroy(); }

uint32_t& MMPoolInfo::GetBucket(const void* pBlock) { return m_Buckets[HashAddress(pBlock) % m_Buckets.size()]; }

const MMPoolInfo::Record* MMPoolInfo::FindRecord(const void* pBlock) const {
    if (m_Buckets.empty())
        return nullptr;
    uint32_t at = m_Buckets[HashAddress(pBlock) % m_Buckets.size()];
    while (at != 0 && m_Records[at - 1].pBlock != pBlock)
        at = m_Records[at - 1].next;
    return at != 0 ? &m_Records[at - 1] : nullptr;
}

const MMPoolInfo::Record& MMPoolInfo::GetRecord(const void* pBlock) const {
    const Record* const pRecord = FindRecord(pBlock);
    if (!pRecord)
        MMFatalf("Pool %s, no live block starts at %p", GetName(), pBlock);
    return *pRecord;
}

void MMPoolInfo::Grow() {
    const auto* const pSize = std::ranges::find_if(s_Sizes, [&](uint32_t size) { return size > m_Records.size(); });
    if (pSize == std::end(s_Sizes))
        MMFatalf("Pool %s, more than %zu blocks to record", GetName(), m_Records.size());
    m_Records.reserve(*pSize);
    m_Buckets.assign(*pSize, 0);
    for (uint32_t i = 0; i < m_Records.size(); ++i)
        m_Records[i].next = std::exchange(GetBucket(m_Records[i].pBlock), i + 1);
}

void MMPoolInfo::AddRecord(const AllocRequest& request) {
    if (m_FirstUnused == 0) {
        if (m_Records.size() == m_Buckets.size())
            Grow();
        m_Records.emplace_back();
        m_FirstUnused = static_cast<uint32_t>(m_Records.size());
        m_Records.back().next = 0;
    }
    const uint32_t at = m_FirstUnused;
    Record& record = m_Records[at - 1];
    m_FirstUnused = record.next;
    record.pBlock = request.pResult;
    record.number = static_cast<uint32_t>(request.number);
    record.stack = MMStackTable::Add({request.stack, request.stackCount});
    record.size = static_cast<uint32_t>(request.size) & (s_MMSizeLimit - 1);
    record.kind = static_cast<uint32_t>(request.kind) & 7;
    record.next = std::exchange(GetBucket(request.pResult), at);
    CountAlloc(request.size);
}

void MMPoolInfo::RemoveRecord(const void* pBlock) {
    uint32_t* pLink = &GetBucket(pBlock);
    while (m_Records[*pLink - 1].pBlock != pBlock)
        pLink = &m_Records[*pLink - 1].next;
    const uint32_t at = *pLink;
    Record& record = m_Records[at - 1];
    CountFree(record.size);
    *pLink = std::exchange(record.next, m_FirstUnused);
    record.pBlock = nullptr;
    m_FirstUnused = at;
}

void MMPoolInfo::Alloc(AllocRequest& request) {
    m_Inner.Alloc(request);
    AddRecord(request);
}

void MMPoolInfo::Realloc(AllocRequest& request, void* pOld) {
    MMCheckKind(*this, pOld, static_cast<MMCall>(GetRecord(pOld).kind), MMFreeKindOf(request.kind));
    RemoveRecord(pOld);
    m_Inner.Realloc(request, pOld);
    AddRecord(request);
}

void MMPoolInfo::Free(void* pBlock, MMCall kind) {
    MMCheckKind(*this, pBlock, static_cast<MMCall>(GetRecord(pBlock).kind), kind);
    RemoveRecord(pBlock);
    m_Inner.Free(pBlock, kind);
}

size_t MMPoolInfo::GetSize(const void* pBlock) { return GetRecord(pBlock).size; }

void MMPoolInfo::Clear() {
    m_Records.clear();
    std::ranges::fill(m_Buckets, 0);
    m_FirstUnused = 0;
}

void MMPoolInfo::Reset() {
    m_Inner.Reset();
    Clear();
    ResetCounts();
}

void MMPoolInfo::Destroy() {
    MMPrintf("MemoryLib: (INFO) : Pool %s, max alloc %d, max memory %d\n", GetName(),
             static_cast<int>(m_Counts.peakCount), static_cast<int>(m_Counts.peakMemory));
    MMDeletePool(this);
}
