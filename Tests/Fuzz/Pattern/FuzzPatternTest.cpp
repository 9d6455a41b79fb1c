#include <gtest/gtest.h>

#include "Tests/Fuzz/Mutator.h"
#include "Tests/Fuzz/Pattern/PatternInputs.h"

TEST(FuzzPattern, DamagedFilesAreRefusedOrMakeSense) {
    for (const Mutator::Input& seed : MakePatternSeeds())
        ASSERT_TRUE(FeedPatternReader(seed));
    Mutator mutator(MakePatternSeeds());
    const int runs = GetFuzzRuns();
    int taken = 0;
    for (int i = 0; i < runs; ++i)
        taken += FeedPatternReader(mutator.Next());
    EXPECT_GT(taken, runs / 100);
    EXPECT_LT(taken, runs);
}
