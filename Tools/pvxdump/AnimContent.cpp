#include "Tools/pvxdump/AnimContent.h"

#include <utility>

#include "Shared/Cross/RenderAnim/AnimInterm.h"
#include "Shared/Cross/RenderAnim/Final/FinalAnimChunk.h"
#include "Shared/Cross/RenderAnim/Generic/AnimChunk.h"
#include "Shared/Cross/RenderAnim/Intermediate/AnimChunk.h"

const char* GetText(DataLevel level) {
    switch (level) {
    case DataLevel::Intermediate:
        return "intermediate";
    case DataLevel::Generic:
        return "generic";
    default:
        return "final";
    }
}

AnimationContent ReadAnimationContent(Chunky& chunky, const ChunkInfo& child) {
    AnimationContent content;
    content.name = child.name.GetView();
    content.version = child.version;
    content.size = child.size;
    if (child.version <= ra::intermediate::s_AnimVersion) {
        content.pAnim = ra::intermediate::ReadAnim(chunky);
        return content;
    }
    const bool isGeneric = child.version <= ra::generic::s_AnimVersion;
    content.level = isGeneric ? DataLevel::Generic : DataLevel::Final;
    ra::AnimRecord record = isGeneric ? ra::generic::ReadAnimRecord(chunky) : ra::ReadFinalAnimRecord(chunky);
    content.pAnim = std::move(record.pAnim);
    content.xrefModel = std::move(record.xrefModel);
    content.xrefAnim = std::move(record.xrefAnim);
    content.bounds = record.bounds;
    return content;
}
