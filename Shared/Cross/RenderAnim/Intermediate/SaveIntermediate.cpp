#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/AnimInterm.h"
#include "Shared/Cross/RenderAnim/AnimListNode.h"
#include "Shared/Cross/RenderAnim/Chunks/SaveFile.h"
#include "Shared/Cross/RenderAnim/Intermediate/AnimChunk.h"
#include "Shared/Cross/RenderAnim/Intermediate/IntermediateFile.h"
#include "Shared/Cross/RenderAnim/Intermediate/SkeletonChunk.h"

namespace ra {

namespace {

void WriteNode(Chunky& chunky, const RenderModel&, const AnimListNode& node) {
    // What has been turned into local streams is no longer what this form holds.
    const auto* pAnim = dynamic_cast<const AnimInterm*>(node.GetAnim().GetData());
    dbAssert(pAnim);
    if (pAnim)
        intermediate::WriteAnim(chunky, *pAnim);
}

constexpr ModelForm s_Form = {.pWriteSkeleton = intermediate::WriteSkeleton, .pWriteAnim = WriteNode};

} // namespace

void WriteIntermediate(ByteStream& stream, const RenderModel& model, const IntermediateParts& parts) {
    WriteModelTree(stream, model, parts, s_Form);
}

bool SaveIntermediate(const char* pPath, const RenderModel& model, bool exportMeshes, bool exportAnimKeys,
                      bool exportShaders) {
    const IntermediateParts parts = {.meshes = exportMeshes, .animKeys = exportAnimKeys, .shaders = exportShaders};
    return SaveFile(pPath, [&](ByteStream& stream) { WriteIntermediate(stream, model, parts); });
}

} // namespace ra
