#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/Glaze/VertexFormat.h"
#include "Shared/Cross/RenderAnim/BoundVolume.h"
#include "Shared/Cross/RenderAnim/Chunks/PayloadWriter.h"
#include "Shared/Cross/RenderAnim/ResourceRefs.h"

namespace ra {

constexpr uint32_t s_MeshChunk = FourCC("MSLC");

// The components that files hold, as a mask and in their order.
constexpr uint32_t s_StoredComponents = 0x27;
constexpr std::array<gz::VertexComponent, 4> s_StoredComponentOrder = {gz::VC_Position, gz::VC_Weights, gz::VC_Normal,
                                                                       gz::VC_TexCoord0};

struct SkinnedTransformRecord {
    std::string bone;
    int32_t index = -1;
};

// The levels of detail of a mesh, by Mesh::Poly.
constexpr size_t s_MeshLevelCount = 2;

// The vertices of one level.
struct VertexRecord {
    uint32_t count = 0;      // at most 65,535
    uint32_t components = 0; // of the stored ones only
    // By component, count times its size; empty for one that the level hasn't. They lie in the mesh's payload,
    // unaligned.
    std::array<std::span<const std::byte>, gz::VC_Count> arrays;
};

// The triangles of one level with one shader.
struct TriangleRecord {
    std::vector<uint16_t> indices; // each below the level's vertex count
    uint16_t firstVertex = 0;
    uint16_t vertexCount = 0;
};

struct PrimSetRecord {
    std::string shader;
    std::array<TriangleRecord, s_MeshLevelCount> levels;
};

// A mesh as it lies in a file.
struct MeshRecord {
    std::string name;
    int32_t minDetail = 0;
    bool childSelection = true;
    uint32_t polyCountHigh = 0;
    uint32_t polyCountLow = 0;
    std::vector<SkinnedTransformRecord> skinnedTransforms;
    std::array<VertexRecord, s_MeshLevelCount> levels;
    std::vector<PrimSetRecord> primSets;
    BoundVolume boundVolume;
    std::unique_ptr<std::byte[]> pPayload;
};

// The levels of data that meshes lie in files at; the intermediate level is as the generic one.
enum class MeshForm {
    Generic, // the high level of detail alone
    Final    // both, and the shadow data, which are written empty and stepped over
};

// A mesh of the final form has vertices in its high level.
void WriteMesh(Chunky& chunky, PayloadWriter& writer, const Mesh& mesh, MeshForm form = MeshForm::Generic);
// The next chunk is a "MSLC" of that form.
MeshRecord ReadMeshRecord(Chunky& chunky, MeshForm form = MeshForm::Generic);

// Enters a new mesh in the inventory, with its vertices in sets of the running device. A shader that the inventory
// doesn't hold is logged, and the default one stands in for it.
MeshRef BuildMesh(MeshRecord record);

} // namespace ra
