#pragma once

#include <memory>
#include <string>

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/RenderAnim/Motion/Chunks/MotionChunks.h"
#include "Tests/Shared/Cross/RenderAnim/Chunks/PayloadBytes.h"

// The lists of a motion side by themselves, and a sample of each object.
struct MotionSide : ra::MotionLists {
    // Everything, each of it named by something behind it. The animations "walk" and "run" are the model's.
    void AddSamples() {
        using ra::Name;
        events.Add(std::make_unique<ra::Event>(
            ra::Event{.m_Name = Name("art/events/step"), .m_parameters = {{"sound", "gravel"}, {"volume", ""}}}));
        AddClause<ra::ClauseFloat>("fast", 2.5f, 7.0f);
        AddClause<ra::ClauseBool>("alive", true, false);
        AddClause<ra::ClauseString>("prone", std::string("low"), std::string("lower"));
        conditions.Add(std::make_unique<ra::Condition>(
            ra::Condition{.m_Name = Name("running"), .m_clauses = {Name("fast"), Name("prone")}}));
        modifiers.Add(std::make_unique<ra::Modifier>(ra::Modifier{.m_Name = Name("pace"),
                                                                  .m_variable = Name("speed"),
                                                                  .m_mode = ra::Modifier::Mode_Scaled,
                                                                  .m_refValue = 3,
                                                                  .m_secondValue = 4}));
        AddMotions();
        AddActions();
    }

    static std::string Write(const ra::ConstMotionParts& parts, ra::MotionForm form = ra::MotionForm::Generic);
    std::string Write(ra::MotionForm form = ra::MotionForm::Generic) { return Write(AsConst(GetParts()), form); }

private:
    template <class C, class V>
    void AddClause(const char* pName, V first, V second) {
        auto pClause = std::make_unique<C>(ra::Name(pName));
        pClause->SetTest(ra::Name("speed"), ra::Clause::GreaterOrEqual);
        pClause->SetFirstValue(first);
        pClause->SetSecondValue(second);
        clauses.Add(std::move(pClause));
    }
    void AddMotions() {
        using ra::Name;
        ra::Motion& motion = motions.Add(std::make_unique<ra::Motion>(Name("walk")));
        motion.m_animNodes = {Name("walk")};
        motion.AddRandMotion(Name("later"), 0.25f);
        motion.m_events = {{Name("art/events/step"), 0.5f}};
        motion.m_playMode = ra::Motion::HoldEnd;
        motion.m_delays = {{{1, 2}, {3, 4}, {5, 6}, {7, 8}}};
        motion.m_transitionTime = 0.75f;
        motion.m_flag = motion.m_ignoreTransitions = motion.m_secondFlag = true;
        motion.m_timingModifier = Name("pace");
        motions.Add(std::make_unique<ra::Motion>(Name("later")));
    }
    void AddActions() {
        using ra::Name;
        ra::Action action = {.m_Name = Name("move"),
                             .m_motions = {{Name("walk"), 1, Name("running")}, {Name("later"), 2, {}}},
                             .m_subActions = {{Name("stop"), 0, Name("running")}}};
        actions.Add(std::make_unique<ra::Action>(std::move(action)));
        actions.Add(std::make_unique<ra::Action>(ra::Action{.m_Name = Name("stop")}));
    }
};

inline std::string MotionSide::Write(const ra::ConstMotionParts& parts, ra::MotionForm form) {
    const auto pStream = MakeWriteStream();
    Chunky chunky{ByteStreamAdapter(pStream.get())};
    PayloadWriter writer;
    ra::WriteMotionParts(chunky, writer, parts, form);
    return BytesOf(*pStream).substr(24);
}
