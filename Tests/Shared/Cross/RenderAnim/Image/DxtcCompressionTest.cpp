#include "Shared/Cross/RenderAnim/Image/DxtcCompression.h"

#include "Shared/Cross/RenderAnim/Image/MipMap.h"
#include "Tests/Shared/Cross/RenderAnim/Image/DxtcDecoder.h"
#include "Tests/Shared/Cross/RenderAnim/Image/ImageTesting.h"

namespace {

constexpr ImageType s_Formats[] = {IMAGETYPE_DXT1, IMAGETYPE_DXT3, IMAGETYPE_DXT5};

// Smooth colours, and alpha from clear to opaque.
std::unique_ptr<Image> MakeSlope(uint32_t width, uint32_t height, bool withAlpha) {
    std::unique_ptr<Image> pImage = Image::Create(IMAGETYPE_RGBA32, width, height);
    size_t i = 0;
    for (Colour& colour : ImageCast<Image_RGBA32>(pImage.get())->GetPixels()) {
        const size_t x = i % width * 255 / width;
        const size_t y = i++ / width * 255 / height;
        colour = {static_cast<uint8_t>(x), static_cast<uint8_t>(y), static_cast<uint8_t>((x + y) / 2),
                  withAlpha ? static_cast<uint8_t>(255 - x) : uint8_t{255}};
    }
    return pImage;
}

} // namespace

TEST(DxtcCompression, ComesBackAsItWas) {
    const std::unique_ptr<Image> pNoise = MakeRandomImage(IMAGETYPE_RGBA32, 64, 64);
    for (Colour& colour : ImageCast<Image_RGBA32>(pNoise.get())->GetPixels())
        colour.a = 255;
    for (const ImageType format : s_Formats) {
        const auto measure = [&](const Image& source, DxtcQuality quality) {
            const std::unique_ptr<Image> pResult = CompressImage(source, format, quality);
            EXPECT_EQ(pResult->GetType(), format);
            return DxtcDecoder::GetPsnr(source, *DxtcDecoder::Decode(*pResult), true);
        };
        const std::unique_ptr<Image> pSlope = MakeSlope(128, 64, format != IMAGETYPE_DXT1);
        EXPECT_GT(measure(*pSlope, DxtcQuality::Fast), 34.0) << format;
        EXPECT_GT(measure(*pSlope, DxtcQuality::Best), 34.0) << format;
        EXPECT_GE(measure(*pNoise, DxtcQuality::Best), measure(*pNoise, DxtcQuality::Fast)) << format;
    }
}

TEST(DxtcCompression, OneBitOfAlphaSplitsAtTheMiddle) {
    const std::unique_ptr<Image> pSource = MakeSlope(64, 64, true);
    const std::unique_ptr<Image> pResult = DxtcDecoder::Decode(*CompressImage(*pSource, IMAGETYPE_DXT1));
    for (uint32_t y = 0; y < 64; ++y)
        for (uint32_t x = 0; x < 64; ++x)
            EXPECT_EQ(GetPixel(*pResult, x, y).a, GetPixel(*pSource, x, y).a < 128 ? 0 : 255) << x << "," << y;
}

TEST(DxtcCompression, FourBitsOfAlphaAreTheNearest) {
    const std::unique_ptr<Image> pSource = Image::Create(IMAGETYPE_RGBA32, 16, 16);
    int alpha = 0;
    for (Colour& colour : ImageCast<Image_RGBA32>(pSource.get())->GetPixels())
        colour = {.b = 0, .g = 0, .r = 0, .a = static_cast<uint8_t>(alpha++)};
    for (const DxtcQuality quality : {DxtcQuality::Fast, DxtcQuality::Best}) {
        const std::unique_ptr<Image> pResult = DxtcDecoder::Decode(*CompressImage(*pSource, IMAGETYPE_DXT3, quality));
        for (uint32_t i = 0; i < 256; ++i)
            ASSERT_NEAR(GetPixel(*pResult, i % 16, i / 16).a, static_cast<int>(i), 8) << "steps are 17 apart";
    }
}

TEST(DxtcCompression, SmallLevelsTakeAWholeBlock) {
    const std::unique_ptr<Image> pSource = MakeSlope(16, 8, true);
    for (Colour& colour : ImageCast<Image_RGBA32>(pSource.get())->GetPixels())
        colour = {.b = 8, .g = 16, .r = 248, .a = 255};
    CreateMipLevels(*pSource, 4);
    for (const ImageType format : s_Formats) {
        const std::unique_ptr<Image> pResult = CompressImage(*pSource, format);
        ASSERT_EQ(pResult->GetMipCount(), 4u);
        while (pResult->GetMipCount() > 1)
            pResult->DropFirstLevel(); // 2 by 1
        const Colour colour = GetPixel(*DxtcDecoder::Decode(*pResult), 1, 0);
        EXPECT_NEAR(colour.b, 8, 2) << format;
        EXPECT_NEAR(colour.g, 16, 2) << format;
        EXPECT_NEAR(colour.r, 248, 2) << format;
        EXPECT_EQ(colour.a, 255) << format;
    }
}

TEST(DxtcCompression, RefusesWhatIsNoBlockPicture) {
    ReportCapture capture;
    EXPECT_EQ(CompressImage(*MakeSlope(12, 8, false), IMAGETYPE_DXT1), nullptr);
    EXPECT_TRUE(ReportCapture::HasWarning("12x8 pixels can't be compressed: sides are powers of two"));
    EXPECT_EQ(CompressImage(*MakeSlope(8, 8, false), IMAGETYPE_RGB565), nullptr);
    EXPECT_TRUE(ReportCapture::HasWarning("Unsupported DXTC format! 4"));
    EXPECT_EQ(CompressImage(*MakeRandomImage(IMAGETYPE_RGB888, 8, 8), IMAGETYPE_DXT1), nullptr);
    EXPECT_EQ(capture.GetWarnings().size(), 3u);
}
