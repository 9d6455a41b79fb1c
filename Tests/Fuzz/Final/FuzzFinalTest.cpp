#include <gtest/gtest.h>

#include "Tests/Fuzz/Final/FinalInputs.h"
#include "Tests/Fuzz/Mutator.h"

namespace {

void RunFile(FuzzedFile file) {
    for (const Mutator::Input& seed : MakeFinalSeeds(file))
        ASSERT_TRUE(FeedFinalReader(file, seed));
    Mutator mutator(MakeFinalSeeds(file));
    const int runs = GetFuzzRuns();
    int taken = 0;
    for (int i = 0; i < runs; ++i)
        taken += FeedFinalReader(file, mutator.Next());
    // Neither all nor none: the mutations reach past the header and they do harm.
    EXPECT_GT(taken, runs / 100);
    EXPECT_LT(taken, runs);
    testing::Test::RecordProperty("taken", taken);
}

} // namespace

TEST(FuzzFinal, Model) { RunFile(FuzzedFile::Model); }
TEST(FuzzFinal, Motion) { RunFile(FuzzedFile::Motion); }
