#include "Tools/pvxdump/MotionContent.h"

#include <utility>

#include "Shared/Cross/RenderAnim/Chunks/ModelLayout.h"
#include "Shared/Cross/RenderAnim/Chunks/SelectionChunk.h"
#include "Shared/Cross/RenderAnim/Motion/Chunks/ActionTreeChunk.h"
#include "Shared/Cross/RenderAnim/Motion/Chunks/EventChunk.h"
#include "Shared/Cross/RenderAnim/Motion/Chunks/MotionChunks.h"

namespace {

bool ReadPart(Chunky& chunky, const ChunkInfo& child, MotionContent& content) {
    const bool isFinal = child.id == ra::GetActionTreeChunk(ra::MotionForm::Final);
    const ra::MotionContext context = {.form = isFinal ? ra::MotionForm::Final : ra::MotionForm::Generic,
                                       .hasAnimation = {},
                                       .checksReferences = false};
    if (!ra::ReadMotionPart(chunky, child, content.GetParts(), context))
        return false;
    if (isFinal)
        content.level = DataLevel::Final;
    return true;
}

void ReadChild(Chunky& chunky, const ChunkInfo& child, MotionContent& content) {
    if (ReadPart(chunky, child, content))
        return;
    if (child.kind == ChunkKind_Folder && child.id == ra::s_AnimChunk) {
        content.animations.push_back(ReadAnimationContent(chunky, child));
        if (content.animations.back().level == DataLevel::Final)
            content.level = DataLevel::Final;
    } else if (child.kind == ChunkKind_Data && child.id == ra::s_SelectionChunk)
        content.selection = ra::ReadSelection(chunky);
    else
        ++content.undecoded[child.id];
}

} // namespace

MotionContent ReadMotionContent(Chunky& chunky, const ChunkInfo& top, const char* pKind) {
    MotionContent content;
    content.pKind = pKind;
    content.version = top.version;
    if (top.kind == ChunkKind_Data) {
        content.events.Add(ra::ReadEvent(chunky));
        return content;
    }
    chunky.EnterFolder(top.id, top.version);
    for (ChunkInfo child; chunky.NextChunk(child);)
        ReadChild(chunky, child, content);
    chunky.EndChunk();
    return content;
}
