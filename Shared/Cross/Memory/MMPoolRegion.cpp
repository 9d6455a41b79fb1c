#include "Shared/Cross/Memory/MMPoolRegion.h"

#include "Shared/Cross/Memory/MMSystem.h"
#include "Shared/PC/Memory/OSMemory.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr size_t s_Alignment = 16;

} // namespace

// A header, then room to the end of its chunk.
struct MMPoolRegion::Block {
    alignas(s_Alignment) Block* pNext;
};

// The header of a block of "Default".
struct MMPoolRegion::Large {
    Large* pNext;
    size_t size;
    MMCall kind;
};

namespace {

constexpr size_t s_LargeHeader = 32; // keeps the block's alignment

} // namespace

MMPoolRegion::MMPoolRegion(const char* pName, uint32_t blocks, uint32_t flags)
    : MMPoolBase(pName, MMMagic::Region, flags), m_pFirst(NewBlock(pName)) {
    static_assert(sizeof(Large) <= s_LargeHeader);
    for (uint32_t i = 1; i < blocks; ++i) {
        Block* const pBlock = NewBlock(pName);
        pBlock->pNext = std::exchange(m_pFirst, pBlock);
    }
    MakeCurrent(m_pFirst);
}

MMPoolRegion::~MMPoolRegion() {
    FreeLarge();
    for (Block* pBlock = m_pFirst; pBlock;) {
        Block* const pNext = pBlock->pNext;
        OSMemory::FreeChunk(pBlock);
        pBlock = pNext;
    }
}

MMPoolRegion::Block* MMPoolRegion::NewBlock(const char* pName) {
    void* const pChunk = OSMemory::AllocChunk();
    if (!pChunk)
        MMFatalf("Pool %s, no room for a further block", pName);
    return new (pChunk) Block{nullptr};
}

void MMPoolRegion::MakeCurrent(Block* pBlock) {
    m_pCurrent = pBlock;
    m_pPosition = reinterpret_cast<char*>(pBlock + 1);
    m_pEnd = reinterpret_cast<char*>(pBlock) + OSMemory::s_ChunkSize;
}

void MMPoolRegion::Alloc(AllocRequest& request) {
    if (request.size > LargestBump) {
        AllocLarge(request);
    } else {
        const size_t size = (request.size + s_Alignment - 1) & ~(s_Alignment - 1);
        if (size > static_cast<size_t>(m_pEnd - m_pPosition)) {
            if (!m_pCurrent->pNext)
                m_pCurrent->pNext = NewBlock(GetName());
            MakeCurrent(m_pCurrent->pNext);
        }
        request.pResult = std::exchange(m_pPosition, m_pPosition + size);
    }
    CountAlloc(request.size);
    ++m_Live[MMFreeIndex(MMFreeKindOf(request.kind))];
}

void MMPoolRegion::AllocLarge(AllocRequest& request) {
    const MMLockScope lock; // "Default" is everybody's, even if this pool is one thread's own
    AllocRequest large = request;
    large.size += s_LargeHeader;
    MMPoolDefault().Alloc(large);
    m_pLarge = new (large.pResult) Large{m_pLarge, request.size, request.kind};
    request.pResult = static_cast<char*>(large.pResult) + s_LargeHeader;
}

void MMPoolRegion::FreeLarge() {
    const MMLockScope lock;
    while (m_pLarge) {
        Large* const pLarge = std::exchange(m_pLarge, m_pLarge->pNext);
        MMPoolDefault().Free(pLarge, MMFreeKindOf(pLarge->kind));
    }
}

const char* MMPoolRegion::GetEndOfBlock(const void* pAt) const {
    for (const Large* pLarge = m_pLarge; pLarge; pLarge = pLarge->pNext) {
        const char* const pStart = reinterpret_cast<const char*>(pLarge) + s_LargeHeader;
        if (pStart == pAt)
            return pStart + pLarge->size;
    }
    const size_t offset = reinterpret_cast<uintptr_t>(pAt) & (OSMemory::s_ChunkSize - 1);
    return static_cast<const char*>(pAt) + (OSMemory::s_ChunkSize - offset);
}

// A region doesn't know where a block ends, so what lies behind a small block may come along; the caller's bytes are
// among it, and the rest is as undefined as new memory is.
void MMPoolRegion::Realloc(AllocRequest& request, void* pOld) {
    const size_t room = static_cast<size_t>(GetEndOfBlock(pOld) - static_cast<char*>(pOld));
    Alloc(request);
    memmove(request.pResult, pOld, std::min(room, request.size)); // the new block may start within that room
    Free(pOld, MMFreeKindOf(request.kind));
}

void MMPoolRegion::Free(void* pBlock, MMCall kind) {
    size_t& live = m_Live[MMFreeIndex(kind)];
    if (live == 0)
        MMFatalf("Pool %s, block %p freed by kind %u when none of its kind is live", GetName(), pBlock,
                 static_cast<uint32_t>(kind));
    --live;
    if (--m_Counts.liveCount == 0)
        MMPoolRegion::Reset();
}

void MMPoolRegion::Reset() {
    FreeLarge();
    MakeCurrent(m_pFirst);
    std::ranges::fill(m_Live, 0);
    ResetCounts();
}

void MMPoolRegion::Destroy() { MMDeletePool(this); }
