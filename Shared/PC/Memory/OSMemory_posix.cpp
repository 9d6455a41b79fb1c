#include "Shared/PC/Memory/OSMemory.h"

#include <bit>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <mutex>
#include <utility>

#include <fcntl.h>
#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>
#include <unwind.h>

#ifdef PVX_GLOBAL_POOLS
// The runtime's allocator behind the public names, which lead to the pools in this build.
extern "C" {
void* __libc_malloc(size_t size);
void* __libc_memalign(size_t alignment, size_t size);
void* __libc_realloc(void* pBlock, size_t size);
void __libc_free(void* pBlock);
}
#endif

// Sanitizer builds look for the owners of heap blocks in memory that they were told of.
extern "C" [[gnu::weak]] void __lsan_register_root_region(const void* pStart, size_t size);

namespace OSMemory {

namespace {

constexpr size_t s_ChunkBatch = 16; // 1 MB a system call

// From there on the faults that large pages spare cost more than readying the heap.
constexpr size_t s_LeastExpected = 0x100000;

struct FreeChunkLink {
    FreeChunkLink* pNext;
};

constinit std::mutex s_ChunkMutex;
constinit FreeChunkLink* s_pFreeChunks = nullptr;
constinit char* s_pBatch = nullptr; // what is left of the last batch
constinit size_t s_BatchLeft = 0;

// Null when there is no room.
char* MapAligned(size_t size, size_t alignment) {
    const size_t whole = size + alignment;
    void* const pMapped = mmap(nullptr, whole, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (pMapped == MAP_FAILED)
        return nullptr;
    char* const pStart = static_cast<char*>(pMapped);
    const size_t lead = (alignment - reinterpret_cast<uintptr_t>(pStart) % alignment) % alignment;
    if (lead > 0)
        munmap(pStart, lead);
    munmap(pStart + lead + size, whole - lead - size);
    return pStart + lead;
}

bool MapBatch() {
    s_pBatch = MapAligned(s_ChunkBatch * s_ChunkSize, s_ChunkSize);
    if (!s_pBatch)
        return false;
    s_BatchLeft = s_ChunkBatch;
    if (__lsan_register_root_region)
        __lsan_register_root_region(s_pBatch, s_ChunkBatch * s_ChunkSize);
    return true;
}

// False when the heap can't be told, as in a sanitizer's build.
bool KeepFreed() {
    static const bool s_IsTold =
        mallopt(M_MMAP_MAX, 0) != 0 && mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max()) != 0;
    return s_IsTold;
}

struct Walk {
    const void** ppAddresses;
    uint32_t room;
    uint32_t skip;
    uint32_t count;
};

_Unwind_Reason_Code AddFrame(_Unwind_Context* pContext, void* pUser) {
    Walk& walk = *static_cast<Walk*>(pUser);
    if (walk.skip > 0) {
        --walk.skip;
        return _URC_NO_REASON;
    }
    if (walk.count == walk.room)
        return _URC_END_OF_STACK;
    walk.ppAddresses[walk.count++] = std::bit_cast<const void*>(_Unwind_GetIP(pContext));
    return _URC_NO_REASON;
}

// The settings folder with a closing slash. False when it is unknown or too long for the buffer.
bool GetSettingsFolder(char (&folder)[PATH_MAX]) {
    if (const char* pConfig = getenv("PVX_CONFIG"); pConfig && *pConfig) {
        const size_t length = strlen(pConfig);
        if (length + 2 > sizeof(folder))
            return false;
        memcpy(folder, pConfig, length);
        memcpy(folder + length, "/", 2);
        return true;
    }
    const ssize_t length = readlink("/proc/self/exe", folder, sizeof(folder) - 1);
    if (length <= 0)
        return false;
    folder[length] = '\0';
    char* const pSlash = strrchr(folder, '/');
    if (!pSlash)
        return false;
    pSlash[1] = '\0';
    return true;
}

} // namespace

#ifdef PVX_GLOBAL_POOLS
void* HeapAlloc(size_t size) { return __libc_malloc(size); }
void* HeapAllocAligned(size_t alignment, size_t size) { return __libc_memalign(alignment, size); }
void* HeapRealloc(void* pBlock, size_t size) { return __libc_realloc(pBlock, size); }
void HeapFree(void* pBlock) { __libc_free(pBlock); }

size_t HeapGetSize(void* pBlock) {
    // The word ahead of a block: its size with that of the word itself, and three bits of flags. A mapped block
    // (second bit) has one more word of overhead.
    const size_t word = static_cast<size_t*>(pBlock)[-1];
    return (word & ~size_t{7}) - ((word & 2) ? 2 : 1) * sizeof(size_t);
}
#else
void* HeapAlloc(size_t size) { return malloc(size); }
void* HeapAllocAligned(size_t alignment, size_t size) { return memalign(alignment, size); }
void* HeapRealloc(void* pBlock, size_t size) { return realloc(pBlock, size); }
void HeapFree(void* pBlock) { free(pBlock); }
size_t HeapGetSize(void* pBlock) { return malloc_usable_size(pBlock); }
#endif

void HeapExpect(size_t size) {
    if (size < s_LeastExpected || !KeepFreed())
        return;
    void* const pRoom = HeapAlloc(size);
    if (!pRoom)
        return;
    const size_t toPage = s_PageSize - reinterpret_cast<uintptr_t>(pRoom) % s_PageSize;
    // A system without large pages refuses.
    madvise(static_cast<char*>(pRoom) + toPage, size - toPage, MADV_HUGEPAGE);
    HeapFree(pRoom);
}

void* AllocChunk() {
    const std::lock_guard guard(s_ChunkMutex);
    if (s_pFreeChunks)
        return std::exchange(s_pFreeChunks, s_pFreeChunks->pNext);
    if (s_BatchLeft == 0 && !MapBatch())
        return nullptr;
    --s_BatchLeft;
    return std::exchange(s_pBatch, s_pBatch + s_ChunkSize);
}

void FreeChunk(void* pChunk) {
    const std::lock_guard guard(s_ChunkMutex);
    s_pFreeChunks = new (pChunk) FreeChunkLink{s_pFreeChunks};
}

void* ReservePages(size_t size) {
    void* const pPages = mmap(nullptr, size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    return pPages == MAP_FAILED ? nullptr : pPages;
}

bool OpenPages(void* pPages, size_t size) { return mprotect(pPages, size, PROT_READ | PROT_WRITE) == 0; }

bool ClosePages(void* pPages, size_t size) { return mprotect(pPages, size, PROT_NONE) == 0; }

void ReleasePages(void* pPages, size_t size) { munmap(pPages, size); }

uint32_t CaptureStack(const void** ppAddresses, uint32_t room, uint32_t skip) {
    Walk walk = {ppAddresses, room, skip + 1, 0};
    _Unwind_Backtrace(&AddFrame, &walk);
    return walk.count;
}

size_t ReadSettings(const char* pName, char* pBuffer, size_t room) {
    char path[PATH_MAX];
    if (!GetSettingsFolder(path) || strlen(path) + strlen(pName) >= sizeof(path))
        return 0;
    strcat(path, pName);
    const int file = open(path, O_RDONLY | O_CLOEXEC);
    if (file < 0)
        return 0;
    size_t length = 0;
    while (length < room) {
        const ssize_t got = read(file, pBuffer + length, room - length);
        if (got <= 0)
            break;
        length += static_cast<size_t>(got);
    }
    close(file);
    return length;
}

void WriteError(const char* pText, size_t length) {
    while (length > 0) {
        const ssize_t written = write(STDERR_FILENO, pText, length);
        if (written <= 0)
            return;
        pText += written;
        length -= static_cast<size_t>(written);
    }
}

void Stop() {
    raise(SIGTRAP);
    abort();
}

} // namespace OSMemory
