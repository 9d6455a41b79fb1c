#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "Shared/Cross/Glaze/VertexFormat.h"
#include "Shared/Cross/RenderAnim/Mesh.h"
#include "Tools/pvxdump/ModelContent.h"

// What people call the numbers of a model file.

constexpr std::array<const char*, gz::VC_Count> s_ComponentNames = {
    "position", "weights", "normal", "colour0", "colour1", "texcoord", "texcoord1", "texcoord2", "texcoord3"};

constexpr std::array<const char*, ChannelCount> s_ChannelNames = {"diffuse",           "specular", "reflection",
                                                                  "self-illumination", "opacity",  "specular level"};

inline std::string GetBoneName(const ModelContent& content, int32_t index) {
    const auto place = static_cast<size_t>(index);
    return index >= 0 && place < content.bones.size() ? content.bones[place].name : std::string();
}

inline uint64_t CountTriangles(const MeshContent& mesh, uint32_t level) {
    uint64_t count = 0;
    for (const auto& indexCounts : mesh.indexCounts)
        count += indexCounts[level] / 3;
    return count;
}

inline const ra::VertexRecord& GetHighLevel(const MeshContent& mesh) { return mesh.pMesh->levels[ra::Mesh::Poly_High]; }
inline const ra::VertexRecord& GetLowLevel(const MeshContent& mesh) { return mesh.pMesh->levels[ra::Mesh::Poly_Low]; }
