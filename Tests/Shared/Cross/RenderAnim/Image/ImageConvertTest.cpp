#include "Shared/Cross/RenderAnim/Image/ImageConvert.h"

#include <array>
#include <cstring>
#include <map>
#include <set>

#include "Tests/Shared/Cross/RenderAnim/Image/ImageTesting.h"

namespace {

constexpr ImageType s_Types[] = {IMAGETYPE_RGBA32,   IMAGETYPE_LUMINANCE8, IMAGETYPE_PALETTE8, IMAGETYPE_RGB565,
                                 IMAGETYPE_RGBA5551, IMAGETYPE_RGBA4444,   IMAGETYPE_RGB888,   IMAGETYPE_DXT1,
                                 IMAGETYPE_DXT3,     IMAGETYPE_DXT5};

// How many bits blue, green, red and alpha have in a pixel, from the lowest on.
const std::map<ImageType, std::array<uint32_t, 4>> s_Bits = {{IMAGETYPE_RGBA32, {8, 8, 8, 8}},
                                                             {IMAGETYPE_RGB565, {5, 6, 5, 0}},
                                                             {IMAGETYPE_RGBA5551, {5, 5, 5, 1}},
                                                             {IMAGETYPE_RGBA4444, {4, 4, 4, 4}},
                                                             {IMAGETYPE_RGB888, {8, 8, 8, 0}}};

// The lowest bits as a channel of 8: over and over from the top; without any, all set.
uint8_t Repeat(uint32_t channel, uint32_t bits) {
    uint32_t repeated = bits ? 0 : 255;
    for (uint32_t bit = 0; bit < 8 && bits; ++bit)
        repeated = repeated << 1 | (channel >> (bits - 1 - bit % bits) & 1);
    return static_cast<uint8_t>(repeated);
}

// The colour of a pixel, worked out from the bytes.
Colour ReferenceColour(const Image& image, size_t i, uint32_t level) {
    const std::span<const uint8_t> data = image.GetData(level);
    if (image.GetType() == IMAGETYPE_LUMINANCE8)
        return {data[i], data[i], data[i], 255};
    if (image.GetType() == IMAGETYPE_PALETTE8)
        return ImageCast<Image_Palette>(&image)->GetPalette()[data[i]];
    const size_t size = image.GetBitsPerPixel() / 8;
    uint32_t value = 0;
    std::memcpy(&value, &data[i * size], size);
    Colour colour;
    for (size_t k = 0; k < 4; ++k) {
        const uint32_t bits = s_Bits.at(image.GetType())[k];
        colour.*s_Channels[k] = Repeat(value, bits);
        value >>= bits;
    }
    return colour;
}

} // namespace

TEST(ImageConvert, EveryTypeOfPixelsHasColours) {
    for (const ImageType type : s_Types) {
        if (Image::IsTypeCompressed(type))
            continue;
        const std::unique_ptr<Image> pSource = MakeRandomImage(type, 37, 22, 3);
        const std::unique_ptr<Image> pResult = Convert(IMAGETYPE_RGBA32, *pSource);
        ASSERT_EQ(pResult->GetMipCount(), 3u);
        for (uint32_t level = 0; level < 3; ++level)
            for (size_t i = 0; i < size_t{pResult->GetWidth(level)} * pResult->GetHeight(level); ++i)
                ASSERT_EQ(ImageCast<Image_RGBA32>(pResult.get())->GetPixels(level)[i],
                          ReferenceColour(*pSource, i, level))
                    << type << " at " << i;
    }
}

TEST(ImageConvert, ColoursShrinkToTheirHighBits) {
    const std::unique_ptr<Image> pSource = MakeRandomImage(IMAGETYPE_RGBA32, 19, 23);
    const std::unique_ptr<Image> p4444 = Convert(IMAGETYPE_RGBA4444, *pSource);
    const std::unique_ptr<Image> p888 = Convert(IMAGETYPE_RGB888, *pSource);
    for (size_t i = 0; i < size_t{19} * 23; ++i) {
        const Colour colour = ReferenceColour(*pSource, i, 0);
        const int value = colour.b / 16 + colour.g / 16 * 16 + colour.r / 16 * 256 + colour.a / 16 * 4096;
        ASSERT_EQ(ImageCast<Image_RGBA4444>(p4444.get())->GetPixels()[i].value, value);
        ASSERT_EQ(ImageCast<Image_RGB888>(p888.get())->GetPixels()[i],
                  (Colour_RGB888{.b = colour.b, .g = colour.g, .r = colour.r}));
    }
}

TEST(ImageConvert, LuminanceIsThatOfThePalette) {
    const std::unique_ptr<Image> pSource = MakeRandomImage(IMAGETYPE_PALETTE8, 16, 16);
    Image_Palette& paletted = *ImageCast<Image_Palette>(pSource.get());
    for (uint8_t i = 0; i < 128; ++i) // half of it grey
        paletted.GetPalette()[i] = {i, i, i, 0};
    const std::unique_ptr<Image> pResult = Convert(IMAGETYPE_LUMINANCE8, *pSource);
    for (size_t i = 0; i < 256; ++i) {
        const uint8_t index = paletted.GetPixels()[i];
        const Colour colour = paletted.GetPalette()[index];
        const double light = 0.299 * colour.r + 0.587 * colour.g + 0.114 * colour.b;
        EXPECT_NEAR(pResult->GetData()[i], light, index < 128 ? 0.001 : 1.0);
    }
}

TEST(ImageConvert, NoOtherPairExists) {
    const std::set<std::pair<ImageType, ImageType>> pairs = {
        {IMAGETYPE_LUMINANCE8, IMAGETYPE_RGBA32},   {IMAGETYPE_PALETTE8, IMAGETYPE_RGBA32},
        {IMAGETYPE_RGB565, IMAGETYPE_RGBA32},       {IMAGETYPE_RGBA5551, IMAGETYPE_RGBA32},
        {IMAGETYPE_RGBA4444, IMAGETYPE_RGBA32},     {IMAGETYPE_RGB888, IMAGETYPE_RGBA32},
        {IMAGETYPE_PALETTE8, IMAGETYPE_LUMINANCE8}, {IMAGETYPE_RGBA32, IMAGETYPE_PALETTE8},
        {IMAGETYPE_RGB888, IMAGETYPE_PALETTE8},     {IMAGETYPE_RGBA32, IMAGETYPE_RGBA4444},
        {IMAGETYPE_RGBA32, IMAGETYPE_RGB888},
    };
    for (const ImageType from : s_Types)
        for (const ImageType to : s_Types) {
            ReportCapture capture;
            const std::unique_ptr<Image> pSource = MakeRandomImage(from, 8, 4, 2);
            const std::unique_ptr<Image> pResult = Convert(to, *pSource);
            if (from == to) {
                ASSERT_NE(pResult, nullptr);
                EXPECT_TRUE(HaveSameData(*pResult, *pSource)) << from;
                continue;
            }
            EXPECT_EQ(pResult != nullptr, pairs.contains({from, to})) << from << " to " << to;
            EXPECT_EQ(ReportCapture::HasWarning("Conversion not handled"), !pResult) << from << " to " << to;
        }
}

// Against the mean over an enlargement in which pixels of both sizes are whole numbers of cells.
TEST(ImageRescale, APixelIsTheMeanOfItsArea) {
    const uint32_t sizes[][4] = {{5, 7, 3, 2}, {4, 6, 4, 6}, {3, 2, 7, 5}, {8, 8, 1, 1}, {1, 1, 3, 2}, {6, 5, 2, 9}};
    for (const auto& [fromWidth, fromHeight, width, height] : sizes) {
        const std::unique_ptr<Image> pSource = MakeRandomImage(IMAGETYPE_RGBA32, fromWidth, fromHeight);
        const std::unique_ptr<Image> pResult = Rescale(*pSource, width, height);
        for (uint32_t y = 0; y < height; ++y)
            for (uint32_t x = 0; x < width; ++x) {
                uint32_t sums[4] = {};
                for (uint32_t v = 0; v < fromHeight; ++v)
                    for (uint32_t u = 0; u < fromWidth; ++u)
                        for (size_t k = 0; k < 4; ++k)
                            sums[k] += GetPixel(*pSource, (x * fromWidth + u) / width, (y * fromHeight + v) / height).*
                                       s_Channels[k];
                for (size_t k = 0; k < 4; ++k)
                    EXPECT_EQ(GetPixel(*pResult, x, y).*s_Channels[k], sums[k] / (fromWidth * fromHeight))
                        << x << "," << y << " of " << width << "x" << height;
            }
    }
}

TEST(ImageRescale, TakesColoursAlone) {
    ReportCapture capture;
    EXPECT_EQ(Rescale(*Image::Create(IMAGETYPE_RGB888, 4, 4), 2, 2), nullptr);
    EXPECT_TRUE(ReportCapture::HasWarning("Rescale not handled"));
    EXPECT_EQ(Rescale(*MakeRandomImage(IMAGETYPE_RGBA32, 4, 4), 0, 2), nullptr);
}
