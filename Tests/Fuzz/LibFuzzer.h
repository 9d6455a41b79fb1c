#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

// What the libFuzzer programs have in common.

extern "C" size_t LLVMFuzzerMutate(uint8_t* pData, size_t size, size_t maxSize);

// A custom mutator: now and then it goes back to a sound input, since from nothing no mutation finds a header. There is
// at least one seed. The arguments are libFuzzer's own, and so is the result, the new size.
inline size_t MutateFromSeeds(const std::vector<std::vector<uint8_t>>& seeds, uint8_t* pData, size_t size,
                              size_t maxSize, unsigned int seed) {
    std::minstd_rand random(seed);
    const std::vector<uint8_t>& start = seeds[random() % seeds.size()];
    if ((size < 2 || random() % 64 == 0) && start.size() <= maxSize) {
        std::ranges::copy(start, pData);
        size = start.size();
    }
    return LLVMFuzzerMutate(pData, size, maxSize);
}
