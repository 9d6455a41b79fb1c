#include "Shared/Cross/RenderAnim/Motion/Chunks/MotionFileChunk.h"

#include "Shared/Cross/RenderAnim/AnimList.h"
#include "Shared/Cross/RenderAnim/Chunks/AnimNodes.h"
#include "Shared/Cross/RenderAnim/Chunks/ModelLayout.h"
#include "Shared/Cross/RenderAnim/Chunks/SelectionChunk.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"

// "QEBP", folder, version 4, without a name. In this order:
//   "ANIM"            one for each animation of another model
//   "EVCT", "CLST", "CONL", "MODL", "MTRE", and "ACTR" or in the final form "ACTS"
//                     the motion side, as the others here tell
//   "SEUI"            how the model is picked

namespace ra {

namespace {

void WriteXRefAnims(Chunky& chunky, const RenderModel& model, const MotionFileForm& form) {
    const AnimList* pAnimList = model.GetAnimList();
    for (uint32_t i = 0; pAnimList && i < pAnimList->GetCount(); ++i)
        if (const AnimListNode& node = *pAnimList->GetNode(i); !node.IsLocal())
            form.pWriteAnim(chunky, model, node);
}

} // namespace

void WriteMotionFile(Chunky& chunky, const RenderModel& model, const MotionFileForm& form) {
    PayloadWriter writer;
    chunky.BeginFolder(s_MotionFileChunk, s_MotionFileVersion);
    WriteXRefAnims(chunky, model, form);
    WriteMotionParts(chunky, writer, model.GetMotionParts(), form.form);
    WriteSelection(chunky, writer, model.GetSelectionInfo());
    chunky.EndChunk();
}

bool ReadMotionFile(Chunky& chunky, RenderModel& model, const MotionFileForm& form) {
    chunky.EnterFolder(s_MotionFileChunk, s_MotionFileVersion);
    const MotionContext context = MakeMotionContext(model, form.form);
    for (ChunkInfo child; chunky.NextChunk(child);) {
        if (ReadMotionPart(chunky, child, model.GetMotionParts(), context))
            continue;
        if (child.kind == ChunkKind_Data && child.id == s_SelectionChunk)
            model.SetSelectionInfo(ReadSelection(chunky));
        else if (child.kind == ChunkKind_Folder && child.id == s_AnimChunk) {
            if (!CanHoldAnim(model, child))
                return false;
            form.pAppendAnim(chunky, model);
        }
    }
    chunky.EndChunk();
    return true;
}

} // namespace ra
