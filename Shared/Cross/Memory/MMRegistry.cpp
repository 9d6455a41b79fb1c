#include "Shared/Cross/Memory/MMRegistry.h"

#include "Shared/Cross/Memory/MMPoolHeap.h"
#include "Shared/Cross/Memory/MMPoolInfo.h"
#include "Shared/Cross/Memory/MMPoolRegion.h"
#include "Shared/Cross/Memory/MMPoolSmall.h"
#include "Shared/Cross/Memory/MMPoolTracking.h"
#include "Shared/Cross/Memory/MMPoolVM.h"
#include "Shared/Cross/Memory/MMSystem.h"
#include "Shared/PC/Memory/OSMemory.h"

#include <algorithm>
#include <atomic>
#include <cstring>

namespace {

// Never destroyed, so that pools can be used to the process's very end.
constinit MMRegistry s_Registry;
constinit std::atomic<bool> s_Ready = false;

} // namespace

MMRegistry& MMRegistry::Get() {
    if (!s_Ready.load(std::memory_order_acquire)) [[unlikely]] {
        const MMLockScope lock;
        if (!s_Ready.load(std::memory_order_relaxed))
            s_Registry.BringUp();
    }
    return s_Registry;
}

void MMRegistry::BringUp() {
    // A chunk serves as the buffer; a settings file of that length would be no text of ours.
    if (void* const pChunk = OSMemory::AllocChunk()) {
        const size_t length = OSMemory::ReadSettings("memory.ini", static_cast<char*>(pChunk), OSMemory::s_ChunkSize);
        m_Overrides.Read({static_cast<const char*>(pChunk), length});
        OSMemory::FreeChunk(pChunk);
    }
    m_pDefault = &Create("Default", MMPoolKind::Heap, 0, MMPoolFlag_None);
    m_pStrings = &Create("Strings", MMPoolKind::Heap, 0, MMPoolFlag_None);
    s_Ready.store(true, std::memory_order_release);
}

MMPoolBase& MMRegistry::MakePool(const char* pName, MMPoolKind kind, uint32_t initialSize, uint32_t flags) const {
    const MMOverride command = m_Overrides.Get(pName);
    if (command == MMOverride::OverWrite)
        return *MMNewPool<MMPoolVM>(pName, MMPoolVM::GetOverWriteMode(), flags);
    if (command == MMOverride::UnderWrite)
        return *MMNewPool<MMPoolVM>(pName, MMPoolVM::GetUnderWriteMode(), flags);
    MMPoolBase* pPool = nullptr;
    switch (kind) {
    case MMPoolKind::Heap:
        pPool = MMNewPool<MMPoolHeap>(pName, flags);
        break;
    case MMPoolKind::Small:
        pPool = MMNewPool<MMPoolSmall>(pName, flags);
        break;
    case MMPoolKind::Region:
        return *MMNewPool<MMPoolRegion>(pName, initialSize, flags); // never recorded: it knows no end of its blocks
    case MMPoolKind::Tracking:
        pPool = MMNewPool<MMPoolTracking>(pName, flags);
        break;
    default:
        MMFatalf("Pool %s, kind %u is none", pName, static_cast<uint32_t>(kind));
    }
    return command == MMOverride::Info ? *MMNewPool<MMPoolInfo>(*pPool) : *pPool;
}

MMPoolBase& MMRegistry::Create(const char* pName, MMPoolKind kind, uint32_t initialSize, uint32_t flags) {
    if (!pName)
        MMFatalf("A pool without a name");
    if (Find(pName))
        MMFatalf("Pool %s, the name is taken", pName);
    MMPoolBase& pool = MakePool(pName, kind, initialSize, flags);
    Add(pool);
    return pool;
}

MMPoolBase* MMRegistry::Find(const char* pName) const {
    MMPoolBase* pPool = m_pFirst;
    while (pPool && strncmp(pPool->GetName(), pName, MMPoolBase::MaxName - 1) != 0)
        pPool = pPool->m_pNext;
    return pPool;
}

void MMRegistry::Add(MMPoolBase& pool) {
    pool.m_pNext = std::exchange(m_pFirst, &pool);
    Slot* const pSlot = std::ranges::find(m_Slots, nullptr, &Slot::pPool);
    if (pSlot == std::end(m_Slots))
        return;
    pSlot->pPool = &pool;
    memcpy(pSlot->name, pool.GetName(), std::min(strlen(pool.GetName()), sizeof(pSlot->name) - 1));
}

void MMRegistry::Remove(MMPoolBase& pool) {
    MMPoolBase** ppLink = &m_pFirst;
    while (*ppLink && *ppLink != &pool)
        ppLink = &(*ppLink)->m_pNext;
    if (!*ppLink)
        MMFatalf("Pool %s isn't in the chain of pools", pool.GetName());
    *ppLink = pool.m_pNext;
    Slot* const pSlot = std::ranges::find(m_Slots, &pool, &Slot::pPool);
    if (pSlot != std::end(m_Slots))
        *pSlot = {};
}

void MMRegistry::Destroy(MMPoolBase& pool) {
    if (&pool == m_pDefault || &pool == m_pStrings)
        MMFatalf("Pool %s is a default pool and stays", pool.GetName());
    Remove(pool);
    if (const size_t live = pool.GetLiveCount(); live > 0)
        MMPrintf("MemoryLib: (INFO) : Pool %s, Leaks detected (%d)\n", pool.GetName(), static_cast<int>(live));
    else
        MMPrintf("MemoryLib: (INFO) : Pool %s\n", pool.GetName());
    pool.Close();
    pool.Destroy();
}
