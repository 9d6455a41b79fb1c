#include "Shared/Cross/RenderAnim/Motion/Chunks/ActionTreeChunk.h"

#include <memory>
#include <string>

#include "Shared/Cross/RenderAnim/Chunks/PayloadReader.h"
#include "Shared/Cross/RenderAnim/Motion/Chunks/ChildChunks.h"

// "ACTR", in final files "ACTS", folder, version 1: "ACTN" for each action.
//
// "ACTN", data, version 1, name of the action:
//   int32    motions; for each:
//     string   name
//     int32    condition mode
//     string   condition, with the modes 0 and 1 alone
//   int32    actions below it; for each:
//     string   name
//     int32    condition mode
//     string   condition, with the modes 0 and 1 alone

namespace ra {

namespace {

constexpr uint32_t s_ActionTreeVersion = 1;
constexpr uint32_t s_ActionChunk = FourCC("ACTN");
constexpr uint32_t s_ActionVersion = 1;
constexpr size_t s_ChoiceMinBytes = 8; // an empty name and a mode

void WriteChoices(PayloadWriter& writer, const std::vector<Action::Choice>& choices) {
    writer.Write(static_cast<uint32_t>(choices.size()));
    for (const Action::Choice& choice : choices) {
        writer.WriteString(choice.target.GetText());
        writer.Write(choice.conditionMode);
        if (choice.HasConditionMode())
            writer.WriteString(choice.condition.GetText());
    }
}

// A condition that was missing when the file was written has an empty name there.
std::vector<Action::Choice> ReadChoices(PayloadReader& reader, const char* pField) {
    std::vector<Action::Choice> choices(reader.ReadCount(s_ChoiceMinBytes, pField));
    for (Action::Choice& choice : choices) {
        choice.target = Name(reader.ReadString(pField).c_str());
        choice.conditionMode = reader.Read<int32_t>("condition mode");
        if (!choice.HasConditionMode())
            continue;
        const std::string condition = reader.ReadString("condition");
        if (!condition.empty())
            choice.condition = Name(condition.c_str());
    }
    return choices;
}

void WriteAction(Chunky& chunky, PayloadWriter& writer, const Action& action) {
    WriteChoices(writer, action.m_motions);
    WriteChoices(writer, action.m_subActions);
    writer.WriteChunk(chunky, s_ActionChunk, s_ActionVersion, action.m_Name.GetText());
}

std::unique_ptr<Action> ReadAction(Chunky& chunky) {
    const ChunkInfo info = EnterData(chunky, s_ActionChunk, s_ActionVersion, s_ActionVersion);
    PayloadReader reader(chunky, "action", info.name.GetText());
    auto pAction = std::make_unique<Action>();
    pAction->m_Name = Name(info.name.GetText());
    pAction->m_motions = ReadChoices(reader, "motions");
    pAction->m_subActions = ReadChoices(reader, "actions below");
    chunky.EndChunk();
    return pAction;
}

} // namespace

void WriteActions(Chunky& chunky, PayloadWriter& writer, const ActionTree& actions, MotionForm form) {
    WriteChildren(chunky, GetActionTreeChunk(form), s_ActionTreeVersion, actions,
                  [&](const Action& action) { WriteAction(chunky, writer, action); });
}

void ReadActions(Chunky& chunky, ActionTree& actions, MotionForm form) {
    ReadChildren(chunky, GetActionTreeChunk(form), s_ActionTreeVersion, s_ActionChunk,
                 [&] { actions.Add(ReadAction(chunky)); });
}

} // namespace ra
