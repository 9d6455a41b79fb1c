#include <memory>
#include <string>
#include <vector>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/FileSystem/Paths/FilePathUtil.h"
#include "Shared/Cross/RenderAnim/AnimList.h"
#include "Shared/Cross/RenderAnim/Chunks/MarkerChunk.h"
#include "Shared/Cross/RenderAnim/Chunks/MeshGroupChunk.h"
#include "Shared/Cross/RenderAnim/Chunks/SelectionChunk.h"
#include "Shared/Cross/RenderAnim/Chunks/TextureChunk.h"
#include "Shared/Cross/RenderAnim/Final/FinalAnimChunk.h"
#include "Shared/Cross/RenderAnim/Final/FinalFile.h"
#include "Shared/Cross/RenderAnim/Final/FinalLayout.h"
#include "Shared/Cross/RenderAnim/Final/FinalMarkerChunk.h"
#include "Shared/Cross/RenderAnim/Final/FinalShaderChunk.h"
#include "Shared/Cross/RenderAnim/Final/FinalSkeletonChunk.h"
#include "Shared/Cross/RenderAnim/Final/FinalTextureChunk.h"
#include "Shared/Cross/RenderAnim/MeshGroup.h"
#include "Shared/Cross/RenderAnim/Motion/Chunks/MotionChunks.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"
#include "Shared/Cross/RenderAnim/RenderModelTypeInfo.h"
#include "Shared/Cross/RenderAnim/Shader.h"
#include "Shared/Cross/RenderAnim/Skeleton.h"
#include "Shared/Cross/RenderAnim/Texture.h"

namespace ra {

namespace {

ErrorSink s_pErrorSink = nullptr;

[[noreturn]] void Fail(const char* pReason) { throw Chunky::Exception(ChunkyError_BadChunk, pReason); }

// One pass over the children of the model's chunk, in the order of the file. What isn't known is left for NextChunk to
// step over.
class FinalReader {
public:
    FinalReader(Chunky& chunky, RenderModel& model) : m_Chunky(chunky), m_Model(model) {}

    // False when a child makes no sense; that is logged.
    bool Read() {
        m_Model.SetAnimList(std::make_unique<AnimList>(m_Model));
        for (ChunkInfo child; m_Chunky.NextChunk(child);)
            if (child.kind == ChunkKind_Data)
                ReadData(child.id);
            else if (!ReadFolder(child))
                return false;
        RequireMeshGroup();
        if (const Skeleton* pSkeleton = m_Model.GetSkeleton())
            m_Model.GetMeshGroup()->BindSkinning(*pSkeleton, m_Model.GetName());
        m_Model.BuildReferencePose();
        return true;
    }

private:
    bool ReadFolder(const ChunkInfo& child) {
        if (child.id == s_TextureChunk)
            m_Textures.push_back(AddTexture(TextureLoadFinal(m_Chunky)));
        else if (child.id == s_ShaderChunk)
            m_Shaders.emplace_back().Set(ShaderLoadFinal(m_Chunky));
        else if (child.id == s_MeshGroupChunk)
            ReadMeshGroup();
        else if (child.id == s_AnimChunk)
            return ReadAnim(child);
        return true;
    }

    void ReadData(uint32_t id) {
        if (id == s_SharedShaderChunk)
            m_Shaders.push_back(GetSharedShader(ReadFinalSharedShaderName(m_Chunky)));
        else if (id == s_SkeletonChunk)
            ReadSkeleton();
        else if (id == s_MarkerChunk)
            for (const Marker& marker : ReadFinalMarkers(m_Chunky))
                m_Model.AddMarker(marker);
        else if (id == s_CamerasChunk)
            for (const CameraDef& camera : ReadFinalCameras(m_Chunky))
                m_Model.AddCamera(camera);
    }

    // What has been read refers to bones and meshes by their indices, so that neither is replaced.
    void ReadSkeleton() {
        if (m_Model.GetSkeleton())
            Fail("the model has two skeletons");
        m_Model.SetSkeleton(generic::BuildSkeleton(ReadFinalBoneRecords(m_Chunky)));
    }

    void ReadMeshGroup() {
        if (m_Model.GetMeshGroup())
            Fail("the model has two mesh groups");
        m_Model.SetMeshGroup(BuildMeshGroup(m_Chunky, m_Model.GetName(), MeshForm::Final));
    }

    bool ReadAnim(const ChunkInfo& child) {
        if (m_Model.GetSkeleton()) {
            RequireMeshGroup();
            m_Model.BuildReferencePose();
        }
        return AppendFinalAnim(m_Chunky, child, m_Model);
    }

    void RequireMeshGroup() const {
        if (!m_Model.GetMeshGroup())
            throw Chunky::Exception(ChunkyError_MissingChunk, "Missing Chunk Type! (mesh group)");
    }

    Chunky& m_Chunky;
    RenderModel& m_Model;
    std::vector<TextureRef> m_Textures; // held until the shaders that want them have come
    std::vector<ShaderRef> m_Shaders;   // held until the meshes that want them have come
};

std::string MakePath(const char* pName, const char* pExtension) {
    std::string path = FilePathUtil::HasAlias(pName) ? pName : std::string("DATA:") + pName;
    FilePathUtil::SetExtension(path, pExtension);
    return path;
}

// Null for a model that makes no sense, which is logged. `path` is that of the file which is looked at.
std::unique_ptr<RenderModel> LoadBoth(const char* pName, std::string& path) {
    path = MakePath(pName, ".obm");
    const std::unique_ptr<ByteStream> pStream = FilePath::OpenStream(path.c_str(), ByteStream::Mode_Read);
    if (!pStream)
        throw Chunky::Exception(ChunkyError_OpenFailed, "Unable to open file!");
    std::unique_ptr<RenderModel> pModel = ReadFinal(*pStream);
    if (!pModel)
        return nullptr;
    path = MakePath(pName, ".obe");
    const std::unique_ptr<ByteStream> pMotionStream = FilePath::OpenStream(path.c_str(), ByteStream::Mode_Read);
    if (pMotionStream && !ReadFinalMotion(*pMotionStream, *pModel))
        return nullptr;
    pModel->GetAnimList()->Finalise();
    return pModel;
}

} // namespace

std::unique_ptr<RenderModel> ReadFinal(ByteStream& stream) {
    Chunky chunky{ByteStreamAdapter(&stream)};
    const ChunkInfo info = chunky.EnterFolder(s_ModelChunk, s_FinalModelVersion);
    if (info.version < s_FinalModelVersion)
        Fail("the model is of a tools' level, not a final one");
    auto pModel = std::make_unique<RenderModel>();
    pModel->SetName(info.name.GetText());
    if (!FinalReader(chunky, *pModel).Read())
        return nullptr;
    chunky.EndChunk();
    return pModel;
}

bool ReadFinalMotion(ByteStream& stream, RenderModel& model) {
    Chunky chunky{ByteStreamAdapter(&stream)};
    chunky.EnterFolder(s_MotionFileChunk, s_MotionFileVersion);
    const MotionContext context = MakeMotionContext(model, MotionForm::Final);
    for (ChunkInfo child; chunky.NextChunk(child);) {
        if (ReadMotionPart(chunky, child, model.GetMotionParts(), context))
            continue;
        if (child.kind == ChunkKind_Folder && child.id == s_AnimChunk) {
            if (!AppendFinalAnim(chunky, child, model))
                return false;
        } else if (child.kind == ChunkKind_Data && child.id == s_SelectionChunk) {
            model.SetSelectionInfo(ReadSelection(chunky));
        }
    }
    chunky.EndChunk();
    return true;
}

std::unique_ptr<RenderModel> LoadFinal(const char* pName) {
    dbPrintf("RENDER MODEL USAGE -- Loading model '%s'...", pName);
    std::string path;
    try {
        return LoadBoth(pName, path);
    } catch (const std::exception& exception) {
        const std::string text = "RENDER ANIM -- " + path + ": " + exception.what();
        dbWarningf("%s", text.c_str());
        if (s_pErrorSink)
            s_pErrorSink(text.c_str());
        return nullptr;
    }
}

void SetErrorSink(ErrorSink pSink) { s_pErrorSink = pSink; }

void InstallFinalModelLoader() { RenderModelTypeInfo::SetFinalLoader(LoadFinal); }

} // namespace ra
