#include "Shared/Cross/Memory/MMPoolTracking.h"

#include "Shared/Cross/Memory/MMSystem.h"

MMPoolTracking::MMPoolTracking(const char* pName, uint32_t flags) : MMPoolBase(pName, MMMagic::Tracking, flags) {}

void MMPoolTracking::Alloc(AllocRequest& request) {
    const MMLockScope lock; // "Default" is everybody's, even if this pool is one thread's own
    MMPoolDefault().Alloc(request);
    CountAlloc(request.size);
}

void MMPoolTracking::Realloc(AllocRequest& request, void* pOld) {
    const MMLockScope lock;
    const size_t oldSize = MMPoolDefault().GetSize(pOld);
    MMPoolDefault().Realloc(request, pOld);
    CountFree(oldSize);
    CountAlloc(request.size);
}

void MMPoolTracking::Free(void* pBlock, MMCall kind) {
    if (m_Counts.liveCount == 0)
        MMFatalf("Pool %s, block %p freed when none is live", GetName(), pBlock);
    const MMLockScope lock;
    const size_t size = MMPoolDefault().GetSize(pBlock);
    MMPoolDefault().Free(pBlock, kind);
    CountFree(size);
}

size_t MMPoolTracking::GetSize(const void* pBlock) {
    const MMLockScope lock;
    return MMPoolDefault().GetSize(pBlock);
}

void MMPoolTracking::Reset() {
    if (m_Counts.liveCount > 0)
        MMFatalf("Pool %s, reset with %zu live blocks that it can't free", GetName(), m_Counts.liveCount);
}

void MMPoolTracking::Destroy() { MMDeletePool(this); }
