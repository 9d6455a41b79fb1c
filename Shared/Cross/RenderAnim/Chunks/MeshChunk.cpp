#include "Shared/Cross/RenderAnim/Chunks/MeshChunk.h"

#include <algorithm>
#include <cstring>

#include "Shared/Cross/RenderAnim/Chunks/BoundVolumeChunk.h"
#include "Shared/Cross/RenderAnim/Chunks/PayloadReader.h"
#include "Shared/Cross/RenderAnim/Chunks/VertexArrays.h"
#include "Shared/Cross/RenderAnim/Mesh.h"

// "MSLC", folder, version 1, name of the mesh: "DATA" and "BVOL".
//
// "DATA", data, version 2:
//   int32      least detail
//   uint8      child selection
//   uint32     polygons, high level
//   uint32     polygons, low level
//   uint32     skinned transforms; for each:
//     string     bone
//     int32      index
//   uint32     vertices, at most 65,535
//   uint32     component mask
//   arrays     of the components 0, 1, 2 and 5 that the mask has: 12, 16, 12, 8 bytes a vertex
//   uint32     primitive sets; for each:
//     string     shader
//     uint32     indices
//     uint16     each index
//     uint16     first vertex of the range
//     uint16     vertices of the range

namespace ra {

namespace {

constexpr uint32_t s_DataChunk = FourCC("DATA");
constexpr uint32_t s_MeshVersion = 1;
constexpr uint32_t s_DataVersion = 2;
constexpr size_t s_TransformMinBytes = 8; // an empty name and an index
constexpr size_t s_PrimSetMinBytes = 12;  // an empty name, no index and a range
constexpr const char* s_Kind = "mesh";

void WriteTransforms(PayloadWriter& writer, const Mesh& mesh) {
    writer.Write(mesh.GetSkinnedTransformCount());
    for (uint32_t i = 0; i < mesh.GetSkinnedTransformCount(); ++i) {
        const Mesh::SkinnedTransform& transform = mesh.GetSkinnedTransform(i);
        writer.WriteString(transform.bone.GetText());
        writer.Write(transform.index);
    }
}

void WriteVertices(PayloadWriter& writer, const gz::VertexSet* pVertexSet) {
    const uint32_t count = pVertexSet ? pVertexSet->GetSize() : 0;
    const uint32_t components = pVertexSet ? pVertexSet->GetFormat() & s_StoredComponents : 0;
    writer.Write(count);
    writer.Write(components);
    for (const gz::VertexComponent component : s_StoredComponentOrder)
        if ((components & gz::ComponentBit(component)) != 0)
            GatherComponent(*pVertexSet, component, writer.Append(size_t{count} * gz::s_ComponentSizes[component]));
}

void WritePrimSets(PayloadWriter& writer, const Mesh& mesh) {
    writer.Write(mesh.GetShaderCount());
    for (uint32_t i = 0; i < mesh.GetShaderCount(); ++i) {
        const ShaderRef& shader = mesh.GetShader(i);
        writer.WriteString(shader.IsValid() ? shader.GetResource()->GetName() : nullptr);
        const gz::PrimSet* pPrimSet = mesh.GetPrimSet(i, Mesh::Poly_High);
        const std::span<const uint16_t> indices = pPrimSet ? pPrimSet->GetIndices() : std::span<const uint16_t>();
        const gz::VertexRange range = pPrimSet ? pPrimSet->GetRange() : gz::VertexRange();
        writer.Write(static_cast<uint32_t>(indices.size()));
        writer.WriteBytes(std::as_bytes(indices));
        writer.Write(range.start);
        writer.Write(range.count);
    }
}

void ReadTransforms(PayloadReader& reader, MeshRecord& record) {
    record.skinnedTransforms.resize(reader.ReadCount(s_TransformMinBytes, "skinned transform count"));
    for (SkinnedTransformRecord& transform : record.skinnedTransforms) {
        transform.bone = reader.ReadString("skinned bone");
        transform.index = reader.Read<int32_t>("skinned bone index");
    }
}

void ReadVertices(PayloadReader& reader, MeshRecord& record) {
    record.vertexCount = reader.Read<uint32_t>("vertex count");
    if (record.vertexCount > gz::VertexSet::MaxSize)
        reader.Fail("vertex count", std::to_string(record.vertexCount) + " is above 65535");
    const auto mask = reader.Read<uint32_t>("component mask");
    if ((mask & ~gz::s_AllComponents) != 0)
        reader.Fail("component mask", "has bits of no component");
    record.components = mask & s_StoredComponents;
    for (const gz::VertexComponent component : s_StoredComponentOrder)
        if ((record.components & gz::ComponentBit(component)) != 0)
            record.arrays[component] =
                reader.ReadBytes(size_t{record.vertexCount} * gz::s_ComponentSizes[component], "vertex array");
}

void ReadIndices(PayloadReader& reader, uint32_t vertexCount, std::vector<uint16_t>& indices) {
    indices.resize(reader.ReadCount(sizeof(uint16_t), "index count"));
    if (indices.empty())
        return;
    const std::span<const std::byte> bytes = reader.ReadBytes(indices.size() * sizeof(uint16_t), "indices");
    std::memcpy(indices.data(), bytes.data(), bytes.size());
    const uint16_t highest = *std::ranges::max_element(indices);
    if (highest >= vertexCount)
        reader.Fail("index", std::to_string(highest) + " names none of " + std::to_string(vertexCount) + " vertices");
}

PrimSetRecord ReadPrimSet(PayloadReader& reader, uint32_t vertexCount) {
    PrimSetRecord primSet;
    primSet.shader = reader.ReadString("shader name");
    ReadIndices(reader, vertexCount, primSet.indices);
    primSet.firstVertex = reader.Read<uint16_t>("first vertex");
    primSet.vertexCount = reader.Read<uint16_t>("range's vertex count");
    // The range may be shorter than the indices reach, but it lies among the vertices. A set without indices has none.
    if (primSet.indices.empty())
        return primSet;
    if (primSet.vertexCount == 0 || uint32_t{primSet.firstVertex} + primSet.vertexCount > vertexCount)
        reader.Fail("vertex range", "is empty or goes beyond the vertices");
    return primSet;
}

void ReadData(Chunky& chunky, MeshRecord& record) {
    EnterData(chunky, s_DataChunk, s_DataVersion, s_DataVersion);
    PayloadReader reader(chunky, s_Kind, record.name.c_str());
    record.minDetail = reader.Read<int32_t>("least detail");
    record.childSelection = reader.Read<uint8_t>("child selection") != 0;
    record.polyCountHigh = reader.Read<uint32_t>("high polygon count");
    record.polyCountLow = reader.Read<uint32_t>("low polygon count");
    ReadTransforms(reader, record);
    ReadVertices(reader, record);
    const uint32_t primSetCount = reader.ReadCount(s_PrimSetMinBytes, "primitive set count");
    record.primSets.reserve(primSetCount);
    for (uint32_t i = 0; i < primSetCount; ++i)
        record.primSets.push_back(ReadPrimSet(reader, record.vertexCount));
    record.pPayload = reader.TakePayload();
    chunky.EndChunk();
}

} // namespace

void WriteMesh(Chunky& chunky, PayloadWriter& writer, const Mesh& mesh) {
    chunky.BeginFolder(s_MeshChunk, s_MeshVersion, mesh.GetName());
    writer.Write(mesh.GetMinDetail());
    writer.Write<uint8_t>(mesh.GetChildSelection() ? 1 : 0);
    writer.Write(mesh.GetPolyCount(Mesh::Poly_High));
    writer.Write(mesh.GetPolyCount(Mesh::Poly_Low));
    WriteTransforms(writer, mesh);
    WriteVertices(writer, mesh.GetVertexSet(Mesh::Poly_High));
    WritePrimSets(writer, mesh);
    writer.WriteChunk(chunky, s_DataChunk, s_DataVersion);
    WriteBoundVolume(chunky, writer, mesh.GetBoundVolume());
    chunky.EndChunk();
}

MeshRecord ReadMeshRecord(Chunky& chunky) {
    MeshRecord record;
    record.name = chunky.EnterFolder(s_MeshChunk, s_MeshVersion).name.GetView();
    bool hasData = false;
    for (ChunkInfo child; chunky.NextChunk(child);)
        if (child.kind == ChunkKind_Data && child.id == s_DataChunk && !hasData) {
            ReadData(chunky, record);
            hasData = true;
        } else if (child.kind == ChunkKind_Data && child.id == s_BoundVolumeChunk)
            record.boundVolume = ReadBoundVolume(chunky, s_Kind, record.name.c_str());
    if (!hasData)
        throw Chunky::Exception(ChunkyError_MissingChunk, "Missing Chunk Type! (data of mesh '" + record.name + "')");
    chunky.EndChunk();
    return record;
}

} // namespace ra
