#include "Shared_Tools/PVXExport/Mesh/RadixSort.h"

namespace {

constexpr size_t s_SmallRun = 16;  // insertion sort is faster up to here
constexpr int s_MaxDigitBits = 11; // 2048 counters stay in the first-level cache

void InsertionSort(std::span<RadixItem> items) {
    for (size_t i = 1; i < items.size(); ++i) {
        const RadixItem item = items[i];
        size_t at = i;
        for (; at > 0 && item < items[at - 1]; --at)
            items[at] = items[at - 1];
        items[at] = item;
    }
}

struct Digit {
    uint64_t RadixItem::*pWord = nullptr; // null when all keys are equal
    int shift = 0;
    int bits = 0;
};

// The highest bits in which these keys differ: coordinates share many bits, and a digit of shared ones sorts nothing.
Digit ChooseDigit(std::span<const RadixItem> items) {
    uint64_t high = 0;
    uint64_t low = 0;
    for (const RadixItem& item : items) {
        high |= item.high ^ items.front().high;
        low |= item.low ^ items.front().low;
    }
    const uint64_t varying = high ? high : low;
    if (!varying)
        return {};
    const int bits = std::clamp(static_cast<int>(std::bit_width(items.size())) - 2, 2, s_MaxDigitBits);
    return {high ? &RadixItem::high : &RadixItem::low, std::max(0, static_cast<int>(std::bit_width(varying)) - bits),
            bits};
}

void SortRange(std::span<RadixItem> items, RadixItem* pScratch) {
    if (items.size() <= s_SmallRun)
        return InsertionSort(items);
    const Digit digit = ChooseDigit(items);
    if (!digit.pWord)
        return;
    const size_t buckets = size_t{1} << digit.bits;
    const auto bucketOf = [&](const RadixItem& item) {
        return static_cast<size_t>(item.*digit.pWord >> digit.shift) & (buckets - 1);
    };
    std::array<uint32_t, (1u << s_MaxDigitBits) + 1> ends;
    std::fill_n(ends.begin(), buckets + 1, 0u);
    for (const RadixItem& item : items)
        ++ends[bucketOf(item) + 1];
    for (size_t i = 0; i < buckets; ++i)
        ends[i + 1] += ends[i];
    for (const RadixItem& item : items)
        pScratch[ends[bucketOf(item)]++] = item;
    std::copy_n(pScratch, items.size(), items.begin());
    for (size_t i = 0, start = 0; i < buckets; start = ends[i++])
        if (ends[i] - start > 1)
            SortRange(items.subspan(start, ends[i] - start), pScratch);
}

} // namespace

void RadixSort(std::span<RadixItem> items, std::vector<RadixItem>& scratch) {
    if (scratch.size() < items.size())
        scratch.resize(items.size());
    SortRange(items, scratch.data());
}
