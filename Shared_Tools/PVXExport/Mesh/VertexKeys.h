// Which corners of a mesh are one vertex.
#pragma once

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
    const std::vector<VertexKey>& GetVertices() const { return m_Vertices; }
    // The final vertex of corner 0..2 of a face.
    uint32_t GetVertexIndex(size_t face, size_t corner) const { return m_NewIndex[m_CornerEntry[face * 3 + corner]]; }

private:
    // A corner as an entry. The first corner of a position has the position's number as its entry, and so has each one
    // that equals it: in a smooth mesh that is nearly all. The others have entries of their own behind the positions.
    struct Corner {
        uint64_t rest = 0; // all of the key but the position, as an image of its bytes
        uint32_t entry = 0;
        uint16_t vertex = 0;
    };
    struct Position {
        uint64_t rest = 0;   // of its first corner
        uint32_t others = 0; // corners that differ from the first one
        bool used = false;
    };

    void Gather(const MeshForm& form, const VertexRemaps& remaps);
    void BucketOthers();
    uint32_t SortBucket(size_t vertex);
    void PlaceVertices();
    void NumberVertices();
    std::span<Corner> GetBucket(size_t vertex);

    std::vector<Position> m_Positions;
    std::vector<Corner> m_Others;        // in the order of the faces
    std::vector<Corner> m_Buckets;       // the same by position, with the position's first corner
    std::vector<uint32_t> m_BucketEnd;   // by position
    std::vector<uint32_t> m_Start;       // by position: its count of vertices, then the first of them
    std::vector<uint32_t> m_CornerEntry; // by corner
    std::vector<uint32_t> m_NewIndex;    // by entry
    std::vector<VertexKey> m_Vertices;
};
