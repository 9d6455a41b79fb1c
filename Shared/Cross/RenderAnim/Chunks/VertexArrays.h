#pragma once

#include <cstddef>
#include <span>

#include "Shared/Cross/Glaze/VertexSet.h"

namespace ra {

// Files hold one array for each component, vertex sets all components of a vertex side by side. This copies a component
// that the set has, vertex by vertex, to an array of exactly its size.
void GatherComponent(const gz::VertexSet& vertexSet, gz::VertexComponent component, std::span<std::byte> array);

} // namespace ra
