// The last step of a mesh: from the working form to what the renderer holds.
#pragma once

#include <cstdint>
#include <vector>

#include "Shared_Tools/PVXExport/Mesh/MeshForm.h"
#include "Shared_Tools/PVXExport/Mesh/PrimSetIndices.h"
#include "Shared_Tools/PVXExport/Mesh/Uniquer.h"
#include "Shared_Tools/PVXExport/Mesh/VertexKeys.h"

namespace gz {
class VertexSet;
}
namespace ra {
class Mesh;
}

// Keeps its working memory from mesh to mesh.
class VertexLayout {
public:
    // Makes one vertex of each combination of position, weights, normal, texture coordinates and shader that a corner
    // has, and gives the mesh its vertex set. The faces' v, n and t are the vertices' numbers then. False when there
    // are too many vertices, which is reported, or none.
    bool BuildVertexSet(const char* pNodeName, MeshForm& form, ra::Mesh& mesh);

    // A triangle list for each of the mesh's shaders that has faces. False when the device makes none.
    bool BuildPrimSets(const MeshForm& form, ra::Mesh& mesh);

private:
    bool WriteVertices(const MeshForm& form, gz::VertexSet& vertexSet) const;

    Uniquer m_Uniquer;
    std::vector<uint32_t> m_RemapVertex;
    std::vector<uint32_t> m_RemapWeight;
    VertexKeys m_Keys;
    PrimSetIndices m_Indices;
};
