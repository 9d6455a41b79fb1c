#include "Shared/Cross/RenderAnim/Motion/Chunks/MotionChunks.h"

#include <gmock/gmock.h>

#include "Tests/Shared/Cross/Debug/ReportCapture.h"
#include "Tests/Shared/Cross/RenderAnim/Motion/Chunks/MotionSide.h"

using ra::Name;
using testing::ElementsAre;

namespace {

class MotionChunks : public testing::Test {
protected:
    // All chunks of a file, those that aren't known as well. How many were taken comes back.
    int Read(const std::string& chunks, ra::MotionForm form = ra::MotionForm::Generic) {
        const auto pStream = MakeReadStream(ChunkBytes::FileHeader() + chunks);
        Chunky chunky{ByteStreamAdapter(pStream.get())};
        const ra::MotionContext context = {.pModelName = "Walker", .form = form, .hasAnimation = [](const Name& name) {
                                               return name == Name("walk") || name == Name("run");
                                           }};
        int taken = 0;
        for (ChunkInfo child; chunky.NextChunk(child);)
            taken += ra::ReadMotionPart(chunky, child, m_Side.GetParts(), context);
        return taken;
    }
    void ExpectFault(const std::string& chunks, const std::string& fault) {
        try {
            Read(chunks);
            ADD_FAILURE() << "no fault: " << fault;
        } catch (const Chunky::Exception& exception) {
            EXPECT_EQ(exception.what(), fault);
        }
    }
    static std::string MakeTree(const std::string& motion, uint32_t version) {
        return ChunkBytes::Folder("MTRE", NamedData("MTON", "walk", motion, version), 3);
    }
    // The fields ahead of the modifier, as that version has them.
    static PayloadBytes MakeMotion(uint32_t version) {
        PayloadBytes bytes;
        bytes.U32(1).Text("walk").U32(0).U8(1).U32(0).U32(2).F32({1, 2, 3, 4});
        if (version <= 3)
            bytes.F32({99});
        bytes.F32({0.75f});
        if (version >= 2)
            bytes.F32({7, 8, 5, 6});
        if (version >= 3)
            bytes.U8(1);
        if (version >= 4)
            bytes.U8(1);
        return bytes;
    }

    ReportCapture m_Reports;
    MotionSide m_Side;
};

TEST_F(MotionChunks, TheRunIsWrittenByteByByte) {
    m_Side.AddSamples();
    const std::string events = ChunkBytes::Folder(
        "EVCT", NamedData("EVNT", "art/events/step",
                          PayloadBytes().U32(2).Text("sound").Text("gravel").Text("volume").Text("").Get(), 3));
    const auto clause = [](uint32_t kind) { return PayloadBytes().U32(kind).Text("speed").U32(5); };
    const std::string clauses =
        ChunkBytes::Folder("CLST", NamedData("CLAS", "fast", clause(0).F32({2.5f, 7}).Get(), 2) +
                                       NamedData("CLAS", "alive", clause(1).U8(1).U8(0).Get(), 2) +
                                       NamedData("CLAS", "prone", clause(2).Text("low").Text("lower").Get(), 2));
    const std::string conditions = ChunkBytes::Folder(
        "CONL", NamedData("COND", "running", PayloadBytes().U32(2).Text("fast").Text("prone").Get(), 1));
    const std::string modifiers =
        ChunkBytes::Folder("MODL", NamedData("MODF", "pace", PayloadBytes().Text("speed").U32(1).F32({3, 4}).Get(), 2));
    PayloadBytes walk;
    walk.U32(1).Text("walk").U32(1).Text("later").F32({0.25f}).U8(1).U32(1).Text("art/events/step").F32({0.5f});
    walk.U32(2).F32({1, 2, 3, 4, 0.75f, 7, 8, 5, 6}).U8(1).U8(1).U8(1).Text("pace");
    PayloadBytes later;
    later.U32(0).U32(0).U8(0).U32(0).U32(0).F32({0, 0, 0, 0, 0, 0, 0, 0, 0}).U8(0).U8(0).U8(0);
    const std::string motions = ChunkBytes::Folder(
        "MTRE", NamedData("MTON", "walk", walk.Get(), 4) + NamedData("MTON", "later", later.Get(), 4), 3);
    PayloadBytes move;
    move.U32(2).Text("walk").U32(1).Text("running").Text("later").U32(2);
    move.U32(1).Text("stop").U32(0).Text("running");
    const std::string actions =
        NamedData("ACTN", "move", move.Get(), 1) + NamedData("ACTN", "stop", PayloadBytes().U32(0).U32(0).Get(), 1);
    const std::string ahead = events + clauses + conditions + modifiers + motions;
    EXPECT_EQ(m_Side.Write(), ahead + ChunkBytes::Folder("ACTR", actions));
    EXPECT_EQ(m_Side.Write(ra::MotionForm::Final), ahead + ChunkBytes::Folder("ACTS", actions));
}

TEST_F(MotionChunks, WhatIsReadAndSavedAgainHasTheSameBytes) {
    for (const ra::MotionForm form : {ra::MotionForm::Generic, ra::MotionForm::Final}) {
        MotionSide side;
        side.AddSamples();
        m_Side = MotionSide();
        EXPECT_EQ(Read(side.Write(form) + ChunkBytes::Folder("WHAT", "") + ChunkBytes::Data("MTRE", ""), form), 6);
        EXPECT_EQ(m_Side.Write(form), side.Write(form));
    }
    EXPECT_THAT(m_Reports.GetWarnings(), ElementsAre());
    EXPECT_EQ(Read(ChunkBytes::Folder("ACTS", "")), 0) << "the other form's";
}

TEST_F(MotionChunks, OlderMotionsHaveFewerFields) {
    for (uint32_t version = 1; version <= 4; ++version) {
        m_Side = MotionSide();
        Read(MakeTree(MakeMotion(version).U8(0).Get(), version));
        ASSERT_EQ(m_Side.motions.GetCount(), 1u) << version;
        const ra::Motion& motion = m_Side.motions[0];
        EXPECT_EQ(motion.m_transitionTime, 0.75f) << version;
        EXPECT_EQ(motion.m_delays[ra::Motion::Delay_Second].max, 4) << version;
        EXPECT_EQ(motion.m_delays[ra::Motion::Delay_Third].max, version >= 2 ? 6 : 0) << version;
        EXPECT_EQ(motion.m_delays[ra::Motion::Delay_Fourth].max, version >= 2 ? 8 : 0) << version;
        EXPECT_EQ(motion.m_ignoreTransitions, version >= 3) << version;
        EXPECT_EQ(motion.m_secondFlag, version >= 4) << version;
        EXPECT_FALSE(motion.HasTimingModifier());
    }
    EXPECT_THROW(Read(MakeTree(MakeMotion(4).U8(0).Get(), 5)), Chunky::Exception);
    EXPECT_THROW(Read(MakeTree(MakeMotion(1).U8(0).Get(), 0)), Chunky::Exception);
    EXPECT_THROW(Read(ChunkBytes::Folder("MTRE", "", 4)), Chunky::Exception);
    EXPECT_EQ(Read(ChunkBytes::Folder("MTRE", "", 1)), 1);
}

TEST_F(MotionChunks, AnOlderClauseLeavesItsSecondValueAtTheDefault) {
    const std::string bytes = PayloadBytes().U32(0).Text("speed").U32(0).F32({2}).Get();
    Read(ChunkBytes::Folder("CLST", NamedData("CLAS", "fast", bytes, 1)));
    const auto& clause = dynamic_cast<const ra::ClauseFloat&>(m_Side.clauses[0]);
    EXPECT_EQ(clause.GetFirstValue(), 2);
    EXPECT_EQ(clause.GetSecondValue(), 0);
}

TEST_F(MotionChunks, AnObsoleteTreeIsToldOnceAndGivesNoMotions) {
    const std::string old = NamedData("MOTN", "old", "whatever", 1);
    Read(ChunkBytes::Folder("MTRE", old + old, 2));
    EXPECT_EQ(m_Side.motions.GetCount(), 0u);
    EXPECT_EQ(ReportCapture::CountWarnings("'Walker': Obsolete motion tree detected, please resave in the OE!"), 1u);
}

TEST_F(MotionChunks, ReadingEndsAtAForeignChild) {
    const std::string condition = PayloadBytes().U32(0).Get();
    Read(ChunkBytes::Folder("CONL", NamedData("COND", "a", condition, 1) + ChunkBytes::Data("WHAT", "ever") +
                                        NamedData("COND", "b", condition, 1)));
    EXPECT_EQ(m_Side.conditions.GetCount(), 1u);
}

TEST_F(MotionChunks, MissingReferencesAreToldAndLeftOut) {
    MotionSide side;
    side.AddSamples();
    ra::Motion& motion = side.motions[0];
    motion.m_animNodes.emplace_back("swim");
    motion.AddRandMotion(Name("fly"), 1);
    motion.m_events.push_back({Name("bang"), 0});
    motion.m_timingModifier = Name("slow");
    side.conditions[0].m_clauses.emplace_back("deaf");
    side.actions[0].m_motions.push_back({Name("hop"), 0, Name("dumb")});
    side.actions[0].m_motions.push_back({Name("walk"), 0, Name("blind")});
    side.actions[0].m_subActions.push_back({Name("sit"), 3, {}});
    Read(side.Write());
    for (const char* pText : {"'Walker': Animation 'swim' referenced in motion 'walk' is missing!",
                              "'Walker': Motion 'fly' referenced in motion 'walk' is missing!",
                              "EVENTS -- 'Walker': Event 'bang' referenced in motion 'walk' is missing!",
                              "'Walker': Modifier 'slow' referenced in motion 'walk' is missing!",
                              "'Walker': Clause 'deaf' referenced in condition 'running' is missing!",
                              "'Walker': Motion 'hop' referenced in action 'move' is missing!",
                              "'Walker': Action 'sit' referenced in action 'move' is missing!",
                              "'Walker': Condition 'dumb' referenced in action 'move' is missing!",
                              "'Walker': Condition 'blind' referenced in action 'move' is missing!"})
        EXPECT_EQ(ReportCapture::CountWarnings(pText), 1u) << pText;
    EXPECT_EQ(m_Side.motions[0].GetAnimNodeCount(), 1u);
    EXPECT_EQ(m_Side.motions[0].GetRandMotionCount(), 1u);
    EXPECT_EQ(m_Side.motions[0].m_events.size(), 1u);
    EXPECT_FALSE(m_Side.motions[0].HasTimingModifier());
    EXPECT_EQ(m_Side.conditions[0].m_clauses.size(), 2u);
    EXPECT_EQ(m_Side.actions[0].m_motions.size(), 3u);
    EXPECT_FALSE(m_Side.actions[0].m_motions[2].condition.IsValid());
    EXPECT_EQ(m_Side.actions[0].m_subActions.size(), 1u);
    // What was left out isn't missed again.
    const std::string tidied = m_Side.Write();
    ReportCapture::Clear();
    m_Side = MotionSide();
    Read(tidied);
    EXPECT_THAT(m_Reports.GetWarnings(), ElementsAre());
}

TEST_F(MotionChunks, OddMotionsAreTold) {
    MotionSide side;
    side.AddSamples();
    side.motions[0].m_animNodes = {Name("walk"), Name("run")};
    side.motions[0].m_ignoreTransitions = false;
    side.modifiers[0].m_mode = ra::Modifier::Mode_Absolute;
    Read(side.Write());
    EXPECT_TRUE(ReportCapture::HasWarning("'Walker': Motion 'walk' has more than one animation:"));
    EXPECT_TRUE(ReportCapture::HasWarning("'Walker': Animation: walk"));
    EXPECT_TRUE(ReportCapture::HasWarning("'Walker': Animation: run"));
    EXPECT_TRUE(
        ReportCapture::HasWarning("'Walker': WARNING -- Motion 'walk' has an absolute modifier, has events, and "
                                  "does not ignore transitions -- it may skip events"));
    EXPECT_EQ(m_Side.motions[0].GetAnimNodeCount(), 2u);
}

TEST_F(MotionChunks, DamageIsToldWithObjectAndField) {
    const auto clause = [](uint32_t kind, uint32_t comparison) {
        const std::string bytes = PayloadBytes().U32(kind).Text("speed").U32(comparison).F32({1, 2}).Get();
        return ChunkBytes::Folder("CLST", NamedData("CLAS", "fast", bytes, 2));
    };
    ExpectFault(clause(3, 0), "clause 'fast': kind 3 is none of 0 to 2");
    ExpectFault(clause(0, 6), "clause 'fast': comparison 6 is none of 0 to 5");
    ExpectFault(ChunkBytes::Folder("EVCT", NamedData("EVNT", "step", PayloadBytes().U32(1).Get(), 3)),
                "event 'step': parameter count 1 exceeds its chunk");
    ExpectFault(
        ChunkBytes::Folder("MODL", NamedData("MODF", "pace", PayloadBytes().Text("speed").U32(2).F32({3, 4}).Get(), 2)),
        "modifier 'pace': mode 2 is neither 0 nor 1");
    const std::string light = PayloadBytes().U32(0).U32(1).Text("yawn").F32({0.0005f}).Get();
    ExpectFault(MakeTree(light, 4), "motion 'walk': weight 0.000500 is below 0.001");
    ExpectFault(MakeTree(MakeMotion(4).U8(2).Get(), 4), "motion 'walk': modifier mark 2 is neither 0 nor 1");
    const std::string mode = PayloadBytes().U32(0).U32(0).U8(0).U32(0).U32(3).Get();
    ExpectFault(MakeTree(mode, 4), "motion 'walk': play mode 3 is none of 0 to 2");
    const std::string longName = PayloadBytes().U32(1).Text(std::string(260, 'x')).Get();
    EXPECT_THROW(Read(ChunkBytes::Folder("CONL", NamedData("COND", "long", longName, 1))), ByteStream::Exception);
}

TEST_F(MotionChunks, EveryTruncationIsRefused) {
    MotionSide side;
    side.AddSamples();
    const std::string bytes = side.Write();
    int sound = 0;
    for (size_t size = 0; size < bytes.size(); ++size) {
        m_Side = MotionSide();
        try {
            Read(bytes.substr(0, size));
            ++sound; // between two chunks
        } catch (const std::runtime_error&) {
        }
    }
    EXPECT_EQ(sound, 6);
}

} // namespace
