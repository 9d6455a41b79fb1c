#include <string>

#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/FileSystem/Paths/FilePathUtil.h"
#include "Shared/Cross/RenderAnim/Chunks/ModelTreeReader.h"
#include "Shared/Cross/RenderAnim/Intermediate/AppendAnims.h"
#include "Shared/Cross/RenderAnim/Intermediate/IntermediateFile.h"
#include "Shared/Cross/RenderAnim/Intermediate/SkeletonChunk.h"
#include "Shared/Cross/RenderAnim/MeshGroup.h"
#include "Shared/Cross/RenderAnim/Shader.h"
#include "Shared/Cross/RenderAnim/Skeleton.h"

namespace ra {

namespace {

class IntermediateReader : public ModelTreeReader {
public:
    using ModelTreeReader::ModelTreeReader;

private:
    void ReadSkeleton(const ChunkInfo& child) override {
        CheckSkeletonKind(child, ChunkKind_Data);
        SetSkeleton(intermediate::BuildSkeleton(intermediate::ReadBoneRecords(m_Chunky)));
    }
    // The merge may want those that no mesh uses.
    void OnMeshGroup(MeshGroup& group) override {
        for (const ShaderRef& shader : m_Shaders)
            group.AddShader(shader, true);
        m_Shaders.clear();
    }
    void ReadAnim() override { intermediate::AppendAnim(m_Chunky, m_Model); }
};

} // namespace

std::unique_ptr<RenderModel> ReadIntermediate(ByteStream& stream) { return ReadModelTree<IntermediateReader>(stream); }

std::unique_ptr<RenderModel> LoadIntermediate(const char* pName) {
    std::string path = FilePathUtil::HasAlias(pName) ? pName : std::string("DATA:") + pName;
    std::unique_ptr<ByteStream> pStream = FilePath::OpenStream(path.c_str(), ByteStream::Mode_Read);
    if (!pStream && FilePathUtil::SetExtension(path, ".pvx"))
        pStream = FilePath::OpenStream(path.c_str(), ByteStream::Mode_Read);
    if (!pStream)
        throw Chunky::Exception(ChunkyError_OpenFailed, "Unable to open file!");
    return ReadIntermediate(*pStream);
}

} // namespace ra
