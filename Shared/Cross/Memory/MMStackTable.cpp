#include "Shared/Cross/Memory/MMStackTable.h"

#include "Shared/Cross/Memory/MMRawAllocator.h"

#include <algorithm>
#include <vector>

namespace {

struct Stack {
    size_t start; // in the words
    uint32_t count;
    uint32_t nextInBucket; // an id
    uint64_t hash;
};

struct Table {
    std::vector<const void*, MMRawAllocator<const void*>> words;
    std::vector<Stack, MMRawAllocator<Stack>> stacks;
    std::vector<uint32_t, MMRawAllocator<uint32_t>> buckets; // ids; a power of two of them
};

constexpr size_t s_Buckets = 1 << 17;

// Never destroyed: pools record allocations to the process's very end.
Table& GetTable() {
    alignas(Table) static char s_Storage[sizeof(Table)];
    static Table* const s_pTable = new (s_Storage) Table;
    return *s_pTable;
}

uint64_t HashStack(std::span<const void* const> stack) {
    uint64_t hash = 0xCBF29CE484222325;
    for (const void* const pAddress : stack) {
        hash ^= reinterpret_cast<uintptr_t>(pAddress);
        hash *= 0x9E3779B97F4A7C15;
        hash ^= hash >> 32;
    }
    return hash;
}

std::span<const void* const> GetWords(const Table& table, const Stack& stack) {
    return {table.words.data() + stack.start, stack.count};
}

} // namespace

uint32_t MMStackTable::Add(std::span<const void* const> stack) {
    const MMLockScope lock;
    Table& table = GetTable();
    if (table.buckets.empty())
        table.buckets.resize(s_Buckets);
    const uint64_t hash = HashStack(stack);
    uint32_t& bucket = table.buckets[hash & (s_Buckets - 1)];
    for (uint32_t id = bucket; id != 0; id = table.stacks[id - 1].nextInBucket) {
        const Stack& known = table.stacks[id - 1];
        if (known.hash == hash && std::ranges::equal(GetWords(table, known), stack))
            return id;
    }
    if (table.stacks.size() == s_MaxStacks)
        return 0;
    table.stacks.push_back({table.words.size(), static_cast<uint32_t>(stack.size()), bucket, hash});
    table.words.insert(table.words.end(), stack.begin(), stack.end());
    bucket = static_cast<uint32_t>(table.stacks.size());
    return bucket;
}

std::span<const void* const> MMStackTable::Get(uint32_t id) {
    const MMLockScope lock;
    const Table& table = GetTable();
    if (id == 0 || id > table.stacks.size())
        return {};
    return GetWords(table, table.stacks[id - 1]);
}
