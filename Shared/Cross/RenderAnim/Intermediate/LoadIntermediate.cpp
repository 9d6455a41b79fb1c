#include <string>
#include <vector>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/FileSystem/Paths/FilePathUtil.h"
#include "Shared/Cross/RenderAnim/AnimListGeneric.h"
#include "Shared/Cross/RenderAnim/Chunks/MarkerChunk.h"
#include "Shared/Cross/RenderAnim/Chunks/MeshGroupChunk.h"
#include "Shared/Cross/RenderAnim/Chunks/ShaderChunk.h"
#include "Shared/Cross/RenderAnim/Chunks/TextureChunk.h"
#include "Shared/Cross/RenderAnim/Intermediate/AppendAnims.h"
#include "Shared/Cross/RenderAnim/Intermediate/IntermediateFile.h"
#include "Shared/Cross/RenderAnim/Intermediate/IntermediateLayout.h"
#include "Shared/Cross/RenderAnim/Intermediate/SkeletonChunk.h"
#include "Shared/Cross/RenderAnim/MeshGroup.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"
#include "Shared/Cross/RenderAnim/Shader.h"
#include "Shared/Cross/RenderAnim/Skeleton.h"
#include "Shared/Cross/RenderAnim/Texture.h"

namespace ra {

namespace {

// One pass over the children of the model's chunk, in the order of the file.
class TreeReader {
public:
    TreeReader(Chunky& chunky, RenderModel& model) : m_Chunky(chunky), m_Model(model) {}

    // False when a child makes no sense; that is logged.
    bool Read() {
        for (ChunkInfo child; m_Chunky.NextChunk(child);)
            if (!ReadChild(child))
                return false;
        if (!m_Model.GetMeshGroup())
            throw Chunky::Exception(ChunkyError_MissingChunk, "Missing Chunk Type! (mesh group)");
        if (const Skeleton* pSkeleton = m_Model.GetSkeleton())
            m_Model.GetMeshGroup()->BindSkinning(*pSkeleton);
        m_Model.BuildReferencePose();
        return true;
    }

private:
    // What isn't known is left for NextChunk to step over.
    bool ReadChild(const ChunkInfo& child) {
        return child.kind == ChunkKind_Folder ? ReadFolder(child) : ReadData(child.id);
    }

    bool ReadFolder(const ChunkInfo& child) {
        if (child.id == s_TextureChunk)
            m_Textures.push_back(AddTexture(TextureLoadGeneric(m_Chunky)));
        else if (child.id == s_ShaderChunk)
            m_Shaders.push_back(BuildShader(ReadShaderRecord(m_Chunky)));
        else if (child.id == s_MeshGroupChunk)
            ReadMeshes();
        else if (child.id == s_AnimChunk)
            return ReadAnim(child);
        return true;
    }

    bool ReadData(uint32_t id) {
        if (id == s_SharedShaderChunk)
            m_Shaders.push_back(GetSharedShader(ReadSharedShaderName(m_Chunky)));
        else if (id == intermediate::s_SkeletonChunk)
            m_Model.SetSkeleton(intermediate::BuildSkeleton(intermediate::ReadBoneRecords(m_Chunky)));
        else if (id == s_MarkerChunk)
            m_Model.AddMarker(ReadMarker(m_Chunky));
        else if (id == s_CameraChunk)
            m_Model.AddCamera(ReadCamera(m_Chunky));
        return true;
    }

    void ReadMeshes() {
        std::unique_ptr<MeshGroup> pGroup = BuildMeshGroup(m_Chunky, m_Model.GetName());
        for (const ShaderRef& shader : m_Shaders)
            pGroup->AddShader(shader, true);
        m_Model.SetMeshGroup(std::move(pGroup));
    }

    bool ReadAnim(const ChunkInfo& child) {
        if (m_Model.GetSkeleton()) {
            intermediate::AppendAnim(m_Chunky, m_Model);
            return true;
        }
        dbWarningf("%s: Animation '%s' - in a model without a valid skeleton!", m_Model.GetName(),
                   child.name.GetText());
        return false;
    }

    Chunky& m_Chunky;
    RenderModel& m_Model;
    std::vector<TextureRef> m_Textures; // held until the shaders that want them have come
    std::vector<ShaderRef> m_Shaders;   // read so far; the mesh group takes them over
};

} // namespace

std::unique_ptr<RenderModel> ReadIntermediate(ByteStream& stream) {
    Chunky chunky{ByteStreamAdapter(&stream)};
    const ChunkInfo info = chunky.EnterFolder(s_ModelChunk, s_ModelVersion);
    auto pModel = std::make_unique<RenderModel>();
    pModel->SetName(info.name.GetText());
    pModel->SetAnimList(std::make_unique<AnimListGeneric>(*pModel));
    if (!TreeReader(chunky, *pModel).Read())
        return nullptr;
    chunky.EndChunk();
    return pModel;
}

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
