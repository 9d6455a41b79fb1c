#pragma once

#include "Shared/Cross/Memory/MMPool.h"

#include <algorithm>
#include <memory>
#include <new>
#include <utility>

// The ways into a pool for C++ code. Each takes a pool's type: anything with a static `MMPoolBase& Get()`.

template <size_t Length>
struct MMPoolName {
    char text[Length];
    // Implicit, so that a literal can stand as a template's argument.
    constexpr MMPoolName(const char (&source)[Length]) { std::copy_n(source, Length, text); }
};

// A pool by its name, made by whoever comes first. Whoever destroys it must be the last of its users.
template <MMPoolName Name, MMPoolKind Kind = MMPoolKind::Heap, uint32_t InitialSize = 0,
          uint32_t Flags = MMPoolFlag_None>
struct MMNamedPool {
    static MMPoolBase& Get() {
        static MMPoolBase& s_Pool = MMPoolGet(Name.text, Kind, InitialSize, Flags);
        return s_Pool;
    }
};

// For the containers of the standard library. Holds nothing, so all allocators of one pool are equal.
template <class T, class Pool>
class MMAllocator {
public:
    using value_type = T;
    template <class Other>
    struct rebind {
        using other = MMAllocator<Other, Pool>;
    };

    MMAllocator() = default;
    template <class Other>
    MMAllocator(const MMAllocator<Other, Pool>&) {}

    // Throws std::bad_alloc from the pools' limit on, where the pool itself would stop the process.
    T* allocate(size_t count) {
        static_assert(alignof(T) <= 16, "pools align to 16 bytes at most");
        if (count > max_size())
            throw std::bad_alloc();
        return static_cast<T*>(MMAlloc(Pool::Get(), std::max<size_t>(count * sizeof(T), 1)));
    }
    void deallocate(T* pBlock, size_t) { MMFree(Pool::Get(), pBlock); }
    size_t max_size() const { return (s_MMSizeLimit - 1) / sizeof(T); }

    template <class Other>
    bool operator==(const MMAllocator<Other, Pool>&) const {
        return true;
    }
};

// A base class whose heirs come from a pool, by their plain new and delete.
template <class Pool>
class MMPooled {
public:
    static void* operator new(size_t size) { return MMAlloc(Pool::Get(), size); }
    static void* operator new(size_t, void* pPlace) { return pPlace; }
    static void operator delete(void* pBlock) { MMFree(Pool::Get(), pBlock); }
    static void operator delete(void*, void*) {}

protected:
    ~MMPooled() = default;
};

template <class Pool>
struct MMDelete {
    template <class T>
    void operator()(T* pObject) const {
        std::destroy_at(pObject);
        MMFree(Pool::Get(), pObject);
    }
};

template <class T, class Pool>
using MMUnique = std::unique_ptr<T, MMDelete<Pool>>;

template <class T, class Pool, class... Arguments>
MMUnique<T, Pool> MMMakeUnique(Arguments&&... arguments) {
    static_assert(alignof(T) <= 16, "pools align to 16 bytes at most");
    MMAllocator<T, Pool> allocator;
    T* const pObject = allocator.allocate(1);
    try {
        return MMUnique<T, Pool>(std::construct_at(pObject, std::forward<Arguments>(arguments)...));
    } catch (...) {
        allocator.deallocate(pObject, 1);
        throw;
    }
}
