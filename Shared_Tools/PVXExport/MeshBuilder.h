// The scene's mesh nodes become the model's meshes.
#pragma once

#include <cstdint>
#include <vector>

#include "Shared_Tools/PVXExport/Mesh/HostMesh.h"
#include "Shared_Tools/PVXExport/Mesh/MeshForm.h"
#include "Shared_Tools/PVXExport/Mesh/MeshNormals.h"
#include "Shared_Tools/PVXExport/ShaderBuilder.h"
#include "Shared_Tools/PVXExport/SkinWeights.h"
#include "Shared_Tools/PVXExport/VertexLayout.h"

struct ExportContext;
struct ExportScene;
struct MeshNode;
class INode;
class Object;

namespace ra {
class Mesh;
}

// Only one mesh at a time is in its working form; the memory for it is used again for the next one.
class MeshBuilder {
public:
    MeshBuilder(ExportScene& scene, const ExportContext& context)
        : m_Scene(scene), m_Context(context), m_Shaders(scene, context), m_Skin(scene, context) {}

    // A node that evaluates to nothing is taken off the list. False when a mesh couldn't be built; the others are built
    // all the same, so that the artist learns of all that is wrong at once.
    bool BuildMeshes();

private:
    bool BuildMesh(MeshNode& meshNode, Object& object);
    bool ReadHostMesh(MeshNode& meshNode, Object& object);
    ra::Mesh* MakeMesh(MeshNode& meshNode);
    bool ReadSurface(const Mesh& hostMesh, INode* pNode);
    void MapSlots(INode* pNode);
    void SetShaders(INode* pNode, ra::Mesh& mesh);
    void SortShaders();
    bool LayOut(INode* pNode, ra::Mesh& mesh);

    ExportScene& m_Scene;
    const ExportContext& m_Context;
    ShaderBuilder m_Shaders;
    SkinWeights m_Skin;
    TexCoordReader m_TexCoords;
    NormalBuilder m_Normals;
    VertexLayout m_Layout;

    MeshForm m_Form;
    std::vector<uint8_t> m_UsedSlots;        // by material slot
    std::vector<SlotMapping> m_SlotMappings; // by material slot
    std::vector<int32_t> m_RemapShader;      // by material slot: the mesh's shader, -1 for an unused slot
    std::vector<uint32_t> m_UsedShaders;     // by used slot: the scene's shader
    std::vector<uint32_t> m_ShaderOrder;     // the mesh's shaders in their final order
    std::vector<int32_t> m_PlaceOfShader;    // by the scene's shader: the place in m_ShaderOrder
};
