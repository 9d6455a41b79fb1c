// Which corners of a mesh are one vertex.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "Shared_Tools/PVXExport/Mesh/MeshForm.h"
#include "Shared_Tools/PVXExport/Mesh/RadixSort.h"

// What makes a vertex: two corners are one exactly when these are equal. The shader is part of it, so that a vertex is
// never shared across shaders.
struct VertexKey {
    uint16_t vertex = 0; // into the unique positions
    uint16_t shader = 0;
    uint16_t weight = 0;  // into the unique weights, 0 without weights
    uint16_t texture = 0; // into the unique texture coordinates, 0 without
    uint16_t normal = 0;  // into the unique normals, 0 without

    bool operator==(const VertexKey&) const = default;
};

// From the old index of a position or weight to its index in the unique list.
struct VertexRemaps {
    std::span<const uint32_t> vertex;
    std::span<const uint32_t> weight; // empty for a mesh without weights
};

// Numbers the vertices of a mesh in the order of their keys' bytes in little-endian memory, field after field. That
// isn't the order of the fields' values, but it is the order that all files of this kind have. Keeps its working memory
// from mesh to mesh.
class VertexKeys {
public:
    // The form's n and t are taken to be indices into unique lists already, its v goes through the remaps.
    void Build(const MeshForm& form, const VertexRemaps& remaps);

    // The keys of the vertices, in final order; good until the next Build.
    const std::vector<VertexKey>& GetVertices() const { return m_Vertices; }
    // The final vertex of corner 0..2 of a face.
    uint32_t GetVertexIndex(size_t face, size_t corner) const { return m_NewIndex[m_CornerEntry[face * 3 + corner]]; }

private:
    // A distinct key; those of one position hang in a chain, which in all but odd meshes has one or two links. The
    // first one of a position has the position's own number, the others come behind all positions.
    struct Entry {
        uint64_t rest = 0; // all of the key but the position, as an image of its bytes
        int32_t next = s_Unused;
    };
    static constexpr int32_t s_Unused = -2;
    static constexpr int32_t s_End = -1;

    bool GatherByChains(const MeshForm& form, const VertexRemaps& remaps);
    void GatherBySorting(const MeshForm& form, const VertexRemaps& remaps);
    int32_t FindOrAddLink(uint16_t vertex, uint64_t rest);
    void NumberChains(size_t positions);
    void NumberChain(uint16_t vertex);
    void AppendVertex(uint16_t vertex, uint64_t rest);

    std::vector<Entry> m_Entries;
    std::vector<uint32_t> m_CornerEntry; // by corner
    std::vector<uint32_t> m_NewIndex;    // by entry
    std::vector<ShortRadixItem> m_Items;
    std::vector<ShortRadixItem> m_Scratch;
    std::vector<VertexKey> m_Vertices;
};
