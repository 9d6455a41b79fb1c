#include <algorithm>
#include <stdexcept>
#include <utility>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/Glaze/Device.h"
#include "Shared/Cross/RenderAnim/Chunks/MeshChunk.h"
#include "Shared/Cross/RenderAnim/Mesh.h"
#include "Shared/Cross/RenderAnim/Shader.h"
#include "Shared/Cross/RenderAnim/ShaderTypeInfo.h"

namespace ra {

namespace {

constexpr uint32_t s_StaticUsage = 2; // written once, drawn often

gz::Device& GetRunningDevice() {
    gz::Device* pDevice = gz::GetDevice();
    dbAssert(pDevice);
    if (!pDevice)
        throw std::runtime_error("a mesh can't be made without a device");
    return *pDevice;
}

ShaderRef FindShader(const MeshRecord& record, const std::string& shaderName) {
    ShaderRef shader;
    if (shader.Find(shaderName.c_str()))
        return shader;
    dbWarningf("Mesh '%s': Unable to load shader '%s' (Make sure the MAX Ref does not have IgnoreShaders on!",
               record.name.c_str(), shaderName.c_str());
    return GetDefaultShader();
}

std::unique_ptr<gz::VertexSet> BuildVertices(gz::Device& device, const MeshRecord& record, const VertexRecord& level) {
    std::unique_ptr<gz::VertexSet> pVertexSet = device.MakeVertexSet();
    gz::VertexSet::Arrays arrays{};
    std::ranges::transform(level.arrays, arrays.begin(), [](const auto& array) { return array.data(); });
    if (!pVertexSet->CreateFrom(level.components, level.count, arrays, s_StaticUsage))
        throw std::runtime_error("the device has no room for the vertices of mesh '" + record.name + "'");
    return pVertexSet;
}

std::unique_ptr<gz::PrimSet> BuildPrimSet(gz::Device& device, gz::VertexSet& vertexSet, const ShaderRef& shader,
                                          TriangleRecord& record) {
    const Shader* pShader = shader.GetData();
    std::unique_ptr<gz::PrimSet> pPrimSet =
        device.MakePrimSet(vertexSet, pShader ? pShader->GetDeviceShader() : nullptr, s_StaticUsage);
    const uint32_t range = vertexSet.AddRange(record.firstVertex, record.vertexCount);
    pPrimSet->SetUp(range, std::move(record.indices), gz::PrimKind_TriangleList);
    return pPrimSet;
}

void SetPrimSets(gz::Device& device, Mesh& mesh, MeshRecord& record) {
    mesh.SetShaderCount(static_cast<uint32_t>(record.primSets.size()));
    for (uint32_t i = 0; i < record.primSets.size(); ++i) {
        const ShaderRef shader = FindShader(record, record.primSets[i].shader);
        mesh.SetShader(i, shader);
        for (uint32_t level = 0; level < Mesh::Poly_Count; ++level)
            if (TriangleRecord& triangles = record.primSets[i].levels[level]; !triangles.indices.empty())
                mesh.SetPrimSet(i, level, BuildPrimSet(device, *mesh.GetVertexSet(level), shader, triangles));
    }
}

} // namespace

MeshRef BuildMesh(MeshRecord record) {
    gz::Device& device = GetRunningDevice();
    auto pMesh = std::make_unique<Mesh>();
    pMesh->SetName(record.name.c_str());
    pMesh->SetMinDetail(record.minDetail);
    pMesh->SetChildSelection(record.childSelection);
    pMesh->SetPolyCount(Mesh::Poly_High, record.polyCountHigh);
    pMesh->SetPolyCount(Mesh::Poly_Low, record.polyCountLow);
    pMesh->SetBoundVolume(record.boundVolume);
    pMesh->SetSkinnedTransformCount(static_cast<uint32_t>(record.skinnedTransforms.size()));
    for (uint32_t i = 0; i < record.skinnedTransforms.size(); ++i)
        pMesh->SetSkinnedTransform(i, Name(record.skinnedTransforms[i].bone.c_str()),
                                   record.skinnedTransforms[i].index);
    for (uint32_t level = 0; level < Mesh::Poly_Count; ++level)
        if (level == Mesh::Poly_High || record.levels[level].count > 0)
            pMesh->SetVertexSet(level, BuildVertices(device, record, record.levels[level]));
    SetPrimSets(device, *pMesh, record);
    MeshRef mesh;
    mesh.Set(std::move(pMesh));
    return mesh;
}

} // namespace ra
