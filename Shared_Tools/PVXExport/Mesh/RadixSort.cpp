#include "Shared_Tools/PVXExport/Mesh/RadixSort.h"

#include <algorithm>
#include <array>
#include <bit>

namespace {

constexpr size_t s_SmallRun = 16;   // insertion sort is faster up to here
constexpr int s_MaxDigitBits = 12;  // the counters leave room for the items in the first-level cache
constexpr int s_BitsBelowCount = 1; // two to four items a bucket

// Moves the items over, in order.
template <class Item>
void InsertionSort(std::span<const Item> from, Item* pTo) {
    for (size_t i = 0; i < from.size(); ++i) {
        const Item& item = from[i];
        size_t at = i;
        for (; at > 0 && item < pTo[at - 1]; --at)
            pTo[at] = pTo[at - 1];
        pTo[at] = item;
    }
}

template <class Item>
void InsertionSort(std::span<Item> items) {
    for (size_t i = 1; i < items.size(); ++i) {
        const Item item = items[i];
        size_t at = i;
        for (; at > 0 && item < items[at - 1]; --at)
            items[at] = items[at - 1];
        items[at] = item;
    }
}

// A stretch of a key's bits.
struct Digit {
    bool inHigh = true;
    int shift = 0;
    int bits = 0; // 0: all keys are equal

    template <class Item>
    size_t Of(const Item& item) const {
        const uint64_t word = inHigh ? item.high : item.low;
        return static_cast<size_t>(word >> shift) & ((size_t{1} << bits) - 1);
    }
};

// The highest bits in which these keys differ: coordinates share many bits, and a digit of shared ones sorts nothing.
template <class Item>
Digit ChooseDigit(std::span<const Item> items) {
    uint64_t high = 0;
    uint64_t low = 0;
    for (const Item& item : items) {
        high |= item.high ^ items.front().high;
        low |= item.low ^ items.front().low;
    }
    const uint64_t varying = high ? high : low;
    if (!varying)
        return {};
    const int bits = std::clamp(static_cast<int>(std::bit_width(items.size())) - s_BitsBelowCount, 2, s_MaxDigitBits);
    return {high != 0, std::max(0, static_cast<int>(std::bit_width(varying)) - bits), bits};
}

template <class Item>
void SortRange(std::span<Item> items, Item* pScratch) {
    if (items.size() <= s_SmallRun)
        return InsertionSort(items);
    const Digit digit = ChooseDigit(std::span<const Item>(items));
    if (digit.bits == 0)
        return;
    const size_t buckets = size_t{1} << digit.bits;
    std::array<uint32_t, (1u << s_MaxDigitBits) + 1> ends;
    std::fill_n(ends.begin(), buckets + 1, 0u);
    for (const Item& item : items)
        ++ends[digit.Of(item) + 1];
    for (size_t i = 0; i < buckets; ++i)
        ends[i + 1] += ends[i];
    // ends[i] is where bucket i starts, until it has been filled.
    for (const Item& item : items)
        pScratch[ends[digit.Of(item)]++] = item;
    for (size_t i = 0, start = 0; i < buckets; start = ends[i++]) {
        const std::span<const Item> bucket(pScratch + start, ends[i] - start);
        if (bucket.size() <= s_SmallRun) {
            InsertionSort(bucket, items.data() + start);
        } else {
            std::ranges::copy(bucket, items.data() + start);
            SortRange(items.subspan(start, bucket.size()), pScratch + start);
        }
    }
}

template <class Item>
void Sort(std::span<Item> items, std::vector<Item>& scratch) {
    if (scratch.size() < items.size())
        scratch.resize(items.size());
    SortRange(items, scratch.data());
}

} // namespace

void RadixSort(std::span<ShortRadixItem> items, std::vector<ShortRadixItem>& scratch) { Sort(items, scratch); }
void RadixSort(std::span<LongRadixItem> items, std::vector<LongRadixItem>& scratch) { Sort(items, scratch); }
