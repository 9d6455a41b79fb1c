#pragma once

#include <cstdint>
#include <memory>

#include "Shared/Cross/RenderAnim/Image/Image.h"

// The image in another type, level by level; in its own type, a copy. Name and palette are not pixels: a copy has the
// palette, and no result has a name. These pairs exist:
//     to RGBA32      from every type of single pixels
//     to LUMINANCE8  from PALETTE8, by the brightness of the palette's colours
//     to PALETTE8    from RGBA32 and RGB888, by Palettize, which gives the first level alone
//     to RGBA4444    from RGBA32
//     to RGB888      from RGBA32
// Null with the line "Conversion not handled" for any other pair.
std::unique_ptr<Image> Convert(ImageType targetType, const Image& source);

// The first level in another size; every pixel is the mean, rounded down, of the area that it covers in the source, so
// that half the size is what CreateMipMap gives. RGBA32 alone: null with "Rescale not handled" for other types, and
// null for sides that aren't allowed.
std::unique_ptr<Image> Rescale(const Image& source, uint32_t width, uint32_t height);
