#include <exception>
#include <string>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/FileSystem/Paths/FilePathUtil.h"
#include "Shared/Cross/RenderAnim/AnimList.h"
#include "Shared/Cross/RenderAnim/Chunks/ModelTreeReader.h"
#include "Shared/Cross/RenderAnim/Generic/AnimChunk.h"
#include "Shared/Cross/RenderAnim/Generic/GenericFile.h"
#include "Shared/Cross/RenderAnim/Generic/MotionFile.h"
#include "Shared/Cross/RenderAnim/Generic/SkeletonChunk.h"
#include "Shared/Cross/RenderAnim/LoadingModel.h"
#include "Shared/Cross/RenderAnim/RenderModelTypeInfo.h"
#include "Shared/Cross/RenderAnim/Skeleton.h"

namespace ra {

namespace {

constexpr const char* s_ModelExtension = ".pvx";
constexpr const char* s_MotionExtension = ".ebp";
// A mesh section of before there were mesh groups, which only this form has ever had.
constexpr uint32_t s_LegacyMeshChunk = FourCC("MESH");

class GenericReader : public ModelTreeReader {
public:
    using ModelTreeReader::ModelTreeReader;

private:
    void ReadSkeleton(const ChunkInfo& child) override {
        CheckSkeletonKind(child, ChunkKind_Folder);
        SetSkeleton(generic::BuildSkeleton(generic::ReadBoneRecords(m_Chunky)));
    }
    bool ReadFolder(const ChunkInfo& child) override {
        if (child.id == s_LegacyMeshChunk)
            throw Chunky::Exception(ChunkyError_BadChunk, "chunk \"MESH\" is a mesh section of before there were mesh "
                                                          "groups, which can't be read: export the model again");
        return ModelTreeReader::ReadFolder(child);
    }
    void ReadAnim() override {
        BuildReferencePose(" ahead of the animations");
        generic::AppendAnim(m_Chunky, m_Model);
    }
};

// A model's name may hold points, so that only the extension of a model's file counts as one.
std::string MakePath(const char* pAlias, std::string name, const char* pExtension) {
    if (FilePathUtil::HasExtension(name.c_str(), "pvx"))
        FilePathUtil::SetExtension(name, "");
    return std::string(pAlias) + ':' + name + pExtension;
}

// Empty for a name that would be too long.
std::string MakeFirstPath(const char* pName, const char* pExtension) {
    if (!FilePathUtil::HasAlias(pName))
        return MakePath("GENERIC", pName, pExtension);
    std::string path = pName;
    return FilePathUtil::SetExtension(path, pExtension) ? path : std::string();
}

std::unique_ptr<ByteStream> OpenModel(const char* pName) {
    // As it stands it may be a file, whatever its extension.
    if (!FilePathUtil::HasAlias(pName) && !FilePathUtil::HasExtension(pName, "pvx"))
        if (auto pStream = FilePath::OpenStream((std::string("GENERIC:") + pName).c_str(), ByteStream::Mode_Read))
            return pStream;
    const std::string path = MakeFirstPath(pName, s_ModelExtension);
    if (std::unique_ptr<ByteStream> pStream = FilePath::OpenStream(path.c_str(), ByteStream::Mode_Read))
        return pStream;
    std::string alias;
    std::string name = pName;
    if (FilePathUtil::HasAlias(pName))
        FilePathUtil::SplitAlias(path.c_str(), alias, name);
    return FilePath::OpenStream(MakePath("DATA", name, s_ModelExtension).c_str(), ByteStream::Mode_Read);
}

bool LoadMotion(const char* pName, RenderModel& model) {
    const LoadingModel loading(pName, model);
    const std::unique_ptr<ByteStream> pStream =
        FilePath::OpenStream(MakeFirstPath(pName, s_MotionExtension).c_str(), ByteStream::Mode_Read);
    return !pStream || ReadMotionFile(*pStream, model);
}

std::unique_ptr<RenderModel> LoadAsResource(const char* pName) {
    try {
        return LoadGeneric(pName, true);
    } catch (const std::exception& exception) {
        dbWarningf("RENDER ANIM -- %s: %s", pName, exception.what());
        return nullptr;
    }
}

} // namespace

std::unique_ptr<RenderModel> ReadGeneric(ByteStream& stream) {
    std::unique_ptr<RenderModel> pModel = ReadModelTree<GenericReader>(stream);
    if (pModel)
        pModel->GetAnimList()->Finalise();
    return pModel;
}

std::unique_ptr<RenderModel> LoadGeneric(const char* pName, bool withMotionFile) {
    const std::unique_ptr<ByteStream> pStream = OpenModel(pName);
    if (!pStream)
        throw Chunky::Exception(ChunkyError_OpenFailed, "Unable to open file!");
    std::unique_ptr<RenderModel> pModel = ReadModelTree<GenericReader>(*pStream);
    if (!pModel || (withMotionFile && !LoadMotion(pName, *pModel)))
        return nullptr;
    pModel->GetAnimList()->Finalise();
    return pModel;
}

void InstallGenericModelLoader() { RenderModelTypeInfo::SetGenericLoader(LoadAsResource); }

} // namespace ra
