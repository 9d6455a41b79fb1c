// Which bones bend a mesh.
#pragma once

#include <cstdint>
#include <vector>

#include "Shared_Tools/PVXExport/Mesh/MeshForm.h"

struct ExportContext;
struct ExportScene;
class INode;
class ISkin;
class ISkinContextData;

namespace ra {
class Mesh;
}

// Every bad vertex is reported to the artist by itself, so that one export shows them all. Keeps its working memory
// from mesh to mesh.
class SkinWeights {
public:
    // The numbers of bones that a vertex has room for. 255 stands for none.
    static constexpr int32_t s_BoneLimit = VertexWeight::NoBone;

    SkinWeights(const ExportScene& scene, const ExportContext& context) : m_Scene(scene), m_Context(context) {}

    // Fills the form's cWeight and the mesh's list of bones, or leaves both empty for a mesh without skin. False when
    // the skin can't be exported; the reasons are reported.
    bool Build(INode* pNode, MeshForm& form, ra::Mesh& mesh);

private:
    enum class Result { Failed, NoSkin, Weights };

    Result BuildFromSkin(INode* pNode, MeshForm& form);
    Result BuildForced(INode* pNode, MeshForm& form);
    Result ReadPoints(INode* pNode, ISkinContextData& data, MeshForm& form);
    bool ReadPoint(const char* pMesh, ISkinContextData& data, int point, VertexWeight& out);
    int32_t FindBone(const char* pMesh, int point, int skinBone) const;
    bool IsWithinLimit(const char* pMesh, int32_t bone);
    void MapBones(ISkin& skin);
    bool ListBones(const MeshForm& form, ra::Mesh& mesh);

    const ExportScene& m_Scene;
    const ExportContext& m_Context;
    std::vector<int32_t> m_BoneOfSkin;    // the bone of the scene by the skin's number, -1 for none
    std::vector<int32_t> m_ReportedBones; // beyond the limit, of this mesh
};
