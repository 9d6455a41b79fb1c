#pragma once

#include "Shared/Cross/Memory/MMSystem.h"
#include "Shared/PC/Memory/OSMemory.h"

// Memory for the books that pools keep: never of a pool, whatever the process's allocation functions lead to.
template <class T>
class MMRawAllocator {
public:
    using value_type = T;

    MMRawAllocator() = default;
    template <class Other>
    MMRawAllocator(const MMRawAllocator<Other>&) {}

    T* allocate(size_t count) {
        // A T may be a pointer, and then it is the pointer's size that is meant.
        // NOLINTNEXTLINE(bugprone-sizeof-expression)
        void* const pBlock = count < SIZE_MAX / sizeof(T) ? OSMemory::HeapAlloc(count * sizeof(T)) : nullptr;
        if (!pBlock)
            MMFatalf("No memory for %zu records of a pool", count);
        return static_cast<T*>(pBlock);
    }
    void deallocate(T* pBlock, size_t) { OSMemory::HeapFree(pBlock); }

    template <class Other>
    bool operator==(const MMRawAllocator<Other>&) const {
        return true;
    }
};
