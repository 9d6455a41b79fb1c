#pragma once

#include <cmath>
#include <cstdint>

#include <squish.h>

#include "Shared/Cross/RenderAnim/Image/Pixelmap.h"

// S3TC blocks back to colours, by a library that has no part in most of the compression, for tests and benchmarks.
class DxtcDecoder {
public:
    // The first level as RGBA32.
    static std::unique_ptr<Image> Decode(const Image& image) {
        std::unique_ptr<Image> pResult = Image::Create(IMAGETYPE_RGBA32, image.GetWidth(), image.GetHeight());
        const std::span<Colour> pixels = ImageCast<Image_RGBA32>(pResult.get())->GetPixels();
        const bool isDxt1 = image.GetType() == IMAGETYPE_DXT1;
        const int format = isDxt1 ? squish::kDxt1 : image.GetType() == IMAGETYPE_DXT3 ? squish::kDxt3 : squish::kDxt5;
        const size_t columns = image.GetWidth() < 4 ? 1 : image.GetWidth() / 4;
        for (size_t y = 0; y < image.GetHeight(); ++y)
            for (size_t x = 0; x < image.GetWidth(); ++x) {
                uint8_t block[16][4]; // red, green, blue, alpha
                squish::Decompress(block[0], &image.GetData()[(y / 4 * columns + x / 4) * (isDxt1 ? 8 : 16)], format);
                const auto& [r, g, b, a] = block[y % 4 * 4 + x % 4];
                pixels[y * image.GetWidth() + x] = {.b = b, .g = g, .r = r, .a = a};
            }
        return pResult;
    }

    // In decibels, over blue, green and red, and alpha if asked for.
    static double GetPsnr(const Image& left, const Image& right, bool withAlpha) {
        const std::span<const uint8_t> a = left.GetData();
        const std::span<const uint8_t> b = right.GetData();
        double sum = 0.0;
        double count = 0.0;
        for (size_t i = 0; i < a.size(); ++i)
            if (withAlpha || i % 4 != 3) {
                sum += (a[i] - b[i]) * (a[i] - b[i]);
                count += 1.0;
            }
        return sum > 0.0 ? 10.0 * std::log10(255.0 * 255.0 * count / sum) : 1000.0;
    }
};
