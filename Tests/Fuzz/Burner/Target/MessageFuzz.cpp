// The messages of one side under libFuzzer. Without a corpus it starts from the sound ones of the tests.
#include <algorithm>
#include <random>

#include "Tests/Fuzz/Burner/MessageInputs.h"

extern "C" size_t LLVMFuzzerMutate(uint8_t* pData, size_t size, size_t maxSize);

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t size) {
    FeedMessageReader(MessageSide::PVX_FUZZ_SIDE, {pData, size});
    return 0;
}

// Now and then back to a sound message: from nothing no mutation finds a type.
extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* pData, size_t size, size_t maxSize, unsigned int seed) {
    static const std::vector<std::vector<uint8_t>> s_Seeds = MakeMessageSeeds(MessageSide::PVX_FUZZ_SIDE);
    std::minstd_rand random(seed);
    const std::vector<uint8_t>& start = s_Seeds[random() % s_Seeds.size()];
    if ((size < 2 || random() % 64 == 0) && start.size() <= maxSize) {
        std::ranges::copy(start, pData);
        size = start.size();
    }
    return LLVMFuzzerMutate(pData, size, maxSize);
}
