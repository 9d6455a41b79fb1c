#include <gtest/gtest.h>

#include "Tests/Fuzz/Burner/MessageInputs.h"
#include "Tests/Fuzz/Mutator.h"

namespace {

void RunMutations(MessageSide side) {
    for (const Mutator::Input& seed : MakeMessageSeeds(side))
        ASSERT_TRUE(FeedMessageReader(side, seed));
    Mutator mutator(MakeMessageSeeds(side));
    const int runs = GetFuzzRuns();
    int taken = 0;
    for (int i = 0; i < runs; ++i)
        taken += FeedMessageReader(side, mutator.Next());
    EXPECT_GT(taken, runs / 100);
    EXPECT_LT(taken, runs);
}

TEST(FuzzBurner, TheToolsTakeAnyBytes) { RunMutations(MessageSide::Tools); }

TEST(FuzzBurner, TheBurnerTakesAnyBytes) { RunMutations(MessageSide::Burner); }

} // namespace
