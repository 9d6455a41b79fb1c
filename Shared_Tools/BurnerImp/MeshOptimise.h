#pragma once

#include <cstdint>

namespace ra {
class Mesh;
}

// What the burn does to the meshes of a generic model.
namespace MeshOptimise {

// Gives the mesh a low level of detail with about that share of the high level's triangles, 0 to 1, and never more.
// Each shader's triangles are reduced by themselves; vertices that stay are those of the high level, with their weights
// and texture coordinates, so that seams stay closed. A mesh whose positions are no numbers gets none.
void AddLowLevel(ra::Mesh& mesh, float share);

// Orders triangles and vertices of a level for the hardware's caches. What is drawn stays the same: triangles that
// blend keep their order.
void OrderForCaches(ra::Mesh& mesh, uint32_t level);

} // namespace MeshOptimise
