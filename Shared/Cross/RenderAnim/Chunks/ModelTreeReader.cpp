#include "Shared/Cross/RenderAnim/Chunks/ModelTreeReader.h"

#include <string>
#include <utility>

#include "Shared/Cross/RenderAnim/AnimListGeneric.h"
#include "Shared/Cross/RenderAnim/Chunks/AnimNodes.h"
#include "Shared/Cross/RenderAnim/Chunks/MarkerChunk.h"
#include "Shared/Cross/RenderAnim/Chunks/MeshGroupChunk.h"
#include "Shared/Cross/RenderAnim/Chunks/ShaderChunk.h"
#include "Shared/Cross/RenderAnim/Chunks/TextureChunk.h"
#include "Shared/Cross/RenderAnim/MeshGroup.h"
#include "Shared/Cross/RenderAnim/Shader.h"
#include "Shared/Cross/RenderAnim/Skeleton.h"
#include "Shared/Cross/RenderAnim/Texture.h"
#include "Shared/PC/Memory/OSMemory.h"

namespace ra {

bool ModelTreeReader::Read() {
    OSMemory::HeapExpect(m_Chunky.GetRemaining()); // a model takes about as much as its file
    m_Model.SetAnimList(MakeAnimList());
    for (ChunkInfo child; m_Chunky.NextChunk(child);)
        if (child.id == s_SkeletonChunk)
            ReadSkeleton(child);
        else if (child.kind == ChunkKind_Data)
            ReadData(child.id);
        else if (!ReadFolder(child))
            return false;
    BuildReferencePose();
    if (const Skeleton* pSkeleton = m_Model.GetSkeleton())
        m_Model.GetMeshGroup()->BindSkinning(*pSkeleton, m_Model.GetName());
    return true;
}

bool ModelTreeReader::ReadFolder(const ChunkInfo& child) {
    if (child.id == s_TextureChunk)
        m_Textures.push_back(AddTexture(ReadTexture()));
    else if (child.id == s_ShaderChunk)
        m_Shaders.emplace_back().Set(ReadShader());
    else if (child.id == s_MeshGroupChunk)
        SetMeshGroup(ReadMeshGroup());
    else if (child.id == s_AnimChunk) {
        if (!CanHoldAnim(m_Model, child))
            return false;
        ReadAnim();
    }
    return true;
}

std::unique_ptr<AnimList> ModelTreeReader::MakeAnimList() { return std::make_unique<AnimListGeneric>(m_Model); }

std::unique_ptr<Texture> ModelTreeReader::ReadTexture() { return TextureLoadGeneric(m_Chunky); }

std::unique_ptr<Shader> ModelTreeReader::ReadShader() { return MakeShader(ReadShaderRecord(m_Chunky)); }

std::unique_ptr<MeshGroup> ModelTreeReader::ReadMeshGroup() { return BuildMeshGroup(m_Chunky, m_Model.GetName()); }

void ModelTreeReader::ReadData(uint32_t id) {
    if (id == s_SharedShaderChunk)
        m_Shaders.push_back(GetSharedShader(ReadSharedShaderName(m_Chunky)));
    else if (id == s_MarkerChunk)
        m_Model.AddMarker(ReadMarker(m_Chunky));
    else if (id == s_CameraChunk)
        m_Model.AddCamera(ReadCamera(m_Chunky));
}

void ModelTreeReader::CheckSkeletonKind(const ChunkInfo& child, ChunkKind kind) {
    if (child.kind != kind)
        throw Chunky::Exception(
            ChunkyError_MissingChunk,
            "Missing Chunk Type! (the skeleton is of another level: is the file in the right tree?)");
}

void ModelTreeReader::SetSkeleton(std::unique_ptr<Skeleton> pSkeleton) {
    if (m_Model.GetSkeleton())
        throw Chunky::Exception(ChunkyError_BadChunk, "there is a second skeleton in the file");
    m_Model.SetSkeleton(std::move(pSkeleton));
}

void ModelTreeReader::SetMeshGroup(std::unique_ptr<MeshGroup> pGroup) {
    if (m_Model.GetMeshGroup())
        throw Chunky::Exception(ChunkyError_BadChunk, "there is a second mesh group in the file");
    OnMeshGroup(*pGroup);
    m_Model.SetMeshGroup(std::move(pGroup));
}

void ModelTreeReader::BuildReferencePose(const char* pPlace) {
    if (!m_Model.GetMeshGroup())
        throw Chunky::Exception(ChunkyError_MissingChunk,
                                std::string("Missing Chunk Type! (mesh group") + pPlace + ')');
    m_Model.BuildReferencePose();
}

} // namespace ra
