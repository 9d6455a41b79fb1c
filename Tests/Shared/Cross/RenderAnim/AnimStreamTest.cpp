#include "Shared/Cross/RenderAnim/AnimStream.h"

#include <bit>
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
    EXPECT_TRUE(stream.AddKey(0.5f, 7));
    EXPECT_THAT(TimesOf(stream), ElementsAre(0, 0.25f, 0.5f, 1));
    EXPECT_EQ(stream.GetKey(2).value, 7);
    stream.RemoveKey(1);
    EXPECT_THAT(TimesOf(stream), ElementsAre(0, 0.5f, 1));
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
    // Of two keys at one time the first counts there, the second from there on.
    FloatStream step = MakeStream({{0, 1}, {0.5f, 2}, {1, 4}});
    step.GetKeys()[1].time = 0;
    EXPECT_EQ(SampleAt(step, 0), 1);
    EXPECT_EQ(SampleAt(step, 0.5f), 3);
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
    EXPECT_EQ(stream.Sample(0.25f, true, hint), SampleAt(stream, 0.25f)) << "a loop goes back by itself";
    EXPECT_EQ(stream.Sample(0, false, hint), 100) << "what plays once doesn't";
    hint = 60000; // of a stream that was longer
    EXPECT_EQ(stream.Sample(0.5f, false, hint), SampleAt(stream, 0.5f));
}

TEST(AnimStream, VectorsGoStraightAndQuaternionsTheShorterWayRound) {
    Vec3Stream positions;
    positions.AddKey(0, {0, 0, 0});
    positions.AddKey(1, {2, 4, -8});
    EXPECT_EQ(SampleAt(positions, 0.25f), glm::vec3(0.5f, 1, -2));

    const auto aboutY = [](float degrees) { return glm::angleAxis(glm::radians(degrees), glm::vec3(0, 1, 0)); };
    for (const float apart : {0.0f, 1e-5f, 1e-3f, 0.1f, 90.0f, 170.0f})
        for (const float sign : {1.0f, -1.0f}) { // the same turn by either
            const glm::quat last = aboutY(10 + apart) * sign;
            QuatStream rotations;
            rotations.AddKey(0, aboutY(10));
            rotations.AddKey(1, last);
            EXPECT_LT(glm::length(SampleAt(rotations, 0.25f) - aboutY(10 + apart / 4)), 1e-6f) << apart << ' ' << sign;
            EXPECT_EQ(SampleAt(rotations, 1), last) << "a key is given as it is";
        }
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

TEST(ThinKeys, WhatOthersGiveIsTakenOut) {
    const std::pair<FloatStream, std::vector<float>> cases[] = {
        {MakeTrack(65, [](uint32_t i) { return static_cast<float>(i) / 64; }), {0, 1}},
        {MakeStream({{0, 1}, {1, 1.004f}}), {0}}, // the second is tried even if it is the last
        {MakeStream({{0, 1}, {1, 1.006f}}), {0, 1}},
        {MakeStream({{0, 0}, {0.5f, 0.004f}, {1, 0}}), {0}},
        {FloatStream(), {}},
    };
    for (const auto& [track, times] : cases) {
        FloatStream thinned = track;
        ThinKeys(thinned, 0.005f);
        EXPECT_EQ(TimesOf(thinned), times);
    }
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

// A sum of many steps runs past 1, where a looping sample begins over; and values may be no numbers.
TEST(ThinKeys, GivesTheKeysOfThePassesWhereTimesOrValuesAreOdd) {
    for (const float factor : {1.0005f, 1.3f, 3.0f}) {
        FloatStream stretched = MakeTrack(512, [](uint32_t i) { return static_cast<float>(i % 100); });
        for (FloatKey& key : stretched.GetKeys())
            key.time *= factor;
        ExpectAsByPasses("sawtooth", stretched);
    }
    const float odd[] = {0, s_Infinity, -s_Infinity, std::nanf(""), 1};
    std::mt19937 random(7);
    for (int i = 0; i < 200; ++i)
        ExpectAsByPasses("no numbers", MakeTrack(40, [&](uint32_t) { return odd[random() % std::size(odd)]; }));
    FloatStream longest = MakeTrack(65535, [&](uint32_t) { return static_cast<float>(random() % 100); });
    ThinKeys(longest, 0.005f); // a few milliseconds; a quadratic way takes a minute
    EXPECT_GT(longest.GetKeyCount(), 60000);
}

} // namespace
