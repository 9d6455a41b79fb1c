#pragma once

#include <cstddef>
#include <span>

#include "Shared/Cross/Glaze/VertexSet.h"

namespace ra {

// Files hold one array for each component, vertex sets all components of a vertex side by side. The bytes of the arrays
// of these components, which the set has.
size_t GetArraysSize(const gz::VertexSet& vertexSet, std::span<const gz::VertexComponent> components);

// Copies them to arrays that lie one behind another and have that size together.
void GatherComponents(const gz::VertexSet& vertexSet, std::span<const gz::VertexComponent> components,
                      std::span<std::byte> arrays);

} // namespace ra
