#include "Shared_Tools/PVXExport/VertexLayout.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <span>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/Glaze/Device.h"
#include "Shared/Cross/Glaze/PrimSet.h"
#include "Shared/Cross/Glaze/VertexSet.h"
#include "Shared/Cross/RenderAnim/Mesh.h"
#include "Shared/Cross/RenderAnim/Shader.h"
#include "Shared_Tools/PVXExport/PVXErrors.h"

namespace {

constexpr size_t s_MaxElements = 65536; // of any list that 16 bits index
constexpr uint32_t s_Usage = 2;
constexpr uint32_t s_BlockSize = 256; // vertices that stay in the cache while one component after the other is written

bool FitsIndices(const MeshForm& form) {
    return form.cVertex.size() <= s_MaxElements && form.cWeight.size() <= s_MaxElements &&
           form.cNormal.size() <= s_MaxElements && form.cTexVertex.size() <= s_MaxElements;
}

uint32_t FormatOf(const MeshForm& form) {
    uint32_t format = gz::ComponentBit(gz::VC_Position);
    if (!form.cWeight.empty())
        format |= gz::ComponentBit(gz::VC_Weights);
    if (!form.cNormal.empty())
        format |= gz::ComponentBit(gz::VC_Normal);
    if (!form.cTexVertex.empty())
        format |= gz::ComponentBit(gz::VC_TexCoord0);
    return format;
}

// A component of the vertices from `first` on, from a list that their keys index. Nothing happens for an empty list.
template <class T>
bool WriteComponent(gz::VertexSet& vertexSet, gz::VertexComponent component, const std::vector<T>& elements,
                    std::span<const VertexKey> keys, uint32_t first, uint16_t VertexKey::*pIndex) {
    if (elements.empty())
        return true;
    uint32_t stride = 0;
    auto* pTarget = static_cast<char*>(vertexSet.Lock(component, first, static_cast<uint32_t>(keys.size()), stride));
    dbAssertText(pTarget, "vertexSet.HasComponent( component )");
    if (!pTarget)
        return false;
    for (const VertexKey& key : keys) {
        std::memcpy(pTarget, &elements[key.*pIndex], sizeof(T));
        pTarget += stride;
    }
    vertexSet.Unlock(component);
    return true;
}

// The vertices from the lowest to the highest index. A list that only ever descends has no highest: its range then has
// one vertex at the start of the set, and covers the whole set anywhere else, where the format has no number for it.
uint32_t AddRange(gz::VertexSet& vertexSet, uint16_t lowest, uint16_t highest) {
    constexpr uint32_t wholeSet = 0;
    if (highest < lowest) {
        dbWarningf("Indices from %d downward have no range of vertices, taking all of them", int{lowest});
        return wholeSet;
    }
    return vertexSet.AddRange(lowest, static_cast<uint16_t>(highest - lowest + 1));
}

} // namespace

bool VertexLayout::BuildVertexSet(const char* pNodeName, MeshForm& form, ra::Mesh& mesh) {
    if (!FitsIndices(form)) {
        PVXErrors::Get().Error("'%s': Too many vertices!", pNodeName);
        return false;
    }
    // Normals and texture coordinates are unique since they were made.
    m_Uniquer.Run(form.cVertex, m_RemapVertex);
    m_Uniquer.Run(form.cWeight, m_RemapWeight);
    if (!form.cWeight.empty()) {
        const bool sameSize = m_RemapWeight.size() == m_RemapVertex.size();
        dbAssertText(sameSize, "cRemapWeight.size() == cRemapVertex.size()");
        if (!sameSize)
            return false;
    }
    if (form.cFace.empty())
        return false;

    m_Keys.Build(form, {m_RemapVertex, m_RemapWeight});
    gz::Device* pDevice = gz::GetDevice();
    std::unique_ptr<gz::VertexSet> pVertexSetHigh = pDevice ? pDevice->MakeVertexSet() : nullptr;
    const auto count = static_cast<uint32_t>(m_Keys.GetVertices().size());
    if (!pVertexSetHigh || !pVertexSetHigh->Create(FormatOf(form), count, s_Usage) ||
        !WriteVertices(form, *pVertexSetHigh))
        return false;
    for (size_t i = 0; i < form.cFace.size(); ++i) {
        MeshFace& face = form.cFace[i];
        for (size_t c = 0; c < 3; ++c)
            face.v[c] = face.n[c] = face.t[c] = static_cast<uint16_t>(m_Keys.GetVertexIndex(i, c));
    }
    mesh.SetVertexSet(ra::Mesh::Poly_High, std::move(pVertexSetHigh));
    return true;
}

bool VertexLayout::WriteVertices(const MeshForm& form, gz::VertexSet& vertexSet) const {
    const std::span<const VertexKey> all = m_Keys.GetVertices();
    for (uint32_t first = 0; first < all.size(); first += s_BlockSize) {
        const auto keys = all.subspan(first, std::min<size_t>(s_BlockSize, all.size() - first));
        if (!WriteComponent(vertexSet, gz::VC_Position, form.cVertex, keys, first, &VertexKey::vertex) ||
            !WriteComponent(vertexSet, gz::VC_Weights, form.cWeight, keys, first, &VertexKey::weight) ||
            !WriteComponent(vertexSet, gz::VC_Normal, form.cNormal, keys, first, &VertexKey::normal) ||
            !WriteComponent(vertexSet, gz::VC_TexCoord0, form.cTexVertex, keys, first, &VertexKey::texture))
            return false;
    }
    return true;
}

bool VertexLayout::BuildPrimSets(const MeshForm& form, ra::Mesh& mesh) {
    gz::VertexSet* pVertexSetHigh = mesh.GetVertexSet(ra::Mesh::Poly_High);
    const uint32_t shaderCount = mesh.GetShaderCount();
    m_Indices.Build(form.cFace, shaderCount);
    for (uint32_t s = 0; s < shaderCount; ++s) {
        const std::span<const uint16_t> indices = m_Indices.GetIndices(s);
        if (indices.empty()) {
            mesh.SetPrimSet(s, ra::Mesh::Poly_High, nullptr);
            continue;
        }
        const Shader* pShader = mesh.GetShader(s).GetData();
        std::unique_ptr<gz::PrimSet> pPrimSetHigh =
            gz::GetDevice()->MakePrimSet(*pVertexSetHigh, pShader ? pShader->GetDeviceShader() : nullptr, s_Usage);
        if (!pPrimSetHigh)
            return false;
        const uint32_t range = AddRange(*pVertexSetHigh, m_Indices.GetLowest(s), m_Indices.GetHighest(s));
        pPrimSetHigh->SetUp(range, static_cast<uint32_t>(indices.size()), gz::PrimKind_TriangleList);
        pPrimSetHigh->SetIndices(indices);
        mesh.SetPrimSet(s, ra::Mesh::Poly_High, std::move(pPrimSetHigh));
    }
    return true;
}
