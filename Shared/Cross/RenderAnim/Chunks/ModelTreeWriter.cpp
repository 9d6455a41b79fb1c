#include "Shared/Cross/RenderAnim/Chunks/ModelTreeWriter.h"

#include <stdexcept>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/AnimList.h"
#include "Shared/Cross/RenderAnim/Chunks/MarkerChunk.h"
#include "Shared/Cross/RenderAnim/Chunks/MeshGroupChunk.h"
#include "Shared/Cross/RenderAnim/Chunks/ModelLayout.h"
#include "Shared/Cross/RenderAnim/Chunks/ShaderChunk.h"
#include "Shared/Cross/RenderAnim/Chunks/TextureChunk.h"
#include "Shared/Cross/RenderAnim/MeshGroup.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"

namespace ra {

namespace {

void WriteMeshes(Chunky& chunky, PayloadWriter& writer, const RenderModel& model, bool withShaders,
                 const ModelForm& form) {
    const MeshGroup* pMeshGroup = model.GetMeshGroup();
    dbAssert(pMeshGroup);
    if (withShaders && pMeshGroup) {
        WriteTextures(chunky, writer, *pMeshGroup);
        WriteShaders(chunky, writer, *pMeshGroup);
    }
    if (const Skeleton* pSkeleton = model.GetSkeleton())
        form.pWriteSkeleton(chunky, writer, *pSkeleton);
    if (pMeshGroup)
        WriteMeshGroup(chunky, writer, *pMeshGroup);
    for (const Marker& marker : model.GetOwnMarkers())
        WriteMarker(chunky, writer, marker);
    for (const CameraDef& camera : model.GetCameras())
        WriteCamera(chunky, writer, camera);
}

void WriteAnims(Chunky& chunky, const RenderModel& model, const ModelForm& form) {
    const AnimList* pAnimList = model.GetAnimList();
    for (uint32_t i = 0; pAnimList && i < pAnimList->GetCount(); ++i)
        if (const AnimListNode& node = *pAnimList->GetNode(i); node.IsLocal())
            form.pWriteAnim(chunky, model, node);
}

} // namespace

void WriteModelTree(ByteStream& stream, const RenderModel& model, const ModelParts& parts, const ModelForm& form) {
    Chunky chunky{ByteStreamAdapter(&stream)};
    PayloadWriter writer;
    chunky.BeginFolder(s_ModelChunk, s_ModelVersion, model.GetName());
    if (parts.meshes)
        WriteMeshes(chunky, writer, model, parts.shaders, form);
    if (parts.animKeys)
        WriteAnims(chunky, model, form);
    chunky.EndChunk();
    if (!stream.Flush())
        throw std::runtime_error("Unable to write to file!");
}

} // namespace ra
