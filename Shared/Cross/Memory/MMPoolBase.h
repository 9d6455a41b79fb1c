#pragma once

#include "Shared/Cross/Memory/MMPool.h"
#include "Shared/Cross/Util/FourCC.h"

#include <algorithm>
#include <array>

class MMPoolHandle;

// What an operation on a pool was asked by. A block must be freed by the kind that belongs to the one it was allocated
// with: see MMFreeKindOf.
enum class MMCall : uint32_t {
    Alloc0 = 0,
    Alloc1 = 1,
    GeneralAlloc = 2, // in place of the runtime's
    GeneralRealloc = 3,
    Alloc4 = 4,
    PoolAlloc = 5, // on a named pool
    PoolRealloc = 6,
    Alloc7 = 7,
    Free0 = 10,
    Free1 = 11,
    GeneralFree = 12,
    Free4 = 13,
    PoolFree = 14,
    Free7 = 15,
};

constexpr uint32_t s_MMFreeKinds = 6;

// The kind that frees what `call`, an allocation, made.
constexpr MMCall MMFreeKindOf(MMCall call) {
    constexpr std::array<MMCall, 8> s_Kinds = {MMCall::Free0,       MMCall::Free1, MMCall::GeneralFree,
                                               MMCall::GeneralFree, MMCall::Free4, MMCall::PoolFree,
                                               MMCall::PoolFree,    MMCall::Free7};
    return s_Kinds[static_cast<uint32_t>(call) & 7];
}

// 0 to s_MMFreeKinds - 1, for tables by kind.
constexpr uint32_t MMFreeIndex(MMCall freeKind) { return static_cast<uint32_t>(freeKind) - 10; }

struct AllocRequest {
    static constexpr uint32_t StackWords = 32;

    AllocRequest(size_t theSize, MMCall theKind) : size(theSize), kind(theKind) {}

    void* pResult = nullptr; // out, never null
    size_t size;             // above 0
    uint64_t number = 0;     // of all allocations, from 1
    MMCall kind;
    uint32_t stackCount = 0; // words taken; only pools that ask for the stack get one
    const void* stack[StackWords];
};

enum class MMMagic : uint32_t {
    Region = FourCC("PLRG"),
    Small = FourCC("PLSM"),
    Heap = FourCC("POOL"),
    VM = FourCC("VMEM"),
    Tracking = FourCC("PLKT"),
    Info = FourCC("PLNF"),
};

// An allocator. The operations are called with the lock held, unless the pool is one thread's own, and with a size
// that was checked; use MMPool.h to call them.
class MMPoolBase {
public:
    static constexpr size_t MaxName = 64; // a longer name is cut

    MMPoolBase(const char* pName, MMMagic magic, uint32_t flags);
    virtual ~MMPoolBase();
    MMPoolBase(const MMPoolBase&) = delete;
    MMPoolBase& operator=(const MMPoolBase&) = delete;

    virtual void Alloc(AllocRequest& request) = 0;
    // The old block isn't null. It is gone afterwards, unless it is the result.
    virtual void Realloc(AllocRequest& request, void* pOld) = 0;
    virtual void Free(void* pBlock, MMCall kind) = 0;
    // At least what was asked for. 0 from a pool that doesn't know.
    virtual size_t GetSize(const void* pBlock) = 0;
    // Whether a live block starts here; never fatal. A pool that doesn't know says false.
    virtual bool Owns(const void* pBlock) = 0;
    // Gives all blocks back.
    virtual void Reset() = 0;
    virtual size_t GetUsedMemory() const { return m_Counts.usedMemory; }
    virtual size_t GetPeakMemory() const { return m_Counts.peakMemory; }
    virtual size_t GetLiveCount() const { return m_Counts.liveCount; }
    virtual size_t GetPeakCount() const { return m_Counts.peakCount; }
    // Frees the blocks and the object itself.
    virtual void Destroy() = 0;

    const char* GetName() const { return m_Name; }
    // Asked of handles too that may be no pool.
    __attribute__((no_sanitize("vptr"))) MMMagic GetMagic() const { return m_Magic; }
    uint32_t GetFlags() const { return m_Flags; }
    bool IsClosed() const { return m_Closed; }
    // From here on each operation on the pool but its end is fatal.
    void Close() { m_Closed = true; }

protected:
    void CountAlloc(size_t size) {
        m_Counts.usedMemory += size;
        m_Counts.peakMemory = std::max(m_Counts.peakMemory, m_Counts.usedMemory);
        ++m_Counts.liveCount;
        m_Counts.peakCount = std::max(m_Counts.peakCount, m_Counts.liveCount);
    }
    void CountFree(size_t size) {
        m_Counts.usedMemory -= size;
        --m_Counts.liveCount;
    }
    void ResetCounts();
    // Allocates, copies as much as both blocks hold, and frees the old one.
    void MoveBlock(AllocRequest& request, void* pOld, size_t oldSize);

    MMPoolCounts m_Counts;

private:
    friend class MMPoolHandle;
    friend class MMRegistry;

    char m_Name[MaxName];
    MMMagic m_Magic;
    uint32_t m_Flags;
    bool m_Closed = false;
    MMPoolBase* m_pNext = nullptr;          // of the chain of named pools
    MMPoolHandle* m_pFirstHandle = nullptr; // of those who hold the pool together
};
