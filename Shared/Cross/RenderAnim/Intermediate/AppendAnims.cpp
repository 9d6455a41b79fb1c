#include "Shared/Cross/RenderAnim/Intermediate/AppendAnims.h"

#include <utility>

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/RenderAnim/AnimInterm.h"
#include "Shared/Cross/RenderAnim/AnimListGeneric.h"
#include "Shared/Cross/RenderAnim/Intermediate/AnimChunk.h"
#include "Shared/Cross/RenderAnim/Intermediate/IntermediateFile.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"
#include "Shared/Cross/RenderAnim/Skeleton.h"

namespace ra {

namespace intermediate {

void AppendAnim(Chunky& chunky, RenderModel& model) {
    AnimRef anim;
    anim.Set(ReadAnimOf(chunky, model));
    const Skeleton* pSkeleton = model.GetSkeleton();
    auto pNode = std::make_unique<AnimListNode>(pSkeleton ? pSkeleton->GetBoneCount() : 0, model.GetCameraCount());
    pNode->SetAnim(anim);
    if (!model.GetAnimList())
        model.SetAnimList(std::make_unique<AnimListGeneric>(model));
    model.GetAnimList()->AddNode(std::move(pNode));
}

} // namespace intermediate

void AppendIntermediateAnims(RenderModel& model, const char* pPath) {
    const std::unique_ptr<ByteStream> pStream = FilePath::OpenStream(pPath, ByteStream::Mode_Read);
    if (!pStream)
        throw Chunky::Exception(ChunkyError_OpenFailed, "Unable to open file!");
    Chunky chunky{ByteStreamAdapter(pStream.get())};
    chunky.EnterFolder(s_ModelChunk, s_ModelVersion);
    if (chunky.FindChunk(ChunkKind_Folder, s_AnimChunk))
        intermediate::AppendAnim(chunky, model);
}

} // namespace ra
