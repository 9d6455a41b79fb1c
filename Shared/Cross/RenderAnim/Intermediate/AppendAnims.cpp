#include "Shared/Cross/RenderAnim/Intermediate/AppendAnims.h"

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/RenderAnim/Chunks/AnimNodes.h"
#include "Shared/Cross/RenderAnim/Intermediate/AnimChunk.h"
#include "Shared/Cross/RenderAnim/Intermediate/IntermediateFile.h"
#include "Shared/Cross/RenderAnim/Intermediate/LocalAnim.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"
#include "Shared/PC/Memory/OSMemory.h"

namespace ra {

namespace intermediate {

void AppendAnim(Chunky& chunky, RenderModel& model) {
    // The file's matrices, and the local keys that are made of them.
    OSMemory::HeapExpect(size_t{2} * chunky.GetRemaining());
    AddAnimNode(model, MakeLocalNode(model, ReadLocalAnim(chunky, model)), s_AnimVersion);
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
