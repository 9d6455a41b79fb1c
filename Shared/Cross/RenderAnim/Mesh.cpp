#include "Shared/Cross/RenderAnim/Mesh.h"

#include <utility>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/MeshTypeInfo.h"
#include "Shared/Cross/RenderAnim/Shader.h"

namespace ra {

namespace {

const Mesh::SkinnedTransform s_NoTransform;

} // namespace

Inv::ResourceTypeInfo& Mesh::GetTypeInfo() {
    static MeshTypeInfo s_typeInfo;
    return s_typeInfo;
}

void Mesh::SetName(const char* pName) {
    NamedResource::SetName(pName);
    m_Name = Name(GetName()); // which stays as it was inside the inventory
}

const Mesh::SkinnedTransform& Mesh::GetSkinnedTransform(uint32_t index) const {
    dbAssert(index < m_skinnedTransforms.size());
    return index < m_skinnedTransforms.size() ? m_skinnedTransforms[index] : s_NoTransform;
}

void Mesh::SetSkinnedTransform(uint32_t index, const Name& bone, int32_t skeletonIndex) {
    dbAssert(index < m_skinnedTransforms.size());
    if (index < m_skinnedTransforms.size())
        m_skinnedTransforms[index] = {.bone = bone, .index = skeletonIndex};
}

gz::VertexSet* Mesh::GetVertexSet(uint32_t level) const {
    dbAssert(level < Poly_Count);
    return level < Poly_Count ? m_pVertexSets[level].get() : nullptr;
}

void Mesh::SetVertexSet(uint32_t level, std::unique_ptr<gz::VertexSet> pVertexSet) {
    dbAssert(level < Poly_Count);
    if (level < Poly_Count)
        m_pVertexSets[level] = std::move(pVertexSet);
}

uint32_t Mesh::GetPolyCount(uint32_t level) const {
    dbAssert(level < Poly_Count);
    return level < Poly_Count ? m_polyCount[level] : 0;
}

void Mesh::SetPolyCount(uint32_t level, uint32_t count) {
    dbAssert(level < Poly_Count);
    if (level < Poly_Count)
        m_polyCount[level] = count;
}

const ShaderRef& Mesh::GetShader(uint32_t index) const {
    dbAssert(index < m_PrimSets.size());
    return index < m_PrimSets.size() ? m_PrimSets[index].shader : GetNoShader();
}

void Mesh::SetShader(uint32_t index, const ShaderRef& shader) {
    dbAssert(index < m_PrimSets.size());
    if (index < m_PrimSets.size())
        m_PrimSets[index].shader = shader;
}

gz::PrimSet* Mesh::GetPrimSet(uint32_t shaderIndex, uint32_t level) const {
    dbAssert(level < Poly_Count);
    dbAssert(shaderIndex < m_PrimSets.size());
    return level < Poly_Count && shaderIndex < m_PrimSets.size() ? m_PrimSets[shaderIndex].pPrimSets[level].get()
                                                                 : nullptr;
}

void Mesh::SetPrimSet(uint32_t shaderIndex, uint32_t level, std::unique_ptr<gz::PrimSet> pPrimSet) {
    dbAssert(level < Poly_Count);
    dbAssert(shaderIndex < m_PrimSets.size());
    if (level < Poly_Count && shaderIndex < m_PrimSets.size())
        m_PrimSets[shaderIndex].pPrimSets[level] = std::move(pPrimSet);
}

void Mesh::Display(uint32_t level) const {
    for (uint32_t i = 0; i < GetShaderCount(); ++i)
        if (gz::PrimSet* pPrimSet = GetPrimSet(i, level))
            pPrimSet->Display();
}

} // namespace ra
