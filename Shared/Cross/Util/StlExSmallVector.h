#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <utility>

// A vector whose first `Inline` elements lie inside it, so that a short one never touches the heap. Growing moves the
// elements: pointers and iterators are good until the next one that adds. Named as the standard's containers are, so
// that it can stand in for one.
template <class T, size_t Inline>
class StlExSmallVector {
    static_assert(Inline > 0);

public:
    using value_type = T;
    using iterator = T*;
    using const_iterator = const T*;

    StlExSmallVector() = default;
    StlExSmallVector(const StlExSmallVector& other) { AppendCopies(other); }
    StlExSmallVector(StlExSmallVector&& other) noexcept { Steal(other); }
    ~StlExSmallVector() { Release(); }

    StlExSmallVector& operator=(const StlExSmallVector& other) {
        if (this != &other) {
            clear();
            AppendCopies(other);
        }
        return *this;
    }
    StlExSmallVector& operator=(StlExSmallVector&& other) noexcept {
        if (this != &other) {
            Release();
            Steal(other);
        }
        return *this;
    }

    size_t size() const { return m_Size; }
    size_t capacity() const { return m_Capacity; }
    bool empty() const { return m_Size == 0; }
    T* data() { return m_pData; }
    const T* data() const { return m_pData; }
    iterator begin() { return m_pData; }
    iterator end() { return m_pData + m_Size; }
    const_iterator begin() const { return m_pData; }
    const_iterator end() const { return m_pData + m_Size; }
    T& operator[](size_t index) { return m_pData[index]; }
    const T& operator[](size_t index) const { return m_pData[index]; }
    T& front() { return m_pData[0]; }
    const T& front() const { return m_pData[0]; }
    T& back() { return m_pData[m_Size - 1]; }
    const T& back() const { return m_pData[m_Size - 1]; }

    void reserve(size_t wanted) {
        if (wanted > m_Capacity)
            MoveTo(std::max(wanted, m_Capacity * 2));
    }
    void push_back(const T& value) { emplace_back(value); }
    void push_back(T&& value) { emplace_back(std::move(value)); }
    template <class... Args>
    T& emplace_back(Args&&... args) {
        if (m_Size == m_Capacity) {
            // Built ahead of the move: an argument may lie inside the vector.
            T value(std::forward<Args>(args)...);
            reserve(m_Size + 1);
            return *std::construct_at(m_pData + m_Size++, std::move(value));
        }
        return *std::construct_at(m_pData + m_Size++, std::forward<Args>(args)...);
    }
    void pop_back() { std::destroy_at(m_pData + --m_Size); }
    void clear() {
        std::destroy_n(m_pData, m_Size);
        m_Size = 0;
    }

private:
    T* GetInline() { return reinterpret_cast<T*>(m_Inline); }
    bool IsInline() const { return m_pData == reinterpret_cast<const T*>(m_Inline); }

    void AppendCopies(const StlExSmallVector& other) {
        reserve(other.m_Size);
        for (const T& value : other)
            push_back(value);
    }
    void MoveTo(size_t capacity) {
        T* pNew = std::allocator<T>().allocate(capacity);
        std::uninitialized_move_n(m_pData, m_Size, pNew);
        const size_t size = m_Size;
        Release();
        m_pData = pNew;
        m_Size = size;
        m_Capacity = capacity;
    }
    // Takes over what the other holds and leaves it empty; this one holds nothing yet.
    void Steal(StlExSmallVector& other) noexcept {
        if (other.IsInline()) {
            std::uninitialized_move_n(other.m_pData, other.m_Size, m_pData);
            m_Size = other.m_Size;
            other.clear();
            return;
        }
        m_pData = std::exchange(other.m_pData, other.GetInline());
        m_Size = std::exchange(other.m_Size, 0);
        m_Capacity = std::exchange(other.m_Capacity, Inline);
    }
    // Back to the empty inline state.
    void Release() noexcept {
        clear();
        if (!IsInline())
            std::allocator<T>().deallocate(m_pData, m_Capacity);
        m_pData = GetInline();
        m_Capacity = Inline;
    }

    alignas(T) std::byte m_Inline[Inline * sizeof(T)];
    T* m_pData = GetInline(); // owned when it isn't m_Inline; a smart pointer can't hold a part of its own object
    size_t m_Size = 0;
    size_t m_Capacity = Inline;
};
