#pragma once

#include <cstddef>
#include <cstdint>

// What the memory pools need of the operating system. Nothing in here allocates by the process's own allocation
// functions, since a build may have routed those to the pools.
namespace OSMemory {

constexpr size_t s_PageSize = 0x1000;
constexpr size_t s_ChunkSize = 0x10000;

// The runtime's own heap. Null when it has no room.
void* HeapAlloc(size_t size);
void* HeapAllocAligned(size_t alignment, size_t size);
// A null block is an allocation.
void* HeapRealloc(void* pBlock, size_t size);
void HeapFree(void* pBlock);
size_t HeapGetSize(void* pBlock);
// Readies the heap for that many bytes more: from now on it keeps what is freed for who asks next, and what it takes
// from the system for them comes in large pages where the system has some. Only what gets used is taken. Less than a
// megabyte changes nothing.
void HeapExpect(size_t size);

// Chunks of 64 KB, aligned to their size, with any contents. Null when there is no room. May be called from any thread;
// chunks given back are kept for the next who asks.
void* AllocChunk();
void FreeChunk(void* pChunk);

// Address space in whole pages, without access at first; null or false when the system refuses. Opened pages can be
// read and written, and hold zeroes the first time; closed ones fault at every access and keep their contents.
void* ReservePages(size_t size);
bool OpenPages(void* pPages, size_t size);
bool ClosePages(void* pPages, size_t size);
void ReleasePages(void* pPages, size_t size);

// The caller's return addresses, innermost first, without the first `skip`; answers how many.
uint32_t CaptureStack(const void** ppAddresses, uint32_t room, uint32_t skip);

// Reads a settings file that lies beside the executable, or in the folder that the environment's PVX_CONFIG names.
// Answers the number of bytes; what doesn't fit is left out, and a file that can't be read has none.
size_t ReadSettings(const char* pName, char* pBuffer, size_t room);

void WriteError(const char* pText, size_t length);
// Never comes back, even if a debugger steps on.
[[noreturn]] void Stop();

} // namespace OSMemory
