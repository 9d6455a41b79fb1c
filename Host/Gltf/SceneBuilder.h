#pragma once

#include "Host/Gltf/Animation.h"
#include "Host/Gltf/HostExtras.h"
#include "Host/Gltf/Materials.h"
#include "Host/Gltf/MeshBuild.h"
#include "Host/Gltf/NodeTree.h"
#include "Host/Scene/Modifiers.h"
#include "Host/Scene/Scene.h"

#include <set>

namespace gltf {

// Makes the host's scene out of the parts of a file.
class SceneBuilder {
public:
    SceneBuilder(const SceneFile& file, const std::string& path, const LoadOptions& options, const Messages& messages,
                 scene::Scene& scene);

    // Once.
    void Build();

private:
    // What an object looks like to the scene.
    enum class Role { Mesh, Bone, Box, Camera, Light, Point, Dummy };

    // A node of the file while it becomes one or several of the scene.
    struct Work {
        uint32_t index = 0;
        const NodeRecord* pRecord = nullptr;
        Place place;
        NodeExtras extras;
        std::shared_ptr<const MeshData> pMesh; // null: no triangles
        Role role = Role::Dummy;
    };

    struct Pending {
        scene::Node* pNode;
        std::string target;
        int32_t camera; // -1: the node looks at its target, but is none
    };

    void BuildNode(uint32_t index);
    scene::Node& AddNode(const Work& work, std::string name);
    Role GetRole(const Work& work) const;
    AxesChange GetAxesChange(const Work& work) const;
    void SetTransform(const Work& work, scene::Node& node);
    void SetCommon(const Work& work, scene::Node& node);
    std::string GetXRefPath(const Work& work) const;
    bool IsBoneSwitchOn(const Work& work) const;
    void SetPlainObject(const Work& work, scene::Node& node);
    void SetLight(const Work& work, scene::Node& node);
    void BuildMeshNodes(const Work& work);
    void SetMeshObject(const Work& work, const MeshShape& shape, scene::Node& node);
    void CheckSmoothing(const Work& work);
    void CheckSkin(const Work& work, const std::vector<FaceRange>& ranges);

    std::shared_ptr<const MeshData> GetMesh(const Work& work);
    std::vector<scene::SkinBone> ReadBones(size_t skin);

    // What needs all nodes to be there.
    void ResolveTargets();
    void SetCamera(const Pending& pending, scene::Node* pTarget);
    void BuildSkins();

    struct PendingSkin {
        scene::Node* pNode;
        size_t skin;
        std::shared_ptr<const MeshData> pMesh;
        MeshShape shape;
    };

    const SceneFile& m_File;
    const LoadOptions& m_Options;
    const Messages& m_Messages;
    scene::Scene& m_Scene;
    std::shared_ptr<BufferStore> m_pBuffers;
    UniqueNames m_NodeNames;
    NodeTree m_Tree;
    std::optional<Clip> m_Clip;
    Materials m_Materials;
    std::vector<std::shared_ptr<const MeshData>> m_Meshes; // by index; null until it is needed
    std::vector<scene::Node*> m_Nodes;                     // by index of the file; null when it isn't loaded
    std::vector<bool> m_KeepsFrame;                        // by index: a camera or light
    std::vector<Pending> m_Pending;
    std::vector<PendingSkin> m_PendingSkins;
    std::set<std::pair<int32_t, int32_t>> m_CheckedSkins; // mesh and skin
};

} // namespace gltf
