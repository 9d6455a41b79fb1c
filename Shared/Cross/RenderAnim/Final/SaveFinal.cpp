#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/AnimList.h"
#include "Shared/Cross/RenderAnim/Chunks/MeshGroupChunk.h"
#include "Shared/Cross/RenderAnim/Chunks/SaveFile.h"
#include "Shared/Cross/RenderAnim/Chunks/TextureChunk.h"
#include "Shared/Cross/RenderAnim/Final/FinalAnimChunk.h"
#include "Shared/Cross/RenderAnim/Final/FinalFile.h"
#include "Shared/Cross/RenderAnim/Final/FinalLayout.h"
#include "Shared/Cross/RenderAnim/Final/FinalMarkerChunk.h"
#include "Shared/Cross/RenderAnim/Final/FinalShaderChunk.h"
#include "Shared/Cross/RenderAnim/Final/FinalSkeletonChunk.h"
#include "Shared/Cross/RenderAnim/Final/FinalTextureChunk.h"
#include "Shared/Cross/RenderAnim/MeshGroup.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"
#include "Shared/Cross/RenderAnim/Shader.h"
#include "Shared/Cross/RenderAnim/Skeleton.h"

namespace ra {

namespace {

// Those that meshes of other models alone use come with these models.
void WriteOwnShaders(Chunky& chunky, PayloadWriter& writer, const MeshGroup& group) {
    for (uint32_t i = 0; i < group.GetShaderCount(); ++i)
        if (group.IsShaderOwned(i))
            WriteFinalShader(chunky, writer, *group.GetShader(i).GetData());
}

void WriteOwnAnims(Chunky& chunky, PayloadWriter& writer, const RenderModel& model) {
    const AnimList* pAnimList = model.GetAnimList();
    for (uint32_t i = 0; pAnimList && i < pAnimList->GetCount(); ++i)
        if (const AnimListNode& node = *pAnimList->GetNode(i); node.IsLocal())
            WriteFinalAnim(chunky, writer, node);
}

} // namespace

bool SaveFinal(const RenderModel& model, Chunky& chunky, uint32_t useDXTC) {
    PayloadWriter writer;
    bool complete = true;
    chunky.BeginFolder(s_ModelChunk, s_FinalModelVersion, model.GetName());
    const MeshGroup* pMeshGroup = model.GetMeshGroup();
    dbAssert(pMeshGroup);
    if (pMeshGroup) {
        for (const Texture* pTexture : CollectTextures(*pMeshGroup))
            complete &= WriteFinalTexture(chunky, writer, *pTexture, useDXTC);
        WriteOwnShaders(chunky, writer, *pMeshGroup);
    }
    if (const Skeleton* pSkeleton = model.GetSkeleton())
        WriteFinalSkeleton(chunky, writer, *pSkeleton);
    if (pMeshGroup)
        WriteMeshGroup(chunky, writer, *pMeshGroup, MeshForm::Final);
    if (!model.GetOwnMarkers().empty())
        WriteFinalMarkers(chunky, writer, model.GetOwnMarkers());
    if (!model.GetCameras().empty())
        WriteFinalCameras(chunky, writer, model.GetCameras());
    WriteOwnAnims(chunky, writer, model);
    chunky.EndChunk();
    return complete;
}

bool SaveFinal(const RenderModel& model, const char* pPath, uint32_t useDXTC) {
    bool complete = true;
    const auto write = [&](ByteStream& stream) {
        Chunky chunky{ByteStreamAdapter(&stream)};
        complete = SaveFinal(model, chunky, useDXTC);
    };
    return SaveFile(pPath, write) && complete;
}

} // namespace ra
