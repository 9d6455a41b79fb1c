#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <type_traits>
#include <utility>

#include "Shared/Cross/RenderAnim/AnimPool.h"

// Room for the keys of several streams in one piece, for whoever knows ahead how much they take: each stream takes its
// keys from the front of what is left, and from the pool when that isn't enough. The streams keep the block, which goes
// with the last of them; keys that a stream gives up stay unused until then.
class AnimKeyBlock {
public:
    // Below the pools' limit.
    explicit AnimKeyBlock(size_t size);
    static std::shared_ptr<AnimKeyBlock> Make(size_t size);

    // The whole block. What no stream has taken yet is free for the maker's use.
    std::span<std::byte> GetBytes() { return {m_pBytes.get(), m_Size}; }
    // Null when there is no such piece left. Nobody gives one back.
    void* Take(size_t size);
    bool Holds(const void* pPlace) const;

private:
    struct FreeBytes {
        void operator()(std::byte* pBytes) const { MMFree(AnimStaticPool::Get(), pBytes); }
    };

    std::unique_ptr<std::byte, FreeBytes> m_pBytes;
    size_t m_Size;
    size_t m_Used = 0;
};

// Takes keys from a block or else from the pool, and leaves new ones as they are: whoever lays a stream down writes
// each of them.
template <class Key>
class AnimKeyAllocator {
public:
    using value_type = Key;
    using propagate_on_container_move_assignment = std::true_type;

    AnimKeyAllocator() = default;
    explicit AnimKeyAllocator(std::shared_ptr<AnimKeyBlock> pBlock) : m_pBlock(std::move(pBlock)) {}
    template <class Other>
    AnimKeyAllocator(const AnimKeyAllocator<Other>& other) : m_pBlock(other.GetBlock()) {}
    // A copy has keys of its own.
    AnimKeyAllocator select_on_container_copy_construction() const { return {}; }

    Key* allocate(size_t count) {
        if (void* pPlace = m_pBlock ? m_pBlock->Take(count * sizeof(Key)) : nullptr)
            return static_cast<Key*>(pPlace);
        return MMAllocator<Key, AnimStaticPool>().allocate(count);
    }
    void deallocate(Key* pKeys, size_t count) {
        if (!m_pBlock || !m_pBlock->Holds(pKeys))
            MMAllocator<Key, AnimStaticPool>().deallocate(pKeys, count);
    }
    size_t max_size() const { return MMAllocator<Key, AnimStaticPool>().max_size(); }

    template <class Object>
    void construct(Object* pPlace) {
        ::new (static_cast<void*>(pPlace)) Object;
    }
    template <class Object, class... Arguments>
    void construct(Object* pPlace, Arguments&&... arguments) {
        ::new (static_cast<void*>(pPlace)) Object{std::forward<Arguments>(arguments)...};
    }

    const std::shared_ptr<AnimKeyBlock>& GetBlock() const { return m_pBlock; }
    template <class Other>
    bool operator==(const AnimKeyAllocator<Other>& other) const {
        return m_pBlock == other.GetBlock();
    }

private:
    std::shared_ptr<AnimKeyBlock> m_pBlock;
};
