#include <stdexcept>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/RenderAnim/Chunks/MarkerChunk.h"
#include "Shared/Cross/RenderAnim/Chunks/MeshGroupChunk.h"
#include "Shared/Cross/RenderAnim/Chunks/PayloadWriter.h"
#include "Shared/Cross/RenderAnim/Chunks/ShaderChunk.h"
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
    if (withShaders && pMeshGroup)
        WriteShaders(chunky, writer, *pMeshGroup);
    if (const Skeleton* pSkeleton = model.GetSkeleton())
        intermediate::WriteSkeleton(chunky, writer, *pSkeleton);
    if (pMeshGroup)
        WriteMeshGroup(chunky, writer, *pMeshGroup);
    for (const Marker& marker : model.GetOwnMarkers())
        WriteMarker(chunky, writer, marker);
    for (const CameraDef& camera : model.GetCameras())
        WriteCamera(chunky, writer, camera);
}

// Takes a file that couldn't be finished away again.
class UnfinishedFile {
public:
    explicit UnfinishedFile(const char* pPath)
        : m_pPath(pPath), m_pStream(FilePath::OpenStream(pPath, ByteStream::Mode_Write)) {}
    ~UnfinishedFile() {
        if (!m_pStream)
            return;
        const dbNoThrowScope noThrow;
        m_pStream.reset();
        FilePath::Delete(m_pPath);
    }
    UnfinishedFile(const UnfinishedFile&) = delete;
    UnfinishedFile& operator=(const UnfinishedFile&) = delete;

    ByteStream* GetStream() const { return m_pStream.get(); }
    void Finish() { m_pStream.reset(); }

private:
    const char* m_pPath;
    std::unique_ptr<ByteStream> m_pStream; // null when there is nothing to take away
};

} // namespace

void WriteIntermediate(ByteStream& stream, const RenderModel& model, const IntermediateParts& parts) {
    Chunky chunky{ByteStreamAdapter(&stream)};
    PayloadWriter writer;
    chunky.BeginFolder(s_ModelChunk, s_ModelVersion, model.GetName());
    if (parts.meshes)
        WriteMeshes(chunky, writer, model, parts.shaders);
    chunky.EndChunk();
    if (!stream.Flush())
        throw std::runtime_error("Unable to write to file!");
}

bool SaveIntermediate(const char* pPath, const RenderModel& model, bool exportMeshes, bool exportAnimKeys,
                      bool exportShaders) {
    try {
        UnfinishedFile file(pPath);
        if (!file.GetStream())
            throw Chunky::Exception(ChunkyError_OpenFailed, "Unable to open file!");
        WriteIntermediate(*file.GetStream(), model,
                          {.meshes = exportMeshes, .animKeys = exportAnimKeys, .shaders = exportShaders});
        file.Finish();
        return true;
    } catch (const std::exception& exception) {
        dbWarningf("RENDER ANIM -- %s: %s", pPath, exception.what());
        return false;
    }
}

} // namespace ra
