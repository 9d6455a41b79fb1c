#include "Shared_Tools/BurnerImp/MeshOptimise.h"

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/Glaze/Device.h"
#include "Shared/Cross/RenderAnim/Mesh.h"
#include "Shared/Cross/RenderAnim/Shader.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <vector>

#include <meshoptimizer.h>

namespace {

using ra::Mesh;

constexpr uint32_t s_TriangleCorners = 3;
constexpr float s_AnyError = 1.0f; // as large as the mesh: the share decides

// New places for a level's vertices, in the order in which triangles first use them.
class FirstUse {
public:
    explicit FirstUse(size_t vertexCount) : m_Places(vertexCount, s_None) {}

    uint16_t Place(uint16_t vertex) {
        if (m_Places[vertex] == s_None) {
            m_Places[vertex] = static_cast<uint32_t>(m_Order.size());
            m_Order.push_back(vertex);
        }
        return static_cast<uint16_t>(m_Places[vertex]);
    }
    // Those that nobody uses, behind the others.
    void PlaceRest() {
        for (size_t vertex = 0; vertex < m_Places.size(); ++vertex)
            Place(static_cast<uint16_t>(vertex));
    }
    // By place.
    const std::vector<uint16_t>& GetOrder() const { return m_Order; }

private:
    static constexpr uint32_t s_None = 0xFFFFFFFF;
    std::vector<uint32_t> m_Places;
    std::vector<uint16_t> m_Order;
};

const std::byte* GetVertices(const gz::VertexSet& vertices) {
    return static_cast<const std::byte*>(vertices.GetData(gz::VC_Position));
}

// All components of the vertices, which lie side by side.
void CopyVertices(const std::byte* pSource, size_t stride, const std::vector<uint16_t>& order, gz::VertexSet& target) {
    uint32_t targetStride = 0;
    auto* pTarget =
        static_cast<std::byte*>(target.Lock(gz::VC_Position, 0, static_cast<uint32_t>(order.size()), targetStride));
    for (size_t i = 0; pTarget && i < order.size(); ++i)
        std::memcpy(pTarget + i * stride, pSource + order[i] * stride, stride);
    target.Unlock(gz::VC_Position);
}

void SetTriangles(gz::PrimSet& primSet, std::span<const uint16_t> indices) {
    const auto [lowest, highest] = std::ranges::minmax(indices);
    const uint32_t range = primSet.GetVertexSet().AddRange(lowest, static_cast<uint16_t>(highest - lowest + 1));
    primSet.SetUp(range, static_cast<uint32_t>(indices.size()), gz::PrimKind_TriangleList);
    primSet.SetIndices(indices);
}

bool IsTriangles(const gz::PrimSet* pPrimSet) {
    return pPrimSet && !pPrimSet->GetIndices().empty() && pPrimSet->GetIndices().size() % s_TriangleCorners == 0;
}

bool HasFinitePositions(const gz::VertexSet& vertices) {
    const std::byte* pVertex = GetVertices(vertices);
    for (uint32_t i = 0; i < vertices.GetSize(); ++i, pVertex += vertices.GetStride()) {
        float position[3];
        std::memcpy(position, pVertex, sizeof position);
        if (!std::isfinite(position[0]) || !std::isfinite(position[1]) || !std::isfinite(position[2]))
            return false;
    }
    return true;
}

// The triangles of one shader. Borders stay where they are if another shader's triangles go on behind them.
std::vector<uint16_t> Simplify(const gz::VertexSet& vertices, const gz::PrimSet& primSet, float share,
                               bool lockBorder) {
    const std::span<const uint16_t> all = primSet.GetIndices();
    const std::vector<unsigned int> indices(all.begin(), all.end());
    const size_t triangles = indices.size() / s_TriangleCorners;
    const size_t wanted =
        std::max<size_t>(1, static_cast<size_t>(static_cast<float>(triangles) * share)) * s_TriangleCorners;
    std::vector<unsigned int> kept(indices.size());
    kept.resize(meshopt_simplify(kept.data(), indices.data(), indices.size(),
                                 static_cast<const float*>(vertices.GetData(gz::VC_Position)), vertices.GetSize(),
                                 vertices.GetStride(), wanted, s_AnyError, lockBorder ? meshopt_SimplifyLockBorder : 0,
                                 nullptr));
    std::vector<uint16_t> result(kept.size());
    std::ranges::transform(kept, result.begin(), [](unsigned int index) { return static_cast<uint16_t>(index); });
    return result;
}

uint32_t CountPrimSets(const Mesh& mesh, uint32_t level) {
    uint32_t count = 0;
    for (uint32_t i = 0; i < mesh.GetShaderCount(); ++i)
        count += IsTriangles(mesh.GetPrimSet(i, level)) ? 1 : 0;
    return count;
}

// By shader, in places of the level's own vertices.
using TriangleLists = std::vector<std::vector<uint16_t>>;

std::unique_ptr<gz::PrimSet> MakePrimSet(gz::VertexSet& vertices, const Mesh& mesh, uint32_t shaderIndex,
                                         std::span<const uint16_t> indices) {
    const Shader* pShader = mesh.GetShader(shaderIndex).GetData();
    std::unique_ptr<gz::PrimSet> pPrimSet =
        gz::GetDevice()->MakePrimSet(vertices, pShader ? pShader->GetDeviceShader() : nullptr,
                                     mesh.GetPrimSet(shaderIndex, Mesh::Poly_High)->GetUsage());
    SetTriangles(*pPrimSet, indices);
    return pPrimSet;
}

void SetLowLevel(Mesh& mesh, const TriangleLists& lists, const std::vector<uint16_t>& order) {
    const gz::VertexSet& high = *mesh.GetVertexSet(Mesh::Poly_High);
    std::unique_ptr<gz::VertexSet> pLow = gz::GetDevice()->MakeVertexSet();
    if (!pLow->Create(high.GetFormat(), static_cast<uint32_t>(order.size()), high.GetUsage()))
        return;
    CopyVertices(GetVertices(high), high.GetStride(), order, *pLow);
    gz::VertexSet& low = *pLow;
    mesh.SetVertexSet(Mesh::Poly_Low, std::move(pLow));
    size_t corners = 0;
    for (uint32_t i = 0; i < lists.size(); ++i) {
        corners += lists[i].size();
        if (!lists[i].empty())
            mesh.SetPrimSet(i, Mesh::Poly_Low, MakePrimSet(low, mesh, i, lists[i]));
    }
    mesh.SetPolyCount(Mesh::Poly_Low, static_cast<uint32_t>(corners / s_TriangleCorners));
}

bool IsOrderFree(const Mesh& mesh, uint32_t shaderIndex) {
    const Shader* pShader = mesh.GetShader(shaderIndex).GetData();
    return pShader && pShader->IsOpaque();
}

std::vector<uint16_t> OrderTriangles(const gz::PrimSet& primSet, uint32_t vertexCount, bool orderFree) {
    const std::span<const uint16_t> indices = primSet.GetIndices();
    std::vector<uint16_t> ordered(indices.begin(), indices.end());
    if (orderFree && IsTriangles(&primSet))
        meshopt_optimizeVertexCache(ordered.data(), indices.data(), indices.size(), vertexCount);
    return ordered;
}

} // namespace

namespace MeshOptimise {

void AddLowLevel(Mesh& mesh, float share) {
    const gz::VertexSet* pVertices = mesh.GetVertexSet(Mesh::Poly_High);
    const uint32_t primSets = CountPrimSets(mesh, Mesh::Poly_High);
    if (share <= 0.0f || !pVertices || !pVertices->HasComponent(gz::VC_Position) || primSets == 0)
        return;
    if (!HasFinitePositions(*pVertices)) {
        dbWarningf("MODELS -- '%s': a position is no number, so there is no low level!", mesh.GetName());
        return;
    }
    TriangleLists lists(mesh.GetShaderCount());
    FirstUse places(pVertices->GetSize());
    for (uint32_t i = 0; i < lists.size(); ++i) {
        const gz::PrimSet* pPrimSet = mesh.GetPrimSet(i, Mesh::Poly_High);
        if (!IsTriangles(pPrimSet))
            continue;
        lists[i] = Simplify(*pVertices, *pPrimSet, share, primSets > 1);
        for (uint16_t& index : lists[i])
            index = places.Place(index);
    }
    if (!places.GetOrder().empty())
        SetLowLevel(mesh, lists, places.GetOrder());
}

void OrderForCaches(Mesh& mesh, uint32_t level) {
    gz::VertexSet* pVertices = mesh.GetVertexSet(level);
    if (!pVertices || !pVertices->HasComponent(gz::VC_Position))
        return;
    FirstUse places(pVertices->GetSize());
    for (uint32_t i = 0; i < mesh.GetShaderCount(); ++i) {
        gz::PrimSet* pPrimSet = mesh.GetPrimSet(i, level);
        if (!pPrimSet || pPrimSet->GetIndices().empty())
            continue;
        std::vector<uint16_t> indices = OrderTriangles(*pPrimSet, pVertices->GetSize(), IsOrderFree(mesh, i));
        for (uint16_t& index : indices)
            index = places.Place(index);
        SetTriangles(*pPrimSet, indices);
    }
    places.PlaceRest();
    const size_t stride = pVertices->GetStride();
    const std::byte* pBefore = GetVertices(*pVertices);
    const std::vector<std::byte> before(pBefore, pBefore + stride * pVertices->GetSize());
    CopyVertices(before.data(), stride, places.GetOrder(), *pVertices);
}

} // namespace MeshOptimise
