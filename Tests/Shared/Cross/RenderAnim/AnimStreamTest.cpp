#include "Shared/Cross/RenderAnim/AnimStream.h"

#include <bit>
#include <chrono>
#include <cmath>
#include <functional>
#include <limits>
#include <random>
#include <string>

#include <gmock/gmock.h>

#include "Shared/Cross/Memory/MMPoolBase.h"
#include "Tests/Shared/Cross/Debug/ReportCapture.h"

using testing::ElementsAre;

namespace {

constexpr float s_Infinity = std::numeric_limits<float>::infinity();

FloatStream MakeStream(std::initializer_list<FloatKey> keys) {
    FloatStream stream;
    for (const FloatKey& key : keys)
        EXPECT_TRUE(stream.AddKey(key.time, key.value));
    return stream;
}

// As the exporter lays a track down: a key a frame, times summed up.
FloatStream MakeTrack(uint32_t frames, const std::function<float(uint32_t)>& valueAt) {
    FloatStream stream;
    const float step = 1.0f / static_cast<float>(frames - 1);
    float time = 0;
    uint32_t frame = 0;
    for (FloatKey& key : stream.SetKeyCount(frames)) {
        key = {time, valueAt(frame++)};
        time += step;
    }
    return stream;
}

std::vector<float> TimesOf(const FloatStream& stream) {
    std::vector<float> times;
    for (const FloatKey& key : stream.GetKeys())
        times.push_back(key.time);
    return times;
}

template <class V>
V SampleAt(const AnimStream<V>& stream, float time, bool loops = false) {
    uint16_t hint = 0;
    return stream.Sample(time, loops, hint);
}

TEST(AnimStream, KeysStayInTheOrderOfTimes) {
    FloatStream stream = MakeStream({{0.5f, 5}, {0, 0}, {1, 10}, {0.25f, 2}});
    EXPECT_THAT(TimesOf(stream), ElementsAre(0, 0.25f, 0.5f, 1));
    EXPECT_TRUE(stream.AddKey(0.5f, 7));
    EXPECT_EQ(stream.GetKeyCount(), 4);
    EXPECT_EQ(stream.GetKey(2).value, 7);
    stream.RemoveKey(1);
    stream.SetKey(1, 8);
    EXPECT_THAT(TimesOf(stream), ElementsAre(0, 0.5f, 1));
    EXPECT_EQ(stream.GetKey(1).value, 8);
    EXPECT_THROW(stream.GetKey(3), std::runtime_error);
    EXPECT_THROW(stream.SetKey(3, 0), std::runtime_error);
    EXPECT_THROW(stream.RemoveKey(3), std::runtime_error);
}

TEST(AnimStream, AFullStreamRefusesAnotherKeyAndStaysAsItWas) {
    const ReportCapture reports;
    FloatStream stream = MakeTrack(65535, [](uint32_t i) { return static_cast<float>(i); });
    EXPECT_FALSE(stream.AddKey(-1, 0));
    EXPECT_TRUE(ReportCapture::HasWarning("Animation has exceeded 65535 key frames. Failing addition."));
    EXPECT_EQ(stream.GetKeyCount(), 65535);
    EXPECT_EQ(stream.GetKey(0).time, 0);
    EXPECT_TRUE(stream.AddKey(0, 42)); // overwrites
    EXPECT_EQ(stream.GetKey(0).value, 42);
    ReportCapture::Clear();
    EXPECT_EQ(stream.SetKeyCount(70000).size(), 65535u);
    EXPECT_TRUE(ReportCapture::HasWarning("Animation has exceeded 65535 key frames. Failing addition."));
}

TEST(AnimStream, SamplesBetweenAndBeyondTheKeys) {
    const FloatStream stream = MakeStream({{0, 10}, {0.5f, 20}, {1, 0}});
    const std::pair<float, float> expected[] = {{-3, 10},    {0, 10}, {0.25f, 15}, {0.5f, 20},
                                                {0.75f, 10}, {1, 0},  {1.25f, 0},  {s_Infinity, 0}};
    for (const auto& [time, value] : expected)
        EXPECT_EQ(SampleAt(stream, time), value) << time;
    // Looping, whole turns fall away; 1 itself is still the end.
    EXPECT_EQ(SampleAt(stream, 1, true), 0);
    for (const float turns : {1.0f, 2.0f, 7.0f}) {
        EXPECT_EQ(SampleAt(stream, turns + 0.25f, true), 15) << turns;
        EXPECT_EQ(SampleAt(stream, turns + 0.75f, true), 10) << turns;
    }
    EXPECT_EQ(SampleAt(stream, s_Infinity, true), 0);
    // Ahead of the first key there is no pair, and the last one holds.
    EXPECT_EQ(SampleAt(MakeStream({{0.5f, 1}, {0.75f, 2}}), 0.25f), 2);
    EXPECT_EQ(SampleAt(MakeStream({{0.5f, 3}}), 0.1f), 3);
    EXPECT_THROW(SampleAt(FloatStream(), 0), std::runtime_error);
}

TEST(AnimStream, TheHintFollowsThePlayback) {
    const FloatStream stream = MakeTrack(101, [](uint32_t i) { return static_cast<float>(i); });
    uint16_t hint = 0;
    for (int i = 0; i <= 300; ++i) {
        const float time = static_cast<float>(i) * 0.01f + 0.001f;
        EXPECT_EQ(stream.Sample(time, true, hint), SampleAt(stream, time, true)) << time;
        EXPECT_LE(stream.GetKey(hint).time, std::fmod(time, 1.0f) + 1e-4f);
    }
    EXPECT_EQ(stream.Sample(2, false, hint), 100);
    EXPECT_EQ(hint, 100);
    EXPECT_EQ(stream.Sample(0, false, hint), 0);
    hint = 60000; // of a stream that was longer
    EXPECT_EQ(stream.Sample(0.5f, false, hint), SampleAt(stream, 0.5f));
    EXPECT_EQ(SampleAt(MakeStream({{0, 1}}), 1), 1);
}

TEST(AnimStream, TwoKeysAtOneTimeGiveTheFirst) {
    FloatStream stream;
    const std::span<FloatKey> keys = stream.SetKeyCount(3);
    keys[0] = {0, 1};
    keys[1] = {0, 2};
    keys[2] = {1, 4};
    EXPECT_EQ(SampleAt(stream, 0), 1);
    EXPECT_EQ(SampleAt(stream, 0.5f), 3);
}

TEST(AnimStream, VectorsGoStraightAndQuaternionsTheShorterWayRound) {
    Vec3Stream positions;
    positions.AddKey(0, {0, 0, 0});
    positions.AddKey(1, {2, 4, -8});
    EXPECT_EQ(SampleAt(positions, 0.25f), glm::vec3(0.5f, 1, -2));

    const auto aboutY = [](float degrees) { return glm::angleAxis(glm::radians(degrees), glm::vec3(0, 1, 0)); };
    const auto sample = [](const glm::quat& from, const glm::quat& to, float time) {
        QuatStream rotations;
        rotations.AddKey(0, from);
        rotations.AddKey(1, to);
        return SampleAt(rotations, time);
    };
    // The same turn by either sign of its quaternion.
    EXPECT_LT(glm::length(sample(aboutY(10), aboutY(100), 1.0f / 3) - aboutY(40)), 1e-6f);
    EXPECT_LT(glm::length(sample(aboutY(10), -aboutY(100), 1.0f / 3) - aboutY(40)), 1e-6f);
    for (const float apart : {0.0f, 1e-5f, 1e-3f, 0.1f, 170.0f}) {
        const glm::quat between = sample(aboutY(10), aboutY(10 + apart), 0.5f);
        EXPECT_LT(glm::length(between - aboutY(10 + apart / 2)), 1e-6f) << apart;
    }
    EXPECT_EQ(sample(aboutY(10), -aboutY(100), 1), -aboutY(100)); // a key is given as it is
}

TEST(AnimStream, MemoryIsTheKeys) {
    const MMPoolCounts before = MMPoolGetCounts(AnimStaticPool::Get());
    {
        const auto pStream = std::make_unique<MatrixStream>();
        pStream->SetKeyCount(1800);
        const MMPoolCounts now = MMPoolGetCounts(AnimStaticPool::Get());
        EXPECT_EQ(now.liveCount, before.liveCount + 2);
        EXPECT_EQ(now.usedMemory, before.usedMemory + sizeof(MatrixStream) + size_t{1800} * 52);
    }
    EXPECT_EQ(MMPoolGetCounts(AnimStaticPool::Get()).liveCount, before.liveCount);
}

TEST(AnimStream, KeysOfABlockOutliveItsMakerAndLeaveItWhenItIsFull) {
    const MMPoolCounts before = MMPoolGetCounts(AnimStaticPool::Get());
    {
        std::shared_ptr<AnimKeyBlock> pBlock = AnimKeyBlock::Make(3 * sizeof(FloatKey) + sizeof(Vec3Key));
        FloatStream first(pBlock);
        Vec3Stream second(pBlock);
        first.SetKeyCount(3);
        second.SetKeyCount(1);
        EXPECT_EQ(MMPoolGetCounts(AnimStaticPool::Get()).liveCount, before.liveCount + 2); // the block and its bytes
        EXPECT_EQ(static_cast<void*>(second.GetKeys().data()), static_cast<void*>(first.GetKeys().data() + 3));
        pBlock.reset();
        for (uint32_t i = 0; i < 3; ++i)
            first.GetKeys()[i] = {static_cast<float>(i), 7};
        FloatStream copy = first;
        first.AddKey(5, 8);
        const FloatStream moved = std::move(first);
        copy.SetKey(0, 9);
        EXPECT_THAT(TimesOf(moved), ElementsAre(0, 1, 2, 5));
        EXPECT_EQ(moved.GetKey(0).value, 7);
    }
    EXPECT_EQ(MMPoolGetCounts(AnimStaticPool::Get()).liveCount, before.liveCount);
}

// The passes one key at a time, as they are told.
void ThinByPasses(FloatStream& stream, float tolerance) {
    for (bool changed = true; changed;) {
        changed = false;
        for (uint32_t k = 1; k < stream.GetKeyCount() && (k < 2 || k + 1 != stream.GetKeyCount());) {
            const FloatKey key = stream.GetKey(k);
            stream.RemoveKey(k);
            uint16_t hint = 0;
            const float sampled = stream.Sample(key.time, true, hint);
            if (sampled - key.value > tolerance || key.value - sampled > tolerance) {
                stream.AddKey(key.time, key.value);
                k += 2;
            } else {
                changed = true;
                k += 1;
            }
        }
    }
}

void ExpectAsByPasses(const std::string& what, const FloatStream& track) {
    FloatStream thinned = track;
    ThinKeys(thinned, 0.005f);
    FloatStream expected = track;
    ThinByPasses(expected, 0.005f);
    ASSERT_EQ(TimesOf(thinned), TimesOf(expected)) << what << " of " << track.GetKeyCount();
    for (uint32_t i = 0; i < expected.GetKeyCount(); ++i)
        ASSERT_EQ(std::bit_cast<uint32_t>(thinned.GetKey(i).value), std::bit_cast<uint32_t>(expected.GetKey(i).value));
}

TEST(ThinKeys, ARampKeepsItsEnds) {
    FloatStream ramp = MakeTrack(65, [](uint32_t i) { return static_cast<float>(i) / 64; });
    ThinKeys(ramp, 0.005f);
    EXPECT_THAT(TimesOf(ramp), ElementsAre(0, 1));
    // The second key is tried even if it is the last, and one key is the same everywhere.
    FloatStream two = MakeStream({{0, 1}, {1, 1.004f}});
    ThinKeys(two, 0.005f);
    EXPECT_THAT(TimesOf(two), ElementsAre(0));
    FloatStream step = MakeStream({{0, 1}, {1, 1.006f}});
    ThinKeys(step, 0.005f);
    EXPECT_THAT(TimesOf(step), ElementsAre(0, 1));
    FloatStream bump = MakeStream({{0, 0}, {0.5f, 0.004f}, {1, 0}});
    ThinKeys(bump, 0.005f);
    EXPECT_THAT(TimesOf(bump), ElementsAre(0));
    FloatStream none;
    ThinKeys(none, 0.005f);
    EXPECT_TRUE(none.IsEmpty());
}

TEST(ThinKeys, GivesTheKeysOfThePassesOneByOne) {
    std::mt19937 random(20061);
    std::uniform_real_distribution<float> noise(-1, 1);
    for (uint32_t frames = 2; frames < 130; ++frames) {
        for (const float strength : {0.001f, 0.004f, 0.008f, 0.05f, 1.0f})
            ExpectAsByPasses("noise", MakeTrack(frames, [&](uint32_t) { return noise(random) * strength; }));
        ExpectAsByPasses("switch", MakeTrack(frames, [&](uint32_t) { return static_cast<float>(random() % 2); }));
        float value = 0;
        ExpectAsByPasses("walk", MakeTrack(frames, [&](uint32_t) { return value += noise(random) * 0.01f; }));
    }
    for (const uint32_t frames : {2u, 3u, 500u, 1801u, 3000u})
        for (const float period : {0.7f, 5.0f, 40.0f, 900.0f})
            ExpectAsByPasses(
                "wave", MakeTrack(frames, [period](uint32_t i) { return std::sin(static_cast<float>(i) / period); }));
}

// A sum of many steps runs past 1, where a looping sample begins over; and values and times may be no numbers.
TEST(ThinKeys, GivesTheKeysOfThePassesWhereTimesOrValuesAreOdd) {
    const auto sawtooth = [](uint32_t i) { return static_cast<float>(i % 100); };
    for (const float factor : {1.0005f, 1.3f, 3.0f}) {
        FloatStream stretched = MakeTrack(512, sawtooth);
        for (FloatKey& key : stretched.GetKeys())
            key.time *= factor;
        ExpectAsByPasses("sawtooth", stretched);
    }
    const float odd[] = {0, s_Infinity, -s_Infinity, std::nanf(""), 1};
    std::mt19937 random(7);
    for (int i = 0; i < 200; ++i)
        ExpectAsByPasses("no numbers", MakeTrack(40, [&](uint32_t) { return odd[random() % std::size(odd)]; }));
}

TEST(ThinKeys, ALongTrackCostsLittleMoreThanItsKeys) {
    using Clock = std::chrono::steady_clock;
    std::mt19937 random(3);
    const auto start = Clock::now();
    for (const float strength : {0.0f, 0.006f, 1.0f}) {
        FloatStream track = MakeTrack(65535, [&](uint32_t i) {
            return static_cast<float>(i) * 1e-4f + static_cast<float>(random() % 100) * 0.01f * strength;
        });
        ThinKeys(track, 0.005f);
    }
    // A few milliseconds; a quadratic way takes a minute.
    EXPECT_LT(Clock::now() - start, std::chrono::seconds(5));
}

} // namespace
