#pragma once

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/Memory/MMAllocator.h"

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <vector>

// Memory for large objects of one kind that come and go: slots out of blocks of `PerBlock`, which are kept for the
// next object until the allocator goes. Safe to be used by any thread.
template <class T, size_t PerBlock, class Pool>
class FixedSizeObjAllocator {
public:
    // `pSignature` stands in the message about objects that outlive the allocator.
    explicit FixedSizeObjAllocator(const char* pSignature) : m_pSignature(pSignature) {}
    ~FixedSizeObjAllocator() {
        const size_t leaks = m_Blocks.size() * PerBlock - m_freeSpots.size();
        if (leaks > 0) {
            // Their memory stays: whoever still holds one may go on using it.
            dbPrintf("Leaks detected in fixed size allocator (%d, signature %s)", static_cast<int>(leaks),
                     m_pSignature);
            return;
        }
        for (std::byte* pBlock : m_Blocks)
            MMFree(Pool::Get(), pBlock);
    }
    FixedSizeObjAllocator(const FixedSizeObjAllocator&) = delete;
    FixedSizeObjAllocator& operator=(const FixedSizeObjAllocator&) = delete;

    // Uninitialised memory for one object; null when there is no more.
    void* Allocate() {
        const std::lock_guard lock(m_Mutex);
        if (m_freeSpots.empty())
            AddBlock();
        dbAssert(!m_freeSpots.empty());
        if (m_freeSpots.empty())
            return nullptr;
        void* pSpot = m_freeSpots.back();
        m_freeSpots.pop_back();
        return pSpot;
    }
    void Free(void* pSpot) {
        const std::lock_guard lock(m_Mutex);
        m_freeSpots.push_back(pSpot);
    }

private:
    static constexpr size_t s_SlotSize = (sizeof(T) + 7) / 8 * 8;

    void AddBlock() {
        auto* newBlock = static_cast<std::byte*>(MMAlloc(Pool::Get(), s_SlotSize * PerBlock));
        dbAssert(newBlock);
        if (!newBlock)
            return;
        m_Blocks.push_back(newBlock);
        m_freeSpots.reserve(m_Blocks.size() * PerBlock); // so that Free never allocates
        for (size_t i = PerBlock; i > 0; --i)
            m_freeSpots.push_back(newBlock + (i - 1) * s_SlotSize);
    }

    const char* m_pSignature;
    std::mutex m_Mutex;
    std::vector<std::byte*> m_Blocks; // owned, of the pool
    std::vector<void*> m_freeSpots;
};
