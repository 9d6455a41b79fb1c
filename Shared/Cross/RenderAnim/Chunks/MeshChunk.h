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

struct PrimSetRecord {
    std::string shader;
    std::vector<uint16_t> indices; // each below the mesh's vertex count
    uint16_t firstVertex = 0;
    uint16_t vertexCount = 0;
};

// A mesh as it lies in a file, with one level of detail.
struct MeshRecord {
    std::string name;
    int32_t minDetail = 0;
    bool childSelection = true;
    uint32_t polyCountHigh = 0;
    uint32_t polyCountLow = 0;
    std::vector<SkinnedTransformRecord> skinnedTransforms;
    uint32_t vertexCount = 0; // at most 65,535
    uint32_t components = 0;  // of the stored ones only
    // By component, vertexCount times its size; empty for one that the mesh hasn't. They lie in pPayload, unaligned.
    std::array<std::span<const std::byte>, gz::VC_Count> arrays;
    std::vector<PrimSetRecord> primSets;
    BoundVolume boundVolume;
    std::unique_ptr<std::byte[]> pPayload;
};

void WriteMesh(Chunky& chunky, PayloadWriter& writer, const Mesh& mesh);
// The next chunk is a "MSLC".
MeshRecord ReadMeshRecord(Chunky& chunky);

// Enters a new mesh in the inventory, with its vertices in sets of the running device. A shader that the inventory
// doesn't hold is logged, and the default one stands in for it.
MeshRef BuildMesh(const MeshRecord& record);

} // namespace ra
