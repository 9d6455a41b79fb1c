// The triangle lists of a mesh, one for each of its shaders.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "Shared_Tools/PVXExport/Mesh/MeshForm.h"

// Keeps its working memory from mesh to mesh.
class PrimSetIndices {
public:
    // Gathers the faces' v by their iShader, in face order. Every iShader is below shaderCount.
    void Build(std::span<const MeshFace> faces, size_t shaderCount);

    // The vertex indices of a shader's triangles, empty for a shader without any. Good until the next Build.
    std::span<const uint16_t> GetIndices(size_t shader) const;
    // The bounds that the set's vertex range is made from. An index that lowers the lowest isn't held against the
    // highest as well: a list that only ever descends leaves the highest at 0, and all readers of the format live with
    // the short range that comes of it.
    uint16_t GetLowest(size_t shader) const { return m_Lists[shader].lowest; }
    uint16_t GetHighest(size_t shader) const { return m_Lists[shader].highest; }

private:
    struct List {
        size_t end = 0; // into m_Indices; starts where the one before ends
        uint16_t lowest = 0xffff;
        uint16_t highest = 0;
    };

    std::vector<List> m_Lists;
    std::vector<uint16_t> m_Indices;
};
