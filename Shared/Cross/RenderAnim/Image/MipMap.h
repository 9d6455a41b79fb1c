#pragma once

#include <cstdint>
#include <memory>

#include "Shared/Cross/RenderAnim/Image/Image.h"

// Reductions to half the size, from the first level. A pixel is the mean of four, each channel rounded down and without
// gamma; with a palette, the entry nearest to that mean, the lowest of equals, and the palette stays the same.
// RGBA32 and PALETTE8 with even sides alone; null or false otherwise, with a log line.
std::unique_ptr<Image> CreateMipMap(const Image& source);
// Into the image itself, which has one level afterwards. RGBA32 alone.
bool CreateMipMapInPlace(Image& image);
// Fills the levels below the first, each from the one above it, `mipCount` levels in all or as many as there are until
// a side is odd. The number of levels; 1 for types that can't be reduced, with a log line.
uint32_t CreateMipLevels(Image& image, uint32_t mipCount);
