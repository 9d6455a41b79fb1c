// One kind of file under libFuzzer. Without a corpus it starts from the sound files of the tests.

#include "Tests/Fuzz/LibFuzzer.h"
#include "Tests/Fuzz/Model/ModelInputs.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t size) {
    FeedModelReader(ModelFile::PVX_FUZZ_FILE, {pData, size});
    return 0;
}

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* pData, size_t size, size_t maxSize, unsigned int seed) {
    static const std::vector<std::vector<uint8_t>> s_Seeds = MakeModelSeeds(ModelFile::PVX_FUZZ_FILE);
    return MutateFromSeeds(s_Seeds, pData, size, maxSize, seed);
}
