#pragma once

#include "Host/Gltf/Accessor.h"

#include <optional>
#include <vector>

namespace gltf {

enum class PrimitiveMode : uint8_t { Points, Lines, LineLoop, LineStrip, Triangles, TriangleStrip, TriangleFan };

inline bool HasTriangles(PrimitiveMode mode) { return mode >= PrimitiveMode::Triangles; }

// How many triangles `count` corners make.
uint32_t CountTriangles(PrimitiveMode mode, uint32_t count);

// Appends the vertices of the triangles `first` to `first + count - 1` to `corners`, three each, in the order that
// the mode gives them. Without indices (an empty view) the vertices are taken as they come.
void AppendTriangles(PrimitiveMode mode, const AccessorView& indices, uint32_t first, uint32_t count,
                     std::vector<uint32_t>& corners);

// The highest index; nothing when there is none.
std::optional<uint32_t> FindHighestIndex(const AccessorView& indices);

} // namespace gltf
