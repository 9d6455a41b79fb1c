#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "Shared/Cross/RenderAnim/Image/Image.h"
#include "Shared/Cross/RenderAnim/Image/PixelFormats.h"

// The part of all images of single pixels that doesn't depend on what a pixel is.
class Image_PixelmapBase : public Image {
public:
    bool Blt(const Image& source, const ImageRect& from, uint32_t x, uint32_t y) override;

protected:
    Image_PixelmapBase(ImageType type, uint32_t pixelSize) : Image(type, pixelSize * 8) {}
    Grid GetGrid(uint32_t width, uint32_t height) const override;
};

template <class PixelType, ImageType ImageTypeNumber>
class Image_Pixelmap : public Image_PixelmapBase {
public:
    using Pixel = PixelType;
    static constexpr ImageType Type = ImageTypeNumber;

    Image_Pixelmap() : Image_PixelmapBase(Type, sizeof(Pixel)) {}

    // Row by row. Good until the levels change.
    std::span<Pixel> GetPixels(uint32_t level = 0) {
        const std::span<uint8_t> data = GetData(level);
        return {reinterpret_cast<Pixel*>(data.data()), data.size() / sizeof(Pixel)};
    }
    std::span<const Pixel> GetPixels(uint32_t level = 0) const {
        const std::span<const uint8_t> data = GetData(level);
        return {reinterpret_cast<const Pixel*>(data.data()), data.size() / sizeof(Pixel)};
    }
};

using Image_RGBA32 = Image_Pixelmap<Colour, IMAGETYPE_RGBA32>;
using Image_Luminance8 = Image_Pixelmap<uint8_t, IMAGETYPE_LUMINANCE8>;
using Image_RGB565 = Image_Pixelmap<Colour_RGBA16<5, 6, 5, 0>, IMAGETYPE_RGB565>;
using Image_RGBA5551 = Image_Pixelmap<Colour_RGBA16<5, 5, 5, 1>, IMAGETYPE_RGBA5551>;
using Image_RGBA4444 = Image_Pixelmap<Colour_RGBA16<4, 4, 4, 4>, IMAGETYPE_RGBA4444>;
using Image_RGB888 = Image_Pixelmap<Colour_RGB888, IMAGETYPE_RGB888>;
