// Without a corpus it starts from the sound scripts of the tests.

#include "Tests/Fuzz/LibFuzzer.h"
#include "Tests/Fuzz/Script/ScriptInputs.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t size) {
    FeedScriptReader(FuzzedScript::PVX_FUZZ_READER, {pData, size});
    return 0;
}

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* pData, size_t size, size_t maxSize, unsigned int seed) {
    static const std::vector<std::vector<uint8_t>> s_Seeds = MakeScriptSeeds(FuzzedScript::PVX_FUZZ_READER);
    return MutateFromSeeds(s_Seeds, pData, size, maxSize, seed);
}
