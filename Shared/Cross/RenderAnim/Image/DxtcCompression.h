#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "Shared/Cross/RenderAnim/Image/Image.h"
#include "Shared/Cross/RenderAnim/Image/PixelFormats.h"

// A block is a square of pixels.
inline constexpr uint32_t s_DxtcBlockSide = 4;

enum class DxtcQuality {
    Fast, // what the tools use: a megapixel in some hundredths of a second
    Best, // a search for the best fit, some fifty times as long for a few tenths of a decibel
};

// Compresses pixels, row by row, into blocks: DXT1, DXT3 or DXT5. A DXT1 block keeps alpha as one bit, half being
// opaque. `blocks` has the size that Image::GetSizeFor tells. False, with a log line, for another format, sides that
// the format doesn't allow and sizes that don't fit, and without libsquish for DXT1 with alpha and the best quality.
bool DXTC_DoCompression(std::span<const Colour> pixels, uint32_t width, uint32_t height, ImageType format,
                        std::span<uint8_t> blocks, DxtcQuality quality = DxtcQuality::Fast);

// All levels of an RGBA32 image. Null where the above is false.
std::unique_ptr<Image> CompressImage(const Image& source, ImageType format, DxtcQuality quality = DxtcQuality::Fast);
