#include "Shared/Cross/RenderAnim/Generic/MotionFile.h"

#include <stdexcept>

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/RenderAnim/AnimList.h"
#include "Shared/Cross/RenderAnim/Chunks/AnimNodes.h"
#include "Shared/Cross/RenderAnim/Chunks/ModelLayout.h"
#include "Shared/Cross/RenderAnim/Chunks/SaveFile.h"
#include "Shared/Cross/RenderAnim/Chunks/SelectionChunk.h"
#include "Shared/Cross/RenderAnim/Generic/AnimChunk.h"
#include "Shared/Cross/RenderAnim/Motion/Chunks/MotionChunks.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"

// "QEBP", folder, version 4. In this order:
//   "ANIM"            one for each animation of another model
//   "EVCT", "CLST", "CONL", "MODL", "MTRE", "ACTR"
//                     the motion side, as Motion/Chunks tells
//   "SEUI"            how the model is picked

namespace ra {

namespace {

void WriteXRefAnims(Chunky& chunky, const RenderModel& model) {
    const AnimList* pAnimList = model.GetAnimList();
    for (uint32_t i = 0; pAnimList && i < pAnimList->GetCount(); ++i)
        if (const AnimListNode& node = *pAnimList->GetNode(i); !node.IsLocal())
            generic::WriteAnim(chunky, model, node);
}

// What isn't known is left for NextChunk to step over.
bool ReadChild(Chunky& chunky, const ChunkInfo& child, RenderModel& model, const MotionContext& context) {
    if (ReadMotionPart(chunky, child, model.GetMotionParts(), context))
        return true;
    if (child.kind == ChunkKind_Data && child.id == s_SelectionChunk)
        model.SetSelectionInfo(ReadSelection(chunky));
    else if (child.kind == ChunkKind_Folder && child.id == s_AnimChunk) {
        if (!CanHoldAnim(model, child))
            return false;
        model.BuildReferencePose();
        generic::AppendAnim(chunky, model);
    }
    return true;
}

} // namespace

void WriteMotionFile(ByteStream& stream, const RenderModel& model) {
    Chunky chunky{ByteStreamAdapter(&stream)};
    PayloadWriter writer;
    chunky.BeginFolder(s_MotionFileChunk, s_MotionFileVersion);
    WriteXRefAnims(chunky, model);
    WriteMotionParts(chunky, writer, model.GetMotionParts(), MotionForm::Generic);
    WriteSelection(chunky, writer, model.GetSelectionInfo());
    chunky.EndChunk();
    if (!stream.Flush())
        throw std::runtime_error("Unable to write to file!");
}

bool SaveMotionFile(const RenderModel& model, const char* pPath) {
    return SaveFile(pPath, [&](ByteStream& stream) { WriteMotionFile(stream, model); });
}

bool ReadMotionFile(ByteStream& stream, RenderModel& model) {
    Chunky chunky{ByteStreamAdapter(&stream)};
    chunky.EnterFolder(s_MotionFileChunk, s_MotionFileVersion);
    const MotionContext context = MakeMotionContext(model, MotionForm::Generic);
    for (ChunkInfo child; chunky.NextChunk(child);)
        if (!ReadChild(chunky, child, model, context))
            return false;
    chunky.EndChunk();
    return true;
}

} // namespace ra
