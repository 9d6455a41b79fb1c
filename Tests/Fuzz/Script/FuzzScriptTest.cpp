#include <gtest/gtest.h>

#include "Tests/Fuzz/Mutator.h"
#include "Tests/Fuzz/Script/ScriptInputs.h"

class FuzzScript : public testing::TestWithParam<FuzzedScript> {};

TEST_P(FuzzScript, DamagedScriptsAreRefusedOrMakeSense) {
    for (const Mutator::Input& seed : MakeScriptSeeds(GetParam()))
        ASSERT_TRUE(FeedScriptReader(GetParam(), seed));
    Mutator mutator(MakeScriptSeeds(GetParam()));
    const int runs = GetFuzzRuns();
    int taken = 0;
    for (int i = 0; i < runs; ++i)
        taken += FeedScriptReader(GetParam(), mutator.Next());
    EXPECT_GT(taken, runs / 100);
    EXPECT_LT(taken, runs);
}

INSTANTIATE_TEST_SUITE_P(Readers, FuzzScript,
                         testing::Values(FuzzedScript::Base, FuzzedScript::Override, FuzzedScript::Language,
                                         FuzzedScript::Chunk));
