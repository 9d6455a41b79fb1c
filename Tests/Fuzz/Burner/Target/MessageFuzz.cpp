// The messages of one side under libFuzzer. Without a corpus it starts from the sound ones of the tests.

#include "Tests/Fuzz/Burner/MessageInputs.h"
#include "Tests/Fuzz/LibFuzzer.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t size) {
    FeedMessageReader(MessageSide::PVX_FUZZ_SIDE, {pData, size});
    return 0;
}

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* pData, size_t size, size_t maxSize, unsigned int seed) {
    static const std::vector<std::vector<uint8_t>> s_Seeds = MakeMessageSeeds(MessageSide::PVX_FUZZ_SIDE);
    return MutateFromSeeds(s_Seeds, pData, size, maxSize, seed);
}
