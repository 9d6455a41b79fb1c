// The process's allocation functions, led to the pool "Default". What a pool can't serve goes to the runtime's heap:
// blocks of no pool's size and those with an alignment beyond 16. Strings of the runtime and C++ objects come here as
// well, since their functions are built on these.

#include "Shared/Cross/Memory/MMSystem.h"
#include "Shared/PC/Memory/OSMemory.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include <malloc.h>
#include <pthread.h>

namespace {

constexpr size_t s_Alignment = 16;

// A child of fork has only the thread that forked, which must not find the lock held by another one.
const int s_AtFork =
    pthread_atfork([] { MMGetLock().Enter(); }, [] { MMGetLock().Leave(); }, [] { MMGetLock().Leave(); });

// Compilers count on the alignment of these blocks, and a guarded pool aligns a block as little as its size is.
size_t GetPoolSize(size_t size) {
    const size_t wanted = std::max<size_t>(size, 1);
    return MMPoolDefault().GetMagic() == MMMagic::VM ? (wanted + s_Alignment - 1) & ~(s_Alignment - 1) : wanted;
}

bool IsOfPool(const void* pBlock) {
    const MMLockScope lock;
    return MMPoolDefault().Owns(pBlock);
}

void* Allocate(size_t size) {
    const size_t poolSize = GetPoolSize(size);
    if (poolSize >= s_MMSizeLimit || size >= s_MMSizeLimit)
        return OSMemory::HeapAlloc(size);
    AllocRequest request(poolSize, MMCall::GeneralAlloc);
    return MMRunAlloc(MMPoolDefault(), request);
}

void* AllocateAligned(size_t alignment, size_t size) {
    return alignment <= s_Alignment ? Allocate(size) : OSMemory::HeapAllocAligned(alignment, size);
}

size_t GetUsableSize(void* pBlock) {
    const MMLockScope lock;
    return MMPoolDefault().Owns(pBlock) ? MMPoolDefault().GetSize(pBlock) : OSMemory::HeapGetSize(pBlock);
}

void Release(void* pBlock) {
    if (!pBlock)
        return;
    if (IsOfPool(pBlock))
        MMRunFree(MMPoolDefault(), pBlock, MMCall::GeneralFree);
    else
        OSMemory::HeapFree(pBlock);
}

// From the pool to the runtime's heap. Null, with the old block untouched, when there is no room.
void* MoveToRuntime(void* pOld, size_t size) {
    void* const pNew = OSMemory::HeapAlloc(size);
    if (!pNew)
        return nullptr;
    memcpy(pNew, pOld, std::min(size, GetUsableSize(pOld)));
    Release(pOld);
    return pNew;
}

} // namespace

extern "C" {

void* malloc(size_t size) noexcept { return Allocate(size); }

void free(void* pBlock) noexcept {
    const int error = errno;
    Release(pBlock);
    errno = error;
}

void* calloc(size_t count, size_t size) noexcept {
    size_t total;
    if (__builtin_mul_overflow(count, size, &total)) {
        errno = ENOMEM;
        return nullptr;
    }
    void* const pBlock = Allocate(total);
    return pBlock ? memset(pBlock, 0, total) : nullptr;
}

void* realloc(void* pOld, size_t size) noexcept {
    if (!pOld)
        return Allocate(size);
    if (size == 0) {
        Release(pOld);
        return nullptr;
    }
    if (!IsOfPool(pOld))
        return OSMemory::HeapRealloc(pOld, size);
    const size_t poolSize = GetPoolSize(size);
    if (poolSize >= s_MMSizeLimit || size >= s_MMSizeLimit)
        return MoveToRuntime(pOld, size);
    AllocRequest request(poolSize, MMCall::GeneralRealloc);
    return MMRunRealloc(MMPoolDefault(), request, pOld);
}

void* memalign(size_t alignment, size_t size) noexcept { return AllocateAligned(alignment, size); }

void* aligned_alloc(size_t alignment, size_t size) noexcept { return AllocateAligned(alignment, size); }

int posix_memalign(void** ppBlock, size_t alignment, size_t size) noexcept {
    if (alignment < sizeof(void*) || (alignment & (alignment - 1)) != 0)
        return EINVAL;
    void* const pBlock = AllocateAligned(alignment, size);
    if (!pBlock)
        return ENOMEM;
    *ppBlock = pBlock;
    return 0;
}

void* valloc(size_t size) noexcept { return AllocateAligned(OSMemory::s_PageSize, size); }

void* pvalloc(size_t size) noexcept {
    return AllocateAligned(OSMemory::s_PageSize, (size + OSMemory::s_PageSize - 1) & ~(OSMemory::s_PageSize - 1));
}

size_t malloc_usable_size(void* pBlock) noexcept { return pBlock ? GetUsableSize(pBlock) : 0; }

} // extern "C"
