#include "Shared/Cross/RenderAnim/Motion/Chunks/MotionTreeChunks.h"

#include <memory>
#include <string>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/Chunks/PayloadReader.h"
#include "Shared/Cross/RenderAnim/Motion/Chunks/ChildChunks.h"
#include "Shared/Cross/RenderAnim/Motion/Event.h"

// "MODL", folder, version 1: "MODF" for each modifier.
//
// "MODF", data, version 2, name of the modifier:
//   string   variable
//   int32    mode: 0 absolute, 1 scaled
//   float    reference value
//   float    second value
//
// "MTRE", folder, version 3: "MTON" for each motion. A tree of "MOTN" is too old to be read.
//
// "MTON", data, version 4, name of the motion:
//   int32    animation nodes; for each:
//     string   animation
//   int32    random motions; for each:
//     string   motion
//     float    weight, at least 0.001
//   uint8    flag
//   int32    events; for each:
//     string   event
//     float    time
//   int32    play mode: 0 once, 1 looping, 2 hold the end
//   float    first delay: minimum, maximum
//   float
//   float    second delay: minimum, maximum
//   float
//   float    up to version 3; means nothing
//   float    transition time
//   float    fourth delay: minimum, maximum; from version 2 on
//   float
//   float    third delay, the same: behind the fourth, as it has always been written
//   float
//   uint8    whether transitions are ignored; from version 3 on
//   uint8    second flag; from version 4 on
//   uint8    whether there is a modifier
//   string   modifier, if there is one

namespace ra {

namespace {

constexpr uint32_t s_ModifierListVersion = 1;
constexpr uint32_t s_ModifierChunk = FourCC("MODF");
constexpr uint32_t s_ModifierVersion = 2;
constexpr uint32_t s_MotionTreeVersion = 3;
constexpr uint32_t s_MotionChunk = FourCC("MTON");
constexpr uint32_t s_ObsoleteMotionChunk = FourCC("MOTN");
constexpr uint32_t s_MotionVersion = 4;
constexpr uint32_t s_OldestMotionVersion = 1;
constexpr size_t s_NameAndFloatMinBytes = 8;

void WriteModifier(Chunky& chunky, PayloadWriter& writer, const Modifier& modifier) {
    writer.WriteString(modifier.m_variable.GetText());
    writer.Write(modifier.m_mode);
    writer.Write(modifier.m_refValue);
    writer.Write(modifier.m_secondValue);
    writer.WriteChunk(chunky, s_ModifierChunk, s_ModifierVersion, modifier.m_Name.GetText());
}

std::unique_ptr<Modifier> ReadModifier(Chunky& chunky) {
    const ChunkInfo info = EnterData(chunky, s_ModifierChunk, s_ModifierVersion, s_ModifierVersion);
    PayloadReader reader(chunky, "modifier", info.name.GetText());
    auto pModifier = std::make_unique<Modifier>();
    pModifier->m_Name = Name(info.name.GetText());
    pModifier->m_variable = Name(reader.ReadString("variable").c_str());
    const auto mode = reader.Read<int32_t>("mode");
    if (mode != Modifier::Mode_Absolute && mode != Modifier::Mode_Scaled)
        reader.Fail("mode", std::to_string(mode) + " is neither 0 nor 1");
    pModifier->m_mode = static_cast<Modifier::Mode>(mode);
    pModifier->m_refValue = reader.Read<float>("reference value");
    pModifier->m_secondValue = reader.Read<float>("second value");
    chunky.EndChunk();
    return pModifier;
}

void WriteDelay(PayloadWriter& writer, const DelayRange& delay) {
    writer.Write(delay.min);
    writer.Write(delay.max);
}

DelayRange ReadDelay(PayloadReader& reader, const char* pField) {
    DelayRange delay;
    delay.min = reader.Read<float>(pField);
    delay.max = reader.Read<float>(pField);
    return delay;
}

void WriteMotion(Chunky& chunky, PayloadWriter& writer, const Motion& motion) {
    writer.Write(motion.GetAnimNodeCount());
    for (const Name& anim : motion.m_animNodes)
        writer.WriteString(anim.GetText());
    writer.Write(motion.GetRandMotionCount());
    for (const Motion::RandMotion& randMotion : motion.m_randMotions) {
        writer.WriteString(randMotion.motion.GetText());
        writer.Write(randMotion.weight);
    }
    writer.Write<uint8_t>(motion.m_flag ? 1 : 0);
    writer.Write(static_cast<uint32_t>(motion.m_events.size()));
    for (const Motion::TimedEvent& event : motion.m_events) {
        writer.WriteString(event.event.GetText());
        writer.Write(event.time);
    }
    writer.Write(motion.m_playMode);
    WriteDelay(writer, motion.m_delays[Motion::Delay_First]);
    WriteDelay(writer, motion.m_delays[Motion::Delay_Second]);
    writer.Write(motion.m_transitionTime);
    WriteDelay(writer, motion.m_delays[Motion::Delay_Fourth]);
    WriteDelay(writer, motion.m_delays[Motion::Delay_Third]);
    writer.Write<uint8_t>(motion.m_ignoreTransitions ? 1 : 0);
    writer.Write<uint8_t>(motion.m_secondFlag ? 1 : 0);
    writer.Write<uint8_t>(motion.HasTimingModifier() ? 1 : 0);
    if (motion.HasTimingModifier())
        writer.WriteString(motion.m_timingModifier.GetText());
    writer.WriteChunk(chunky, s_MotionChunk, s_MotionVersion, motion.GetName().GetText());
}

void ReadRandMotions(PayloadReader& reader, Motion& motion) {
    const uint32_t count = reader.ReadCount(s_NameAndFloatMinBytes, "random motion count");
    motion.m_randMotions.reserve(count);
    for (uint32_t i = 0; i < count; ++i) {
        const Name name(reader.ReadString("random motion").c_str());
        const auto weight = reader.Read<float>("weight");
        if (!(weight >= Motion::MinWeight))
            reader.Fail("weight", std::to_string(weight) + " is below 0.001");
        motion.AddRandMotion(name, weight);
    }
}

// What is played and what happens meanwhile.
void ReadContent(PayloadReader& reader, Motion& motion) {
    motion.m_animNodes.resize(reader.ReadCount(s_NameMinBytes, "animation count"));
    for (Name& anim : motion.m_animNodes)
        anim = Name(reader.ReadString("animation").c_str());
    ReadRandMotions(reader, motion);
    motion.m_flag = reader.Read<uint8_t>("flag") != 0;
    motion.m_events.resize(reader.ReadCount(s_NameAndFloatMinBytes, "event count"));
    for (Motion::TimedEvent& event : motion.m_events) {
        event.event = Name(NormaliseEventName(reader.ReadString("event").c_str()).c_str());
        event.time = reader.Read<float>("event time");
    }
}

void ReadTiming(PayloadReader& reader, uint32_t version, Motion& motion) {
    const auto playMode = reader.Read<int32_t>("play mode");
    if (playMode < 0 || playMode >= Motion::PlayModeCount)
        reader.Fail("play mode", std::to_string(playMode) + " is none of 0 to 2");
    motion.m_playMode = static_cast<Motion::PlayMode>(playMode);
    motion.m_delays[Motion::Delay_First] = ReadDelay(reader, "first delay");
    motion.m_delays[Motion::Delay_Second] = ReadDelay(reader, "second delay");
    if (version <= 3)
        reader.Read<float>("transition time");
    motion.m_transitionTime = reader.Read<float>("transition time");
    if (version >= 2) {
        motion.m_delays[Motion::Delay_Fourth] = ReadDelay(reader, "fourth delay");
        motion.m_delays[Motion::Delay_Third] = ReadDelay(reader, "third delay");
    }
    if (version >= 3)
        motion.m_ignoreTransitions = reader.Read<uint8_t>("first flag") != 0;
    if (version >= 4)
        motion.m_secondFlag = reader.Read<uint8_t>("second flag") != 0;
}

std::unique_ptr<Motion> ReadMotion(Chunky& chunky) {
    const ChunkInfo info = EnterData(chunky, s_MotionChunk, s_OldestMotionVersion, s_MotionVersion);
    PayloadReader reader(chunky, "motion", info.name.GetText());
    auto pMotion = std::make_unique<Motion>(Name(info.name.GetText()));
    ReadContent(reader, *pMotion);
    ReadTiming(reader, info.version, *pMotion);
    const auto hasModifier = reader.Read<uint8_t>("modifier mark");
    if (hasModifier > 1)
        reader.Fail("modifier mark", std::to_string(hasModifier) + " is neither 0 nor 1");
    if (hasModifier == 1)
        pMotion->m_timingModifier = Name(reader.ReadString("modifier").c_str());
    chunky.EndChunk();
    return pMotion;
}

} // namespace

void WriteModifiers(Chunky& chunky, PayloadWriter& writer, const ModifierList& modifiers) {
    WriteChildren(chunky, s_ModifierListChunk, s_ModifierListVersion, modifiers,
                  [&](const Modifier& modifier) { WriteModifier(chunky, writer, modifier); });
}

void ReadModifiers(Chunky& chunky, ModifierList& modifiers) {
    ReadChildren(chunky, s_ModifierListChunk, s_ModifierListVersion, s_ModifierChunk,
                 [&] { modifiers.Add(ReadModifier(chunky)); });
}

void WriteMotions(Chunky& chunky, PayloadWriter& writer, const MotionList& motions) {
    WriteChildren(chunky, s_MotionTreeChunk, s_MotionTreeVersion, motions,
                  [&](const Motion& motion) { WriteMotion(chunky, writer, motion); });
}

void ReadMotions(Chunky& chunky, MotionList& motions, const char* pModelName) {
    const uint32_t foreign = ReadChildren(chunky, s_MotionTreeChunk, s_MotionTreeVersion, s_MotionChunk,
                                          [&] { motions.Add(ReadMotion(chunky)); });
    if (foreign == s_ObsoleteMotionChunk)
        dbWarningf("'%s': Obsolete motion tree detected, please resave in the OE!", pModelName);
}

} // namespace ra
