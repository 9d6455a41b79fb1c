#pragma once

#include <cstddef>

namespace gz {

// Copies `count` pieces of that size, 4, 8, 12 or 16 bytes, between places that lie the strides apart. Another size is
// a mistake, and nothing is copied.
void CopyStrided(size_t size, std::byte* pTarget, size_t targetStride, const std::byte* pSource, size_t sourceStride,
                 size_t count);

} // namespace gz
