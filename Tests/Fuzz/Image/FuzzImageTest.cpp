// The same mutations of sound files at every run. PVX_FUZZ_RUNS asks for another number of them for each reader.
#include <gtest/gtest.h>

#include "Tests/Fuzz/Image/ReaderInputs.h"
#include "Tests/Fuzz/Mutator.h"

namespace {

void RunReader(FuzzedReader reader) {
    for (const Mutator::Input& seed : MakeSeeds(reader))
        ASSERT_TRUE(FeedReader(reader, seed));
    Mutator mutator(MakeSeeds(reader));
    const int runs = GetFuzzRuns();
    int taken = 0;
    for (int i = 0; i < runs; ++i)
        taken += FeedReader(reader, mutator.Next());
    // Neither all nor none: the mutations reach past the header and they do harm.
    EXPECT_GT(taken, runs / 100);
    EXPECT_LT(taken, runs);
    testing::Test::RecordProperty("taken", taken);
}

} // namespace

TEST(FuzzImage, Dds) { RunReader(FuzzedReader::Dds); }
TEST(FuzzImage, Jpeg) { RunReader(FuzzedReader::Jpeg); }
TEST(FuzzImage, Tga) { RunReader(FuzzedReader::Tga); }
TEST(FuzzImage, Bmp) { RunReader(FuzzedReader::Bmp); }
TEST(FuzzImage, Bw) { RunReader(FuzzedReader::Bw); }
TEST(FuzzImage, Chunk) { RunReader(FuzzedReader::Chunk); }
