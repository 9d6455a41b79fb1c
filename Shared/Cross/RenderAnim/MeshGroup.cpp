#include "Shared/Cross/RenderAnim/MeshGroup.h"

#include <algorithm>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/Shader.h"
#include "Shared/Cross/RenderAnim/Skeleton.h"
#include "Shared/Cross/Util/Hash.h"

namespace ra {

namespace {

const MeshRef& GetNoMesh() {
    static const MeshRef s_noMesh;
    return s_noMesh;
}

std::string MakeLower(std::string name) {
    std::ranges::transform(name, name.begin(), ToLower);
    return name;
}

} // namespace

const MeshGroup::MeshEntry* MeshGroup::FindEntry(uint32_t index) const {
    dbAssert(index < m_cMeshes.size());
    return index < m_cMeshes.size() ? &m_cMeshes[index] : nullptr;
}

MeshGroup::MeshEntry* MeshGroup::FindEntry(uint32_t index) {
    dbAssert(index < m_cMeshes.size());
    return index < m_cMeshes.size() ? &m_cMeshes[index] : nullptr;
}

void MeshGroup::SetMeshCount(uint32_t count) {
    m_cMeshes.resize(count);
    m_MeshPlacesStale = true;
}

void MeshGroup::SetMesh(uint32_t index, const MeshRef& meshRef) {
    dbAssert(meshRef.IsValid());
    MeshEntry* pEntry = FindEntry(index);
    if (!pEntry || !meshRef.IsValid())
        return;
    pEntry->mesh = meshRef;
    const Mesh& mesh = *meshRef.GetData();
    for (uint32_t level = 0; level < Mesh::Poly_Count; ++level)
        m_polyCount[level] += mesh.GetPolyCount(level);
    for (uint32_t i = 0; i < mesh.GetShaderCount(); ++i)
        AddShader(mesh.GetShader(i), IsLocal(index));
    m_Skinned |= mesh.IsSkinned();
}

const MeshRef& MeshGroup::GetMesh(uint32_t index) const {
    const MeshEntry* pEntry = FindEntry(index);
    return pEntry ? pEntry->mesh : GetNoMesh();
}

void MeshGroup::SetMeshName(uint32_t index, const Name& name) {
    if (MeshEntry* pEntry = FindEntry(index)) {
        pEntry->name = name;
        m_MeshPlacesStale = true;
    }
}

const Name& MeshGroup::GetMeshName(uint32_t index) const {
    const MeshEntry* pEntry = FindEntry(index);
    return pEntry ? pEntry->name : Name::INVALID;
}

void MeshGroup::SetXRefName(uint32_t index, const Name& modelName) {
    if (MeshEntry* pEntry = FindEntry(index))
        pEntry->xrefName = modelName;
}

const Name& MeshGroup::GetXRefName(uint32_t index) const {
    const MeshEntry* pEntry = FindEntry(index);
    return pEntry ? pEntry->xrefName : Name::INVALID;
}

void MeshGroup::SetParentBone(uint32_t index, int32_t bone) {
    if (MeshEntry* pEntry = FindEntry(index))
        pEntry->parentBone = bone;
}

int32_t MeshGroup::GetParentBone(uint32_t index) const {
    const MeshEntry* pEntry = FindEntry(index);
    return pEntry ? pEntry->parentBone : InvalidIndex;
}

int32_t MeshGroup::FindMesh(const Name& name) const {
    if (m_MeshPlacesStale) {
        m_MeshPlaces.clear();
        m_MeshPlaces.reserve(m_cMeshes.size());
        for (uint32_t i = 0; i < GetMeshCount(); ++i)
            m_MeshPlaces.try_emplace(m_cMeshes[i].name, i);
        m_MeshPlacesStale = false;
    }
    const auto it = m_MeshPlaces.find(name);
    return it != m_MeshPlaces.end() ? static_cast<int32_t>(it->second) : InvalidIndex;
}

int32_t MeshGroup::GetSkinnedBone(uint32_t index, uint32_t transform) const {
    const MeshEntry* pEntry = FindEntry(index);
    return pEntry && transform < pEntry->skinnedBones.size() ? pEntry->skinnedBones[transform] : InvalidIndex;
}

void MeshGroup::SetSkinnedBone(uint32_t index, uint32_t transform, int32_t bone) {
    MeshEntry* pEntry = FindEntry(index);
    const uint32_t count = pEntry && pEntry->mesh.IsValid() ? pEntry->mesh.GetData()->GetSkinnedTransformCount() : 0;
    dbAssert(transform < count);
    if (transform >= count)
        return;
    pEntry->skinnedBones.resize(count, InvalidIndex);
    pEntry->skinnedBones[transform] = bone;
}

void MeshGroup::BindSkinning(const Skeleton& skeleton, const char* pModelName) {
    for (MeshEntry& entry : m_cMeshes) {
        const uint32_t count = entry.mesh.IsValid() ? entry.mesh.GetData()->GetSkinnedTransformCount() : 0;
        entry.skinnedBones.assign(count, InvalidIndex);
        for (uint32_t i = 0; i < count; ++i) {
            const Name& bone = entry.mesh.GetData()->GetSkinnedTransform(i).bone;
            entry.skinnedBones[i] = skeleton.FindBone(bone);
            if (entry.skinnedBones[i] == Bone::InvalidIndex)
                dbWarningf("'%s': Mesh '%s' requires bone '%s' for skinning, but it is missing!", pModelName,
                           entry.name.GetTextOrEmpty(), bone.GetTextOrEmpty());
        }
    }
}

const ShaderRef& MeshGroup::GetShader(uint32_t index) const {
    dbAssert(index < m_cShaders.size());
    return index < m_cShaders.size() ? m_cShaders[index].shader : GetNoShader();
}

bool MeshGroup::IsShaderOwned(uint32_t index) const {
    dbAssert(index < m_cShaders.size());
    return index < m_cShaders.size() && m_cShaders[index].owned;
}

void MeshGroup::AddShader(const ShaderRef& shaderRef, bool owned) {
    if (!shaderRef.IsValid())
        return;
    const auto [it, isNew] = m_ShaderPlaces.try_emplace(shaderRef.GetResource(), GetShaderCount());
    if (!isNew) {
        m_cShaders[it->second].owned |= owned;
        return;
    }
    m_ShaderNames.try_emplace(shaderRef.GetResource()->GetName(), GetShaderCount());
    m_LowerShaderNames.try_emplace(MakeLower(shaderRef.GetResource()->GetName()), GetShaderCount());
    m_cShaders.push_back({.shader = shaderRef, .owned = owned});
}

int32_t MeshGroup::FindShader(const char* pName) const {
    if (const auto it = m_ShaderNames.find(pName); it != m_ShaderNames.end())
        return static_cast<int32_t>(it->second);
    const auto it = m_LowerShaderNames.find(MakeLower(pName));
    return it != m_LowerShaderNames.end() ? static_cast<int32_t>(it->second) : InvalidIndex;
}

uint32_t MeshGroup::GetPolyCount(uint32_t level) const {
    dbAssert(level < Mesh::Poly_Count);
    return level < Mesh::Poly_Count ? m_polyCount[level] : 0;
}

void MeshGroup::Display(uint32_t level) const {
    for (const MeshEntry& entry : m_cMeshes)
        if (entry.mesh.IsValid())
            entry.mesh.GetData()->Display(level);
}

} // namespace ra
