#include "Shared/Cross/RenderAnim/Motion/Chunks/MotionChunks.h"

#include "Shared/Cross/RenderAnim/AnimList.h"
#include "Shared/Cross/RenderAnim/Motion/Chunks/ActionTreeChunk.h"
#include "Shared/Cross/RenderAnim/Motion/Chunks/CheckReferences.h"
#include "Shared/Cross/RenderAnim/Motion/Chunks/ConditionChunks.h"
#include "Shared/Cross/RenderAnim/Motion/Chunks/EventChunk.h"
#include "Shared/Cross/RenderAnim/Motion/Chunks/MotionTreeChunks.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"

namespace ra {

MotionContext MakeMotionContext(const RenderModel& model, MotionForm form) {
    const auto hasAnimation = [&model](const Name& name) {
        const AnimList* pAnimList = model.GetAnimList();
        return pAnimList && pAnimList->FindNode(name.GetTextOrEmpty()) != AnimList::InvalidIndex;
    };
    return {.pModelName = model.GetName(), .form = form, .hasAnimation = hasAnimation};
}

void WriteMotionParts(Chunky& chunky, PayloadWriter& writer, const ConstMotionParts& parts, MotionForm form) {
    WriteEvents(chunky, writer, parts.events);
    WriteClauses(chunky, writer, parts.clauses);
    WriteConditions(chunky, writer, parts.conditions);
    WriteModifiers(chunky, writer, parts.modifiers);
    WriteMotions(chunky, writer, parts.motions);
    WriteActions(chunky, writer, parts.actions, form);
}

bool ReadMotionPart(Chunky& chunky, const ChunkInfo& child, const MotionParts& parts, const MotionContext& context) {
    if (child.kind != ChunkKind_Folder)
        return false;
    const uint32_t conditionCount = parts.conditions.GetCount();
    const uint32_t motionCount = parts.motions.GetCount();
    const uint32_t actionCount = parts.actions.GetCount();
    if (child.id == s_EventListChunk)
        ReadEvents(chunky, parts.events);
    else if (child.id == s_ClauseListChunk)
        ReadClauses(chunky, parts.clauses);
    else if (child.id == s_ConditionListChunk)
        ReadConditions(chunky, parts.conditions);
    else if (child.id == s_ModifierListChunk)
        ReadModifiers(chunky, parts.modifiers);
    else if (child.id == s_MotionTreeChunk)
        ReadMotions(chunky, parts.motions, context.pModelName);
    else if (child.id == GetActionTreeChunk(context.form))
        ReadActions(chunky, parts.actions, context.form);
    else
        return false;
    // Only what came with this chunk has anything to check.
    if (context.checksReferences) {
        CheckConditions(parts, context, conditionCount);
        CheckMotions(parts, context, motionCount);
        CheckActions(parts, context, actionCount);
    }
    return true;
}

} // namespace ra
