// One reader under libFuzzer. Without a corpus it starts from the sound files of the tests.

#include "Tests/Fuzz/Image/ReaderInputs.h"
#include "Tests/Fuzz/LibFuzzer.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t size) {
    FeedReader(FuzzedReader::PVX_FUZZ_READER, {pData, size});
    return 0;
}

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* pData, size_t size, size_t maxSize, unsigned int seed) {
    static const std::vector<std::vector<uint8_t>> s_Seeds = MakeSeeds(FuzzedReader::PVX_FUZZ_READER);
    return MutateFromSeeds(s_Seeds, pData, size, maxSize, seed);
}
