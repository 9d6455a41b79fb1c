#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include <glm/vec3.hpp>

#include "Shared/Cross/RenderAnim/BoundVolume.h"
#include "Shared/Cross/RenderAnim/Mesh.h"
#include "Shared/Cross/RenderAnim/RenderAnimName.h"
#include "Shared/Cross/RenderAnim/ResourceRefs.h"

class Skeleton;

namespace ra {

// The meshes of a model with the bones that they hang on, all shaders that they use, and what all of it lies in. A mesh
// may belong to another model; the group then names that model, and holds the mesh when it was found. Indices out of
// range are a mistake of the caller: getters then give nothing and setters do nothing.
class MeshGroup {
public:
    static constexpr int32_t InvalidIndex = -1;

    uint32_t GetMeshCount() const { return static_cast<uint32_t>(m_cMeshes.size()); }
    void SetMeshCount(uint32_t count);
    // Adds the mesh's polygons to the totals and its shaders to the group's; call it once for each place. Set the
    // cross-reference name first: only the shaders of a local mesh are the group's own.
    void SetMesh(uint32_t index, const MeshRef& meshRef);
    const MeshRef& GetMesh(uint32_t index) const; // empty as long as none was set or found
    void SetMeshName(uint32_t index, const Name& name);
    const Name& GetMeshName(uint32_t index) const;
    // The model that the mesh belongs to; INVALID for a local one.
    void SetXRefName(uint32_t index, const Name& modelName);
    const Name& GetXRefName(uint32_t index) const;
    bool IsLocal(uint32_t index) const { return !GetXRefName(index).IsValid(); }
    // The bone that the mesh hangs on, -1 for none.
    void SetParentBone(uint32_t index, int32_t bone);
    int32_t GetParentBone(uint32_t index) const;
    // The first mesh of that name; -1 without one. In constant time after the first call.
    int32_t FindMesh(const Name& name) const;

    // For each skinned transform of a mesh the bone of this model; -1 until bound.
    int32_t GetSkinnedBone(uint32_t index, uint32_t transform) const;
    void SetSkinnedBone(uint32_t index, uint32_t transform, int32_t bone);
    // Finds the bones of all skinned transforms by name. One that is missing is logged, with the model's name, and left
    // at -1.
    void BindSkinning(const Skeleton& skeleton, const char* pModelName);
    bool IsSkinned() const { return m_Skinned; } // any of its meshes

    uint32_t GetShaderCount() const { return static_cast<uint32_t>(m_cShaders.size()); }
    const ShaderRef& GetShader(uint32_t index) const;
    // True when the model saves the shader as its own.
    bool IsShaderOwned(uint32_t index) const;
    // A shader that is listed already only becomes owned, if it is now.
    void AddShader(const ShaderRef& shader, bool owned);
    // By its exact name, or else without regard to case, in which the inventory renames what it loads; -1 without one.
    int32_t FindShader(const char* pName) const;

    // Totals of the meshes that were set.
    uint32_t GetPolyCount(uint32_t level) const;

    const BoundVolume& GetBoundVolume() const { return m_bv; }
    void SetBoundVolume(const BoundVolume& bv) { m_bv = bv; }
    const glm::vec3& GetScale() const { return m_Scale; }
    void SetScale(const glm::vec3& scale) { m_Scale = scale; }

    // What draws shadows is the game's; the tools have none.
    void BuildShadowCasterTree() {}
    void Display(uint32_t level) const;

private:
    struct MeshEntry {
        MeshRef mesh;
        Name name;
        Name xrefName;
        int32_t parentBone = InvalidIndex;
        std::vector<int32_t> skinnedBones;
    };
    struct ShaderEntry {
        ShaderRef shader;
        bool owned = false;
    };

    const MeshEntry* FindEntry(uint32_t index) const;
    MeshEntry* FindEntry(uint32_t index);

    bool m_Skinned = false;
    std::array<uint32_t, Mesh::Poly_Count> m_polyCount = {};
    std::vector<MeshEntry> m_cMeshes;
    std::vector<ShaderEntry> m_cShaders;
    BoundVolume m_bv;
    glm::vec3 m_Scale = glm::vec3(1.0f);

    // Where things are in the two lists. Only ever looked up, never walked.
    std::unordered_map<const Inv::Resource*, uint32_t> m_ShaderPlaces;
    std::unordered_map<std::string, uint32_t> m_ShaderNames;
    std::unordered_map<std::string, uint32_t> m_LowerShaderNames;
    mutable std::unordered_map<Name, uint32_t> m_MeshPlaces;
    mutable bool m_MeshPlacesStale = true;
};

} // namespace ra
