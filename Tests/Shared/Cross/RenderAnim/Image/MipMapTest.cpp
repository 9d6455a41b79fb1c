#include "Shared/Cross/RenderAnim/Image/MipMap.h"

#include "Shared/Cross/RenderAnim/Image/ImageConvert.h"
#include "Tests/Shared/Cross/RenderAnim/Image/ImageTesting.h"

namespace {

template <class GetColourAt>
Colour ReferenceMean(uint32_t x, uint32_t y, GetColourAt&& get) {
    Colour mean;
    for (const auto channel : s_Channels) {
        const int sum = get(x * 2, y * 2).*channel + get(x * 2 + 1, y * 2).*channel + get(x * 2, y * 2 + 1).*channel +
                        get(x * 2 + 1, y * 2 + 1).*channel;
        mean.*channel = static_cast<uint8_t>(sum >> 2);
    }
    return mean;
}

uint8_t ReferenceNearest(const ImagePalette& palette, Colour colour) {
    int least = 1000000;
    size_t nearest = 0;
    for (size_t i = 0; i < palette.size(); ++i) {
        int distance = 0;
        for (const auto channel : s_Channels)
            distance += (palette[i].*channel - colour.*channel) * (palette[i].*channel - colour.*channel);
        if (distance < least) {
            least = distance;
            nearest = i;
        }
    }
    return static_cast<uint8_t>(nearest);
}

} // namespace

TEST(MipMap, ColoursAreTheMeanOfFour) {
    const std::unique_ptr<Image> pSource = MakeRandomImage(IMAGETYPE_RGBA32, 26, 14);
    const std::unique_ptr<Image> pResult = CreateMipMap(*pSource);
    for (uint32_t y = 0; y < 7; ++y)
        for (uint32_t x = 0; x < 13; ++x)
            EXPECT_EQ(GetPixel(*pResult, x, y),
                      ReferenceMean(x, y, [&](uint32_t u, uint32_t v) { return GetPixel(*pSource, u, v); }));
    EXPECT_TRUE(HaveSameData(*pResult, *Rescale(*pSource, 13, 7)));
    EXPECT_TRUE(CreateMipMapInPlace(*pSource));
    EXPECT_TRUE(HaveSameData(*pResult, *pSource));
}

TEST(MipMap, IndicesAreTheEntryNearestToTheMean) {
    const std::unique_ptr<Image> pSource = MakeRandomImage(IMAGETYPE_PALETTE8, 64, 30);
    Image_Palette& paletted = *ImageCast<Image_Palette>(pSource.get());
    for (size_t i = 128; i < 256; ++i) // ties
        paletted.GetPalette()[i] = paletted.GetPalette()[i - 128];
    const std::unique_ptr<Image> pResult = CreateMipMap(*pSource);
    EXPECT_EQ(ImageCast<Image_Palette>(pResult.get())->GetPalette(), paletted.GetPalette());
    const auto look = [&](uint32_t u, uint32_t v) { return paletted.GetPalette()[paletted.GetPixels()[v * 64 + u]]; };
    for (uint32_t y = 0; y < 15; ++y)
        for (uint32_t x = 0; x < 32; ++x)
            ASSERT_EQ(pResult->GetData()[y * 32 + x],
                      ReferenceNearest(paletted.GetPalette(), ReferenceMean(x, y, look)));
}

TEST(MipMap, LevelsGoOnToTheFirstOddSide) {
    const std::unique_ptr<Image> pImage = MakeRandomImage(IMAGETYPE_RGBA32, 24, 8);
    EXPECT_EQ(CreateMipLevels(*pImage, 13), 4u); // 3 by 1
    std::unique_ptr<Image> pLevel = CreateMipMap(*CreateMipMap(*MakeRandomImage(IMAGETYPE_RGBA32, 24, 8)));
    EXPECT_TRUE(std::ranges::equal(pLevel->GetData(), pImage->GetData(2)));
    EXPECT_EQ(CreateMipLevels(*pImage, 2), 2u);
    EXPECT_EQ(pImage->GetMipCount(), 2u);
}

TEST(MipMap, SaysWhatItDoesNotTake) {
    const std::unique_ptr<Image> pOdd = MakeRandomImage(IMAGETYPE_RGBA32, 6, 5);
    const std::unique_ptr<Image> pOther = MakeRandomImage(IMAGETYPE_RGB888, 6, 6);
    const std::unique_ptr<Image> pPaletted = MakeRandomImage(IMAGETYPE_PALETTE8, 6, 6);
    ReportCapture capture;
    EXPECT_EQ(CreateMipMap(*pOdd), nullptr);
    EXPECT_FALSE(CreateMipMapInPlace(*pOdd));
    EXPECT_EQ(ReportCapture::CountWarnings("CreateMipMap only handles images with even width & height"), 2u);
    EXPECT_EQ(CreateMipMap(*pOther), nullptr);
    EXPECT_EQ(CreateMipLevels(*pOther, 2), 1u);
    EXPECT_EQ(
        ReportCapture::CountWarnings("CreateMipMap: Unsupported image type (only supports 32bit or paletted textures)"),
        2u);
    EXPECT_FALSE(CreateMipMapInPlace(*pPaletted));
    EXPECT_TRUE(ReportCapture::HasWarning("CreateMipMap only handles IMAGETYPE_RGBA32"));
}
