#include "Shared/Cross/RenderAnim/Chunks/MeshChunk.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <iterator>

#include "Shared/Cross/Debug/db.h"
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
//
// "DATA" in final files, data, version 2: the same up to the skinned transforms, then
//   uint32     vertices of the high level, above 0
//   uint32     component mask
//   arrays     as above
//   uint32     vertices of the low level, 0 for a mesh without one; otherwise:
//     uint32     component mask
//     arrays     as above
//   uint32     primitive sets; for each:
//     string     shader
//     for the high and then the low level:
//       uint32     indices; when not 0:
//         uint16     each index
//         uint16     first vertex of the range
//         uint16     vertices of the range
//   3 lists    shadow data, each a uint32 count and records of 12, 24 and 40 bytes

namespace ra {

namespace {

constexpr uint32_t s_MeshDataChunk = FourCC("DATA");
constexpr uint32_t s_MeshVersion = 1;
constexpr uint32_t s_MeshDataVersion = 2;
constexpr size_t s_TransformMinBytes = 8; // an empty name and an index
constexpr size_t s_PrimSetMinBytes = 12;  // an empty name, no index and a range, or no index twice
constexpr int s_ShadowListCount = 3;
constexpr const char* s_MeshKind = "mesh";

static_assert(s_MeshLevelCount == Mesh::Poly_Count);

void WriteTransforms(PayloadWriter& writer, const Mesh& mesh) {
    writer.Write(mesh.GetSkinnedTransformCount());
    for (uint32_t i = 0; i < mesh.GetSkinnedTransformCount(); ++i) {
        const Mesh::SkinnedTransform& transform = mesh.GetSkinnedTransform(i);
        writer.WriteString(transform.bone.GetText());
        writer.Write(transform.index);
    }
}

// Returns whether the level is there.
bool WriteVertexCount(PayloadWriter& writer, const gz::VertexSet* pVertexSet) {
    const uint32_t count = pVertexSet ? pVertexSet->GetSize() : 0;
    writer.Write(count);
    return count > 0;
}

void WriteVertexArrays(PayloadWriter& writer, const gz::VertexSet* pVertexSet) {
    const uint32_t stored = pVertexSet ? pVertexSet->GetFormat() & s_StoredComponents : 0;
    writer.Write(stored);
    std::vector<gz::VertexComponent> components;
    std::ranges::copy_if(s_StoredComponentOrder, std::back_inserter(components),
                         [&](gz::VertexComponent component) { return (stored & gz::ComponentBit(component)) != 0; });
    if (!components.empty())
        GatherComponents(*pVertexSet, components, writer.Append(GetArraysSize(*pVertexSet, components)));
}

// The generic form writes the range even of no indices.
void WriteTriangles(PayloadWriter& writer, const gz::PrimSet* pPrimSet, MeshForm form) {
    const std::span<const uint16_t> indices = pPrimSet ? pPrimSet->GetIndices() : std::span<const uint16_t>();
    const gz::VertexRange range = pPrimSet ? pPrimSet->GetRange() : gz::VertexRange();
    writer.Write(static_cast<uint32_t>(indices.size()));
    if (indices.empty() && form == MeshForm::Final)
        return;
    writer.WriteBytes(std::as_bytes(indices));
    writer.Write(range.start);
    writer.Write(range.count);
}

void WritePrimSets(PayloadWriter& writer, const Mesh& mesh, MeshForm form) {
    const uint32_t primsetCount = mesh.GetShaderCount();
    dbAssert(primsetCount < INT_MAX);
    writer.Write(primsetCount);
    for (uint32_t i = 0; i < primsetCount; ++i) {
        const ShaderRef& shader = mesh.GetShader(i);
        writer.WriteString(shader.IsValid() ? shader.GetResource()->GetName() : nullptr);
        WriteTriangles(writer, mesh.GetPrimSet(i, Mesh::Poly_High), form);
        if (form == MeshForm::Final)
            WriteTriangles(writer, mesh.GetPrimSet(i, Mesh::Poly_Low), form);
    }
}

void WriteLevels(PayloadWriter& writer, const Mesh& mesh, MeshForm form) {
    const gz::VertexSet* pHigh = mesh.GetVertexSet(Mesh::Poly_High);
    const bool hasHigh = WriteVertexCount(writer, pHigh);
    WriteVertexArrays(writer, pHigh);
    if (form == MeshForm::Generic)
        return;
    dbAssertText(hasHigh, "mesh.GetVertexSet( ra::Mesh::Poly_High )->GetSize() > 0");
    const gz::VertexSet* pLow = mesh.GetVertexSet(Mesh::Poly_Low);
    if (WriteVertexCount(writer, pLow))
        WriteVertexArrays(writer, pLow);
}

// What casts shadows in the game is worked out by the game.
void WriteNoShadows(PayloadWriter& writer) {
    for (int list = 0; list < s_ShadowListCount; ++list)
        writer.Write<uint32_t>(0);
}

void ReadTransforms(PayloadReader& reader, MeshRecord& record) {
    record.skinnedTransforms.resize(reader.ReadCount(s_TransformMinBytes, "skinned transform count"));
    for (SkinnedTransformRecord& transform : record.skinnedTransforms) {
        transform.bone = reader.ReadString("skinned bone");
        transform.index = reader.Read<int32_t>("skinned bone index");
    }
}

void ReadVertexCount(PayloadReader& reader, VertexRecord& level) {
    level.count = reader.Read<uint32_t>("vertex count");
    if (level.count > gz::VertexSet::MaxSize)
        reader.Fail("vertex count", std::to_string(level.count) + " is above 65535");
}

void ReadVertexArrays(PayloadReader& reader, VertexRecord& level) {
    const auto mask = reader.Read<uint32_t>("component mask");
    if ((mask & ~gz::s_AllComponents) != 0)
        reader.Fail("component mask", "has bits of no component");
    level.components = mask & s_StoredComponents;
    for (const gz::VertexComponent component : s_StoredComponentOrder)
        if ((level.components & gz::ComponentBit(component)) != 0)
            level.arrays[component] =
                reader.ReadBytes(size_t{level.count} * gz::s_ComponentSizes[component], "vertex array");
}

void ReadLevels(PayloadReader& reader, MeshRecord& record, MeshForm form) {
    VertexRecord& high = record.levels[Mesh::Poly_High];
    ReadVertexCount(reader, high);
    ReadVertexArrays(reader, high);
    if (form == MeshForm::Generic)
        return;
    if (high.count == 0)
        reader.Fail("vertex count", "is 0");
    VertexRecord& low = record.levels[Mesh::Poly_Low];
    ReadVertexCount(reader, low);
    if (low.count > 0)
        ReadVertexArrays(reader, low);
}

// Side by side, of which the compiler makes one instruction for several.
uint16_t FindHighest(std::span<const uint16_t> indices) {
    std::array<uint16_t, 16> highest = {};
    for (; indices.size() >= highest.size(); indices = indices.subspan(highest.size()))
        for (size_t i = 0; i < highest.size(); ++i)
            highest[i] = indices[i] > highest[i] ? indices[i] : highest[i];
    for (const uint16_t index : indices)
        highest[0] = std::max(highest[0], index);
    return *std::ranges::max_element(highest);
}

void ReadIndices(PayloadReader& reader, uint32_t vertexCount, std::vector<uint16_t>& indices) {
    indices.resize(reader.ReadCount(sizeof(uint16_t), "index count"));
    if (indices.empty())
        return;
    const std::span<const std::byte> bytes = reader.ReadBytes(indices.size() * sizeof(uint16_t), "indices");
    std::memcpy(indices.data(), bytes.data(), bytes.size());
    const uint16_t highest = FindHighest(indices);
    if (highest >= vertexCount)
        reader.Fail("index", std::to_string(highest) + " names none of " + std::to_string(vertexCount) + " vertices");
}

TriangleRecord ReadTriangles(PayloadReader& reader, uint32_t vertexCount, MeshForm form) {
    TriangleRecord triangles;
    ReadIndices(reader, vertexCount, triangles.indices);
    if (triangles.indices.empty() && form == MeshForm::Final)
        return triangles;
    triangles.firstVertex = reader.Read<uint16_t>("first vertex");
    triangles.vertexCount = reader.Read<uint16_t>("range's vertex count");
    // The range may be shorter than the indices reach, but it lies among the vertices. A set without indices has none.
    if (triangles.indices.empty())
        return triangles;
    if (triangles.vertexCount == 0 || uint32_t{triangles.firstVertex} + triangles.vertexCount > vertexCount)
        reader.Fail("vertex range", "is empty or goes beyond the vertices");
    return triangles;
}

void ReadPrimSets(PayloadReader& reader, MeshRecord& record, MeshForm form) {
    record.primSets.resize(reader.ReadCount(s_PrimSetMinBytes, "primitive set count"));
    for (PrimSetRecord& primSet : record.primSets) {
        primSet.shader = reader.ReadString("shader name");
        primSet.levels[Mesh::Poly_High] = ReadTriangles(reader, record.levels[Mesh::Poly_High].count, form);
        if (form == MeshForm::Final)
            primSet.levels[Mesh::Poly_Low] = ReadTriangles(reader, record.levels[Mesh::Poly_Low].count, form);
    }
}

void ReadData(Chunky& chunky, MeshRecord& record, MeshForm form) {
    EnterData(chunky, s_MeshDataChunk, s_MeshDataVersion, s_MeshDataVersion);
    PayloadReader reader(chunky, s_MeshKind, record.name.c_str());
    record.minDetail = reader.Read<int32_t>("least detail");
    record.childSelection = reader.Read<uint8_t>("child selection") != 0;
    record.polyCountHigh = reader.Read<uint32_t>("high polygon count");
    record.polyCountLow = reader.Read<uint32_t>("low polygon count");
    ReadTransforms(reader, record);
    ReadLevels(reader, record, form);
    ReadPrimSets(reader, record, form);
    record.pPayload = reader.TakePayload();
    chunky.EndChunk();
}

} // namespace

void WriteMesh(Chunky& chunky, PayloadWriter& writer, const Mesh& mesh, MeshForm form) {
    chunky.BeginFolder(s_MeshChunk, s_MeshVersion, mesh.GetName());
    writer.Write(mesh.GetMinDetail());
    writer.Write<uint8_t>(mesh.GetChildSelection() ? 1 : 0);
    writer.Write(mesh.GetPolyCount(Mesh::Poly_High));
    writer.Write(mesh.GetPolyCount(Mesh::Poly_Low));
    WriteTransforms(writer, mesh);
    WriteLevels(writer, mesh, form);
    WritePrimSets(writer, mesh, form);
    if (form == MeshForm::Final)
        WriteNoShadows(writer);
    writer.WriteChunk(chunky, s_MeshDataChunk, s_MeshDataVersion);
    WriteBoundVolume(chunky, writer, mesh.GetBoundVolume());
    chunky.EndChunk();
}

MeshRecord ReadMeshRecord(Chunky& chunky, MeshForm form) {
    MeshRecord record;
    record.name = chunky.EnterFolder(s_MeshChunk, s_MeshVersion).name.GetView();
    bool hasData = false;
    for (ChunkInfo child; chunky.NextChunk(child);)
        if (child.kind == ChunkKind_Data && child.id == s_MeshDataChunk && !hasData) {
            ReadData(chunky, record, form);
            hasData = true;
        } else if (child.kind == ChunkKind_Data && child.id == s_BoundVolumeChunk)
            record.boundVolume = ReadBoundVolume(chunky, s_MeshKind, record.name.c_str());
    if (!hasData)
        throw Chunky::Exception(ChunkyError_MissingChunk, "Missing Chunk Type! (data of mesh '" + record.name + "')");
    chunky.EndChunk();
    return record;
}

} // namespace ra
