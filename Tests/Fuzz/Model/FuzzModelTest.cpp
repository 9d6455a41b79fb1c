#include <gtest/gtest.h>

#include "Tests/Fuzz/Model/ModelInputs.h"
#include "Tests/Fuzz/Mutator.h"

namespace {

void RunFile(ToolsFile file) {
    for (const Mutator::Input& seed : MakeToolsSeeds(file))
        ASSERT_TRUE(FeedToolsReader(file, seed));
    Mutator mutator(MakeToolsSeeds(file));
    const int runs = GetFuzzRuns();
    int taken = 0;
    for (int i = 0; i < runs; ++i)
        taken += FeedToolsReader(file, mutator.Next());
    // Neither all nor none: the mutations reach past the header and they do harm.
    EXPECT_GT(taken, runs / 100);
    EXPECT_LT(taken, runs);
    testing::Test::RecordProperty("taken", taken);
}

} // namespace

TEST(FuzzModel, Intermediate) { RunFile(ToolsFile::Intermediate); }
TEST(FuzzModel, Generic) { RunFile(ToolsFile::Generic); }
TEST(FuzzModel, Motion) { RunFile(ToolsFile::Motion); }
