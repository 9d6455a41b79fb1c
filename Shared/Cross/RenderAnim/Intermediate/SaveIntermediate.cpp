#include <stdexcept>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/RenderAnim/AnimInterm.h"
#include "Shared/Cross/RenderAnim/AnimList.h"
#include "Shared/Cross/RenderAnim/Chunks/MarkerChunk.h"
#include "Shared/Cross/RenderAnim/Chunks/MeshGroupChunk.h"
#include "Shared/Cross/RenderAnim/Chunks/PayloadWriter.h"
#include "Shared/Cross/RenderAnim/Chunks/ShaderChunk.h"
#include "Shared/Cross/RenderAnim/Chunks/TextureChunk.h"
#include "Shared/Cross/RenderAnim/Intermediate/AnimChunk.h"
#include "Shared/Cross/RenderAnim/Intermediate/IntermediateFile.h"
#include "Shared/Cross/RenderAnim/Intermediate/IntermediateLayout.h"
#include "Shared/Cross/RenderAnim/Intermediate/SkeletonChunk.h"
#include "Shared/Cross/RenderAnim/MeshGroup.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"
#include "Shared/Cross/RenderAnim/Shader.h"

namespace ra {

namespace {

void WriteShaders(Chunky& chunky, PayloadWriter& writer, const MeshGroup& group) {
    for (uint32_t i = 0; i < group.GetShaderCount(); ++i)
        WriteShader(chunky, writer, *group.GetShader(i).GetData());
}

void WriteMeshes(Chunky& chunky, PayloadWriter& writer, const RenderModel& model, bool withShaders) {
    const MeshGroup* pMeshGroup = model.GetMeshGroup();
    dbAssert(pMeshGroup);
    if (withShaders && pMeshGroup) {
        WriteTextures(chunky, writer, *pMeshGroup);
        WriteShaders(chunky, writer, *pMeshGroup);
    }
    if (const Skeleton* pSkeleton = model.GetSkeleton())
        intermediate::WriteSkeleton(chunky, writer, *pSkeleton);
    if (pMeshGroup)
        WriteMeshGroup(chunky, writer, *pMeshGroup);
    for (const Marker& marker : model.GetOwnMarkers())
        WriteMarker(chunky, writer, marker);
    for (const CameraDef& camera : model.GetCameras())
        WriteCamera(chunky, writer, camera);
}

void WriteAnims(Chunky& chunky, const AnimList& animList) {
    for (uint32_t i = 0; i < animList.GetCount(); ++i) {
        // What has been turned into local streams is no longer what this form holds.
        const auto* pAnim = dynamic_cast<const AnimInterm*>(animList.GetNode(i)->GetAnim().GetData());
        dbAssert(pAnim);
        if (pAnim)
            intermediate::WriteAnim(chunky, *pAnim);
    }
}

} // namespace

void WriteIntermediate(ByteStream& stream, const RenderModel& model, const IntermediateParts& parts) {
    Chunky chunky{ByteStreamAdapter(&stream)};
    PayloadWriter writer;
    chunky.BeginFolder(s_ModelChunk, s_ModelVersion, model.GetName());
    if (parts.meshes)
        WriteMeshes(chunky, writer, model, parts.shaders);
    if (const AnimList* pAnimList = model.GetAnimList(); pAnimList && parts.animKeys)
        WriteAnims(chunky, *pAnimList);
    chunky.EndChunk();
    if (!stream.Flush())
        throw std::runtime_error("Unable to write to file!");
}

bool SaveIntermediate(const char* pPath, const RenderModel& model, bool exportMeshes, bool exportAnimKeys,
                      bool exportShaders) {
    try {
        const std::unique_ptr<FileReplacement> pFile = FilePath::ReplaceFile(pPath);
        if (!pFile)
            throw Chunky::Exception(ChunkyError_OpenFailed, "Unable to open file!");
        WriteIntermediate(pFile->GetStream(), model,
                          {.meshes = exportMeshes, .animKeys = exportAnimKeys, .shaders = exportShaders});
        if (!pFile->Finish())
            throw std::runtime_error("Unable to write to file!");
        return true;
    } catch (const std::exception& exception) {
        dbWarningf("RENDER ANIM -- %s: %s", pPath, exception.what());
        return false;
    }
}

} // namespace ra
