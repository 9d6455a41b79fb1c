#include <gtest/gtest.h>

#include "Tests/Fuzz/Model/ModelInputs.h"
#include "Tests/Fuzz/Mutator.h"

namespace {

void RunFile(ModelFile file) {
    for (const Mutator::Input& seed : MakeModelSeeds(file))
        ASSERT_TRUE(FeedModelReader(file, seed));
    Mutator mutator(MakeModelSeeds(file));
    const int runs = GetFuzzRuns();
    int taken = 0;
    for (int i = 0; i < runs; ++i)
        taken += FeedModelReader(file, mutator.Next());
    // Neither all nor none: the mutations reach past the header and they do harm.
    EXPECT_GT(taken, runs / 100);
    EXPECT_LT(taken, runs);
    testing::Test::RecordProperty("taken", taken);
}

} // namespace

TEST(FuzzModel, Intermediate) { RunFile(ModelFile::Intermediate); }
TEST(FuzzModel, Generic) { RunFile(ModelFile::Generic); }
TEST(FuzzModel, GenericMotion) { RunFile(ModelFile::GenericMotion); }
TEST(FuzzModel, Final) { RunFile(ModelFile::Final); }
TEST(FuzzModel, FinalMotion) { RunFile(ModelFile::FinalMotion); }
