#include "Shared/Cross/Memory/MMSystem.h"

#include "Shared/PC/Memory/OSMemory.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace {

constexpr uint8_t s_FillByte = 0xFE;

struct CellLink {
    CellLink* pNext;
};

// Nothing of this has a destructor that does anything: static objects of others may use pools to the very end.
constinit OSLock s_Lock;
constinit std::atomic<MMOutput> s_pOutput = nullptr;
constinit std::atomic<uint64_t> s_TotalCount = 0;
constinit std::atomic<uint64_t> s_TotalBytes = 0;
constinit CellLink* s_pFreeCells = nullptr;
// What no cell was cut off yet. It is left untouched, since each of its pages costs the process a fault.
constinit char* s_pUncut = nullptr;
constinit size_t s_UncutSize = 0;

// Answers the value before. Interlocked as soon as there is a second thread.
uint64_t Add(std::atomic<uint64_t>& counter, uint64_t amount) {
    if (!OSIsSingleThreaded())
        return counter.fetch_add(amount, std::memory_order_relaxed);
    const uint64_t before = counter.load(std::memory_order_relaxed);
    counter.store(before + amount, std::memory_order_relaxed);
    return before;
}

// Everything about a request that is worked out before the lock is taken.
void Prepare(const MMPoolBase& pool, AllocRequest& request) {
    MMCheckPool(pool);
    if (request.size == 0) [[unlikely]]
        MMFatalf("Pool %s, allocation of no bytes", pool.GetName());
    request.number = Add(s_TotalCount, 1) + 1;
    Add(s_TotalBytes, request.size);
    if (pool.GetMagic() == MMMagic::Info) [[unlikely]]
        request.stackCount = OSMemory::CaptureStack(request.stack, AllocRequest::StackWords, 2);
}

void Fill(void* pBlock, size_t from, size_t size) {
    if (from < size)
        memset(static_cast<char*>(pBlock) + from, s_FillByte, size - from);
}

size_t Format(char* pBuffer, size_t room, const char* pFormat, va_list arguments) {
    const int length = vsnprintf(pBuffer, room, pFormat, arguments);
    return length < 0 ? 0 : std::min(static_cast<size_t>(length), room - 1);
}

} // namespace

OSLock& MMGetLock() { return s_Lock; }

// What it looks at may be no pool at all, which is what it is for.
__attribute__((no_sanitize("vptr"))) void MMCheckPool(const MMPoolBase& pool) {
    switch (pool.GetMagic()) {
    case MMMagic::Region:
    case MMMagic::Small:
    case MMMagic::Heap:
    case MMMagic::VM:
    case MMMagic::Tracking:
    case MMMagic::Info:
        break;
    default:
        MMFatalf("Handle %p is no pool", static_cast<const void*>(&pool));
    }
    if (pool.IsClosed()) [[unlikely]]
        MMFatalf("Pool %s is closed", pool.GetName());
}

void MMSetOutput(MMOutput pOutput) { s_pOutput = pOutput; }

void MMPrintf(const char* pFormat, ...) {
    const MMOutput pOutput = s_pOutput;
    if (!pOutput)
        return;
    char text[512];
    va_list arguments;
    va_start(arguments, pFormat);
    Format(text, sizeof(text), pFormat, arguments);
    va_end(arguments);
    pOutput(text);
}

void MMFatalf(const char* pFormat, ...) {
    char reason[400];
    va_list arguments;
    va_start(arguments, pFormat);
    Format(reason, sizeof(reason), pFormat, arguments);
    va_end(arguments);
    char text[512];
    const int length = snprintf(text, sizeof(text), "MemoryLib: (FATAL) : %s\n", reason);
    OSMemory::WriteError(text, static_cast<size_t>(length));
    if (const MMOutput pOutput = s_pOutput)
        pOutput(text);
    OSMemory::Stop();
}

void* MMAllocCell() {
    const MMLockScope lock;
    if (s_pFreeCells)
        return std::exchange(s_pFreeCells, s_pFreeCells->pNext);
    if (s_UncutSize == 0) {
        s_pUncut = static_cast<char*>(OSMemory::AllocChunk());
        if (!s_pUncut)
            MMFatalf("No memory for the objects of pools");
        s_UncutSize = OSMemory::s_ChunkSize;
    }
    s_UncutSize -= s_MMCellSize;
    return std::exchange(s_pUncut, s_pUncut + s_MMCellSize);
}

void MMFreeCell(void* pCell) {
    const MMLockScope lock;
    s_pFreeCells = new (pCell) CellLink{s_pFreeCells};
}

void* MMRunAlloc(MMPoolBase& pool, AllocRequest& request) {
    Prepare(pool, request);
    const MMLockScope lock(pool.GetFlags());
    pool.Alloc(request);
    if (pool.GetFlags() & MMPoolFlag_Fill) [[unlikely]]
        Fill(request.pResult, 0, request.size);
    return request.pResult;
}

void* MMRunRealloc(MMPoolBase& pool, AllocRequest& request, void* pOld) {
    if (!pOld)
        return MMRunAlloc(pool, request);
    Prepare(pool, request);
    const MMLockScope lock(pool.GetFlags());
    const bool fills = pool.GetFlags() & MMPoolFlag_Fill;
    const size_t oldSize = fills ? pool.GetSize(pOld) : 0;
    pool.Realloc(request, pOld);
    if (oldSize > 0)
        Fill(request.pResult, oldSize, request.size);
    return request.pResult;
}

void MMRunFree(MMPoolBase& pool, void* pBlock, MMCall kind) {
    MMCheckPool(pool);
    if (!pBlock)
        return;
    const MMLockScope lock(pool.GetFlags());
    pool.Free(pBlock, kind);
}

void* MMAlloc(MMPoolBase& pool, size_t size) {
    AllocRequest request(size, MMCall::PoolAlloc);
    return MMRunAlloc(pool, request);
}

void* MMRealloc(MMPoolBase& pool, void* pBlock, size_t size) {
    AllocRequest request(size, MMCall::PoolRealloc);
    return MMRunRealloc(pool, request, pBlock);
}

void MMFree(MMPoolBase& pool, void* pBlock) { MMRunFree(pool, pBlock, MMCall::PoolFree); }

void MMPoolReset(MMPoolBase& pool) {
    MMCheckPool(pool);
    const MMLockScope lock(pool.GetFlags());
    pool.Reset();
}

MMPoolCounts MMPoolGetCounts(MMPoolBase& pool) {
    MMCheckPool(pool);
    const MMLockScope lock(pool.GetFlags());
    return {pool.GetUsedMemory(), pool.GetPeakMemory(), pool.GetLiveCount(), pool.GetPeakCount()};
}

MMTotals MMGetTotals() {
    return {s_TotalCount.load(std::memory_order_relaxed), s_TotalBytes.load(std::memory_order_relaxed)};
}
