#include <memory>
#include <string>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/FileSystem/Paths/FilePathUtil.h"
#include "Shared/Cross/RenderAnim/AnimList.h"
#include "Shared/Cross/RenderAnim/Chunks/MarkerChunk.h"
#include "Shared/Cross/RenderAnim/Chunks/MeshGroupChunk.h"
#include "Shared/Cross/RenderAnim/Chunks/ModelTreeReader.h"
#include "Shared/Cross/RenderAnim/Final/FinalAnimChunk.h"
#include "Shared/Cross/RenderAnim/Final/FinalFile.h"
#include "Shared/Cross/RenderAnim/Final/FinalLayout.h"
#include "Shared/Cross/RenderAnim/Final/FinalMarkerChunk.h"
#include "Shared/Cross/RenderAnim/Final/FinalShaderChunk.h"
#include "Shared/Cross/RenderAnim/Final/FinalSkeletonChunk.h"
#include "Shared/Cross/RenderAnim/Final/FinalTextureChunk.h"
#include "Shared/Cross/RenderAnim/LoadingModel.h"
#include "Shared/Cross/RenderAnim/MeshGroup.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"
#include "Shared/Cross/RenderAnim/RenderModelTypeInfo.h"
#include "Shared/Cross/RenderAnim/Shader.h"
#include "Shared/Cross/RenderAnim/Skeleton.h"
#include "Shared/Cross/RenderAnim/Texture.h"

namespace ra {

namespace {

ErrorSink s_pErrorSink = nullptr;

class FinalReader : public ModelTreeReader {
public:
    using ModelTreeReader::ModelTreeReader;

private:
    std::unique_ptr<AnimList> MakeAnimList() override { return std::make_unique<AnimList>(m_Model); }
    std::unique_ptr<Texture> ReadTexture() override { return TextureLoadFinal(m_Chunky); }
    std::unique_ptr<Shader> ReadShader() override { return ShaderLoadFinal(m_Chunky); }
    std::unique_ptr<MeshGroup> ReadMeshGroup() override {
        return BuildMeshGroup(m_Chunky, m_Model.GetName(), MeshForm::Final);
    }
    void ReadSkeleton(const ChunkInfo& child) override {
        CheckSkeletonKind(child, ChunkKind_Data);
        SetSkeleton(generic::BuildSkeleton(ReadFinalBoneRecords(m_Chunky)));
    }
    void ReadData(uint32_t id) override {
        if (id == s_SharedShaderChunk)
            m_Shaders.push_back(GetSharedShader(ReadFinalSharedShaderName(m_Chunky)));
        else if (id == s_MarkerChunk)
            for (const Marker& marker : ReadFinalMarkers(m_Chunky))
                m_Model.AddMarker(marker);
        else if (id == s_CamerasChunk)
            for (const CameraDef& camera : ReadFinalCameras(m_Chunky))
                m_Model.AddCamera(camera);
    }
    void ReadAnim() override {
        BuildReferencePose(" ahead of the animations");
        AppendFinalAnim(m_Chunky, m_Model);
    }
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
    const LoadingModel loading(pName, *pModel);
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
        throw Chunky::Exception(ChunkyError_BadChunk, "the model is of a tools' level, not a final one");
    auto pModel = std::make_unique<RenderModel>();
    pModel->SetName(info.name.GetText());
    if (!FinalReader(chunky, *pModel).Read())
        return nullptr;
    chunky.EndChunk();
    return pModel;
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
