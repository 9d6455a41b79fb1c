#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include <glm/mat4x3.hpp>

#include "Shared/Cross/RenderAnim/Mesh.h"
#include "Shared/Cross/RenderAnim/ResourceRefs.h"
#include "Shared/Cross/RenderAnim/Shader.h"
#include "Shared/Cross/RenderAnim/Skeleton.h"
#include "Shared_Tools/PVXExport/BoneNodes.h"

class INode;
class Mtl;

// A node that becomes a mesh of the model.
struct MeshNode {
    INode* pNode = nullptr;
    MeshRef meshRef; // valid once the mesh is made
};

// A host material that has become a shader.
struct UsedShader {
    ShaderRef shader;
    Mtl* pMtl = nullptr; // null for the default shader of a node without material
    int32_t sortKey = 0; // the order of the shaders within a mesh
};

// What one export has gathered of the host's scene and made of it so far. Nodes and materials are the host's.
struct ExportScene {
    std::vector<MeshNode> m_MeshNodes;
    BoneNodes m_BoneNodes;
    std::unique_ptr<Skeleton> m_Skeleton; // until the model takes it
    std::vector<INode*> m_MarkerNodes;
    std::vector<INode*> m_LightNodes; // collected, and of no use to a model
    std::vector<INode*> m_CameraNodes;
    std::vector<UsedShader> m_UsedShaders;
    std::vector<std::string> m_ShaderOrder; // shaders of these names would come first, in this order

    // These two are only ever looked up.
    std::unordered_map<const Mtl*, uint32_t> m_ShaderOfMaterial; // into m_UsedShaders
    std::unordered_map<std::string, TextureRef> m_TextureOfFile; // by the path that the host tells

    // Lets go of all of it, the inventory's resources too.
    void Clear();
};
