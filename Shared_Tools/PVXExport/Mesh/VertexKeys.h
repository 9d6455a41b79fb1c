// Which corners of a mesh are one vertex.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "Shared_Tools/PVXExport/Mesh/MeshForm.h"

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
    std::span<const VertexKey> GetVertices() const { return std::span(m_Vertices).first(m_Count); }
    // The final vertex of corner 0..2 of a face.
    uint32_t GetVertexIndex(size_t face, size_t corner) const { return m_NewIndex[m_CornerEntry[face * 3 + corner]]; }

private:
    // The first corner of a position stands with the position and has its number as an entry; so has each one that
    // equals it, which in a smooth mesh is nearly all. The others have entries of their own behind the positions.
    struct Position {
        uint64_t rest = 0;      // all of the first corner's key but the position, as an image of its bytes
        uint32_t others = 0;    // corners that differ from the first one
        uint32_t bucketEnd = 0; // into m_Buckets, where it has others
        bool used = false;
    };
    struct Corner {
        uint64_t rest = 0;
        uint32_t entry = 0;
        uint16_t vertex = 0;
    };

    void Gather(const MeshForm& form, const VertexRemaps& remaps);
    void BucketOthers();
    void NumberVertices();
    void NumberCorners(size_t vertex, std::span<Corner> bucket);
    std::span<const uint32_t> SortBucket(std::span<const Corner> bucket);
    uint32_t AddVertex(size_t vertex, uint64_t rest);

    std::vector<Position> m_Positions;
    std::vector<Corner> m_Others;        // in the order of the faces
    std::vector<Corner> m_Buckets;       // the same by position in final order, with the position's first corner
    std::vector<uint32_t> m_Order;       // of one bucket
    std::vector<uint32_t> m_CornerEntry; // by corner
    std::vector<uint32_t> m_NewIndex;    // by entry
    std::vector<VertexKey> m_Vertices;   // the first m_Count of them
    uint32_t m_Count = 0;
};
