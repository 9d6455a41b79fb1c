#pragma once

#include "Shared/Cross/Memory/MMPoolBase.h"
#include "Shared/PC/Memory/OSLock.h"

#include <new>
#include <utility>

// What the pools of this folder share.

// One critical section for all pools.
OSLock& MMGetLock();

class MMLockScope {
public:
    explicit MMLockScope(uint32_t flags = MMPoolFlag_None) : m_Locks(!(flags & MMPoolFlag_NoLock)) {
        if (m_Locks)
            MMGetLock().Enter();
    }
    ~MMLockScope() {
        if (m_Locks)
            MMGetLock().Leave();
    }
    MMLockScope(const MMLockScope&) = delete;
    MMLockScope& operator=(const MMLockScope&) = delete;

private:
    bool m_Locks;
};

// To whom MMSetOutput says, at most 511 bytes.
[[gnu::format(printf, 1, 2)]] void MMPrintf(const char* pFormat, ...);
// Says why, without a line end in the text, and stops the process at a breakpoint.
[[noreturn, gnu::format(printf, 1, 2)]] void MMFatalf(const char* pFormat, ...);

// Fatal for what bears none of the six magics, and for a closed pool.
void MMCheckPool(const MMPoolBase& pool);

// Fatal unless `freeKind` frees what `allocKind` made.
inline void MMCheckKind(const MMPoolBase& pool, const void* pBlock, MMCall allocKind, MMCall freeKind) {
    if (MMFreeKindOf(allocKind) != freeKind) [[unlikely]]
        MMFatalf("Pool %s, block %p of kind %u freed by kind %u", pool.GetName(), pBlock,
                 static_cast<uint32_t>(allocKind), static_cast<uint32_t>(freeKind));
}

// The pools' own objects lie apart, in cells that are used again for nothing else: the magic of a pool that is gone can
// still be looked at.
constexpr size_t s_MMCellSize = 1024;
void* MMAllocCell();
void MMFreeCell(void* pCell);

template <class Pool, class... Arguments>
Pool* MMNewPool(Arguments&&... arguments) {
    static_assert(sizeof(Pool) <= s_MMCellSize);
    return new (MMAllocCell()) Pool(std::forward<Arguments>(arguments)...);
}

template <class Pool>
void MMDeletePool(Pool* pPool) {
    pPool->~Pool();
    MMFreeCell(pPool);
}

// Numbers the allocation, counts it and hands it to the pool.
void* MMRunAlloc(MMPoolBase& pool, AllocRequest& request);
void* MMRunRealloc(MMPoolBase& pool, AllocRequest& request, void* pOld);
void MMRunFree(MMPoolBase& pool, void* pBlock, MMCall kind);
