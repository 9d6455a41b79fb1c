#pragma once

#include <cstddef>
#include <cstdint>

// Named memory pools. A pool is an allocator with a name, a kind and counters: it shows which subsystem uses how much
// memory, can give a whole region back at once, and is turned into a debugging allocator by a line in "memory.ini".
//
// How to take memory from a pool, shortest way first (MMAllocator.h has what is named here beside the functions below):
//
//     using InvNodesPool = MMNamedPool<"InvNodes", MMPoolKind::Small>;   // made at its first use
//     std::vector<Node, MMAllocator<Node, InvNodesPool>> nodes;          // a container on it
//     class Resource : public MMPooled<InvResourcesPool> { ... };        // new and delete of a class on it
//     auto pNode = MMMakeUnique<Node, InvNodesPool>(arguments);          // one object on it
//     void* pBytes = MMAlloc(InvNodesPool::Get(), size);                 // bare bytes; MMFree with the same pool
//
// The library never answers with a failure: a bad handle, a block freed twice or in another pool, a name taken and a
// heap without room stop the process at a breakpoint. So a size that comes from a file is checked before it gets here.
// A block is aligned for any object whose size is that of the block, up to 16 bytes.
//
// Nothing is set up before the first use of any pool, and nothing is torn down at the process's end: static objects
// may hold pool memory for as long as they like.

class MMPoolBase;

enum class MMPoolKind : uint32_t {
    Heap = 0,     // any size, every block can be freed by itself
    Small = 1,    // many blocks of up to 128 bytes, without a cost by block; a larger one goes to a heap behind it
    Region = 2,   // a bump allocator: free only counts; memory comes back when all of it is freed, or by a reset
    Tracking = 3, // only counters; the memory is that of "Default"
};

enum MMPoolFlags : uint32_t {
    MMPoolFlag_None = 0,
    MMPoolFlag_Fill = 1,   // new memory holds 0xFE in each byte
    MMPoolFlag_NoLock = 2, // the pool is used by one thread only
};

// A single block's limit in bytes: this much and more is fatal.
constexpr size_t s_MMSizeLimit = 0x20000000;

// Makes a pool. A name in use, or a null one, is fatal. `initialSize` is the number of 64 KB blocks that a region
// starts with; the other kinds take no notice of it.
MMPoolBase* MMPoolCreate(const char* pName, MMPoolKind kind, uint32_t initialSize = 0,
                         uint32_t flags = MMPoolFlag_None);
// Null when no pool has the name.
MMPoolBase* MMPoolFind(const char* pName);
// The pool of this name, made now if there is none; one that is there stays what it is.
MMPoolBase& MMPoolGet(const char* pName, MMPoolKind kind = MMPoolKind::Heap, uint32_t initialSize = 0,
                      uint32_t flags = MMPoolFlag_None);
// Says whether blocks are live, and frees them with the pool. Fatal for "Default" and "Strings".
void MMPoolDestroy(MMPoolBase* pPool);

MMPoolBase& MMPoolDefault();
MMPoolBase& MMPoolStrings();

// Never null. A size of 0 is fatal, and one from s_MMSizeLimit on.
void* MMAlloc(MMPoolBase& pool, size_t size);
// The block with its contents, at another place maybe. A null block is an allocation.
void* MMRealloc(MMPoolBase& pool, void* pBlock, size_t size);
// A null block is no mistake.
void MMFree(MMPoolBase& pool, void* pBlock);
// Gives all blocks back at once. The caller holds none of them any more.
void MMPoolReset(MMPoolBase& pool);

struct MMPoolCounts {
    size_t usedMemory = 0; // bytes of the live blocks
    size_t peakMemory = 0;
    size_t liveCount = 0;
    size_t peakCount = 0;
};
MMPoolCounts MMPoolGetCounts(MMPoolBase& pool);

// All allocations of all pools so far. The number of an allocation counts from 1.
struct MMTotals {
    uint64_t count = 0;
    uint64_t bytes = 0;
};
MMTotals MMGetTotals();

// What the library has to say (each text ends with a line end) goes to a debugger, never to the log: to the function
// set here, or nowhere. A fatal stop says its reason on standard error as well. The function must not use a pool.
using MMOutput = void (*)(const char* pText);
void MMSetOutput(MMOutput pOutput);
