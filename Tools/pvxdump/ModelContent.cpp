#include "Tools/pvxdump/ModelContent.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

#include "Shared/Cross/RenderAnim/Chunks/MarkerChunk.h"
#include "Shared/Cross/RenderAnim/Chunks/TextureChunk.h"
#include "Shared/Cross/RenderAnim/Files/SharedShaderLayout.h"
#include "Shared/Cross/RenderAnim/Final/FinalLayout.h"
#include "Shared/Cross/RenderAnim/Final/FinalMarkerChunk.h"
#include "Shared/Cross/RenderAnim/Final/FinalShaderChunk.h"
#include "Shared/Cross/RenderAnim/Final/FinalSkeletonChunk.h"
#include "Shared/Cross/RenderAnim/Generic/SkeletonChunk.h"
#include "Shared/Cross/RenderAnim/Intermediate/SkeletonChunk.h"

namespace {

class GroupReader : public ra::MeshGroupSink {
public:
    GroupReader(ModelContent& content, bool withVertices) : m_Content(content), m_WithVertices(withVertices) {}

    void AddMesh(ra::MeshRecord mesh) override {
        MeshContent content;
        for (ra::PrimSetRecord& primSet : mesh.primSets) {
            content.indexCounts.emplace_back();
            for (size_t level = 0; level < ra::s_MeshLevelCount; ++level) {
                std::vector<uint16_t>& indices = primSet.levels[level].indices;
                content.indexCounts.back()[level] = static_cast<uint32_t>(indices.size());
                if (!m_WithVertices)
                    indices = {};
            }
        }
        if (!m_WithVertices) {
            for (ra::VertexRecord& level : mesh.levels)
                level.arrays = {};
            mesh.pPayload.reset();
        }
        m_Places[mesh.name].push_back(m_Local.size());
        content.pMesh = std::make_shared<const ra::MeshRecord>(std::move(mesh));
        m_Local.push_back(std::move(content));
    }

    void SetEntries(std::vector<ra::MeshEntryRecord> entries) override {
        for (ra::MeshEntryRecord& entry : entries)
            m_Content.meshes.push_back(TakeMesh(std::move(entry)));
    }

    void SetBoundVolume(const BoundVolume& volume) override { m_Content.boundVolume = volume; }

private:
    // Meshes of one name are taken in turn, and the last for all that follow, as when a model is loaded.
    MeshContent TakeMesh(ra::MeshEntryRecord entry) {
        MeshContent content;
        content.isLocal = entry.xrefModel.empty();
        if (content.isLocal) {
            std::vector<size_t>& places = m_Places[entry.name];
            size_t& taken = m_Taken[entry.name];
            if (places.empty())
                throw Chunky::Exception(ChunkyError_BadChunk,
                                        "mesh group: there is no mesh '" + entry.name + "' in the file");
            content = m_Local[places[std::min(taken++, places.size() - 1)]];
        }
        content.entry = std::move(entry);
        return content;
    }

    ModelContent& m_Content;
    bool m_WithVertices;
    std::vector<MeshContent> m_Local;
    std::unordered_map<std::string, std::vector<size_t>> m_Places; // in m_Local
    std::unordered_map<std::string, size_t> m_Taken;
};

// What a chunk is tells its kind and version, and that of the model.
class ModelReader {
public:
    ModelReader(Chunky& chunky, ModelContent& content, bool withVertices, TextureFiles* pFiles)
        : m_Chunky(chunky), m_Content(content), m_WithVertices(withVertices), m_pFiles(pFiles) {}

    void ReadChildren() {
        for (ChunkInfo child; m_Chunky.NextChunk(child);) {
            const bool known = child.kind == ChunkKind_Folder ? ReadFolder(child) : ReadData(child);
            if (!known)
                ++m_Content.undecoded[child.id];
        }
        m_Chunky.EndChunk();
    }

private:
    bool IsFinal() const { return m_Content.level == DataLevel::Final; }

    bool ReadFolder(const ChunkInfo& child) {
        switch (child.id) {
        case ra::s_TextureChunk:
            m_Content.textures.push_back(ReadTextureContent(m_Chunky, m_pFiles));
            return true;
        case ra::s_ShaderChunk:
            m_Content.shaders.push_back(ra::ReadShaderRecord(m_Chunky));
            return true;
        case ra::s_SkeletonChunk:
            m_Content.level = DataLevel::Generic; // only there it is a folder
            TakeBones(ra::generic::ReadBoneRecords(m_Chunky));
            return true;
        case ra::s_MeshGroupChunk:
            ReadMeshes();
            return true;
        case ra::s_AnimChunk:
            m_Content.animations.push_back(ReadAnimationContent(m_Chunky, child));
            m_Content.level = std::max(m_Content.level, m_Content.animations.back().level);
            return true;
        default:
            return false;
        }
    }

    bool ReadData(const ChunkInfo& child) {
        switch (child.id) {
        case ra::s_SharedShaderChunk:
            m_Content.sharedShaders.push_back(child.version > 1 ? ra::ReadFinalSharedShaderName(m_Chunky)
                                                                : ra::ReadSharedShaderName(m_Chunky));
            return true;
        case ra::s_SkeletonChunk:
            if (IsFinal())
                TakeBones(ra::ReadFinalBoneRecords(m_Chunky));
            else
                TakeBones(ra::intermediate::ReadBoneRecords(m_Chunky));
            return true;
        case ra::s_MarkerChunk:
            if (IsFinal())
                m_Content.markers = ra::ReadFinalMarkers(m_Chunky);
            else
                m_Content.markers.push_back(ra::ReadMarker(m_Chunky));
            return true;
        case ra::s_CameraChunk:
            m_Content.cameras.push_back(ra::ReadCamera(m_Chunky));
            return true;
        case ra::s_CamerasChunk:
            m_Content.cameras = ra::ReadFinalCameras(m_Chunky);
            return true;
        default:
            return false;
        }
    }

    void TakeBones(std::vector<ra::generic::BoneRecord> bones) {
        m_Content.hasSkeleton = true;
        for (ra::generic::BoneRecord& bone : bones)
            m_Content.bones.push_back({.name = std::move(bone.name),
                                       .parent = bone.parent,
                                       .position = bone.position,
                                       .rotation = bone.rotation});
    }

    void TakeBones(std::vector<ra::intermediate::BoneRecord> bones) {
        m_Content.hasSkeleton = true;
        for (ra::intermediate::BoneRecord& bone : bones)
            m_Content.bones.push_back({.name = std::move(bone.name),
                                       .parent = bone.parent,
                                       .transform = bone.transform,
                                       .position = bone.transform[3]});
    }

    void ReadMeshes() {
        GroupReader reader(m_Content, m_WithVertices);
        ra::ReadMeshGroup(m_Chunky, reader, IsFinal() ? ra::MeshForm::Final : ra::MeshForm::Generic);
        m_Content.hasMeshGroup = true;
    }

    Chunky& m_Chunky;
    ModelContent& m_Content;
    bool m_WithVertices;
    TextureFiles* m_pFiles;
};

ModelContent Describe(const ChunkInfo& top) {
    ModelContent content;
    content.name = top.name.GetView();
    content.version = top.version;
    return content;
}

} // namespace

ModelContent ReadModelContent(Chunky& chunky, bool withVertices, TextureFiles* pFiles) {
    ModelContent content = Describe(chunky.EnterFolder(ra::s_ModelChunk, ra::s_FinalModelVersion));
    if (content.version == ra::s_FinalModelVersion)
        content.level = DataLevel::Final;
    ModelReader(chunky, content, withVertices, pFiles).ReadChildren();
    return content;
}

ModelContent ReadShaderFileContent(Chunky& chunky, TextureFiles* pFiles) {
    ModelContent content = Describe(chunky.EnterFolder(ra::s_SharedShaderFileChunk, ra::s_SharedShaderFileVersion));
    ModelReader(chunky, content, false, pFiles).ReadChildren();
    return content;
}
