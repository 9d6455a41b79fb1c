#pragma once

#include <cmath>
#include <cstdint>

#include "Shared/Cross/RenderAnim/Image/Pixelmap.h"

// S3TC blocks back to colours, written from the format and not from any compressor, for tests and benchmarks.
class DxtcDecoder {
public:
    // The first level as RGBA32.
    static std::unique_ptr<Image> Decode(const Image& image) {
        std::unique_ptr<Image> pResult = Image::Create(IMAGETYPE_RGBA32, image.GetWidth(), image.GetHeight());
        const std::span<Colour> pixels = ImageCast<Image_RGBA32>(pResult.get())->GetPixels();
        const uint32_t blockSize = image.GetType() == IMAGETYPE_DXT1 ? 8 : 16;
        const uint32_t columns = image.GetWidth() < 4 ? 1 : image.GetWidth() / 4;
        for (uint32_t y = 0; y < image.GetHeight(); ++y)
            for (uint32_t x = 0; x < image.GetWidth(); ++x) {
                const uint8_t* pBlock = &image.GetData()[(y / 4 * columns + x / 4) * blockSize];
                pixels[size_t{y} * image.GetWidth() + x] = DecodePixel(image.GetType(), pBlock, y % 4 * 4 + x % 4);
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

private:
    static Colour Grow565(uint32_t value) {
        const auto grow = [](uint32_t channel, uint32_t most) {
            return static_cast<uint8_t>(std::lround(channel * 255.0 / most));
        };
        return {.b = grow(value & 31, 31), .g = grow(value >> 5 & 63, 63), .r = grow(value >> 11, 31), .a = 255};
    }
    static Colour Mix(Colour a, Colour b, int weightA, int weightB) {
        const auto mix = [&](int x, int y) {
            return static_cast<uint8_t>((x * weightA + y * weightB) / (weightA + weightB));
        };
        return {.b = mix(a.b, b.b), .g = mix(a.g, b.g), .r = mix(a.r, b.r), .a = 255};
    }
    static Colour DecodeColour(const uint8_t* pBlock, uint32_t pixel, bool mayHaveHoles) {
        const uint32_t first = static_cast<uint32_t>(pBlock[0] | pBlock[1] << 8);
        const uint32_t second = static_cast<uint32_t>(pBlock[2] | pBlock[3] << 8);
        const int index = pBlock[4 + pixel / 4] >> pixel % 4 * 2 & 3;
        const Colour a = Grow565(first);
        const Colour b = Grow565(second);
        if (index < 2)
            return index == 0 ? a : b;
        if (mayHaveHoles && first <= second)
            return index == 2 ? Mix(a, b, 1, 1) : Colour{};
        return index == 2 ? Mix(a, b, 2, 1) : Mix(a, b, 1, 2);
    }
    static uint8_t DecodeSmoothAlpha(const uint8_t* pBlock, uint32_t pixel) {
        uint64_t bits = 0;
        for (int i = 7; i >= 2; --i)
            bits = bits << 8 | pBlock[i];
        const int index = static_cast<int>(bits >> pixel * 3 & 7);
        const int a = pBlock[0];
        const int b = pBlock[1];
        if (index < 2)
            return static_cast<uint8_t>(index == 0 ? a : b);
        if (a > b)
            return static_cast<uint8_t>((a * (8 - index) + b * (index - 1)) / 7);
        if (index > 5)
            return index == 6 ? 0 : 255;
        return static_cast<uint8_t>((a * (6 - index) + b * (index - 1)) / 5);
    }
    static Colour DecodePixel(ImageType type, const uint8_t* pBlock, uint32_t pixel) {
        if (type == IMAGETYPE_DXT1)
            return DecodeColour(pBlock, pixel, true);
        Colour colour = DecodeColour(pBlock + 8, pixel, false);
        colour.a = type == IMAGETYPE_DXT5 ? DecodeSmoothAlpha(pBlock, pixel)
                                          : static_cast<uint8_t>((pBlock[pixel / 2] >> pixel % 2 * 4 & 15) * 17);
        return colour;
    }
};
