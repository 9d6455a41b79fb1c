// Sorting of keys that are images of bytes: what comes first in memory stands in the highest bits.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

// Little-endian bytes in memory as an integer that compares as memcmp does.
inline uint64_t ByteOrderImage(uint64_t memory) { return __builtin_bswap64(memory); }
inline uint32_t ByteOrderImage(uint32_t memory) { return __builtin_bswap32(memory); }
inline uint16_t ByteOrderImage(uint16_t memory) { return __builtin_bswap16(memory); }

// An element of up to 8 + sizeof(Low) bytes and where it came from.
template <class Low>
struct RadixItem {
    uint64_t high = 0;
    Low low = 0;
    uint32_t index = 0;

    bool SameKey(const RadixItem& rhs) const { return high == rhs.high && low == rhs.low; }
    bool operator<(const RadixItem& rhs) const { return high != rhs.high ? high < rhs.high : low < rhs.low; }
};
using ShortRadixItem = RadixItem<uint32_t>;
using LongRadixItem = RadixItem<uint64_t>;

// Sorts by key, ascending; items of one key come in any order, but in the same one on every machine.
// scratch is grown to the items' count and keeps its memory for the next call.
void RadixSort(std::span<ShortRadixItem> items, std::vector<ShortRadixItem>& scratch);
void RadixSort(std::span<LongRadixItem> items, std::vector<LongRadixItem>& scratch);
