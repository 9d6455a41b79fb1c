#include "Shared/Cross/RenderAnim/Image/Image.h"

#include <stdexcept>

#include "Shared/Cross/RenderAnim/Image/Chunkmap.h"
#include "Tests/Shared/Cross/RenderAnim/Image/ImageTesting.h"

TEST(ImageSizes, FollowTheType) {
    const struct {
        ImageType type;
        uint32_t bits;
        uint64_t size; // of 8 by 4 pixels
    } types[] = {
        {IMAGETYPE_RGBA32, 32, 128}, {IMAGETYPE_LUMINANCE8, 8, 32}, {IMAGETYPE_PALETTE8, 8, 32},
        {IMAGETYPE_RGB565, 16, 64},  {IMAGETYPE_RGBA5551, 16, 64},  {IMAGETYPE_RGBA4444, 16, 64},
        {IMAGETYPE_RGB888, 24, 96},  {IMAGETYPE_DXT1, 4, 16},       {IMAGETYPE_DXT3, 8, 32},
        {IMAGETYPE_DXT5, 8, 32},
    };
    for (const auto& [type, bits, size] : types) {
        const std::unique_ptr<Image> pImage = Image::Create(type, 8, 4);
        EXPECT_EQ(pImage->GetBitsPerPixel(), bits) << type;
        EXPECT_EQ(pImage->GetDataSize(), size) << type;
        EXPECT_EQ(Image::GetSizeFor(type, 8, 4), size) << type;
    }
    for (const uint32_t type : {3u, 9u, 12u, 13u, 0x80000000u})
        EXPECT_FALSE(Image::IsTypeKnown(type)) << type;
}

TEST(ImageSizes, ALevelNeverVanishes) {
    const std::unique_ptr<Image> pImage = Image::Create(IMAGETYPE_DXT5, 16, 2, 5);
    const uint32_t levels[][3] = {{16, 2, 64}, {8, 1, 32}, {4, 1, 16}, {2, 1, 16}, {1, 1, 16}};
    for (uint32_t level = 0; level < 5; ++level) {
        EXPECT_EQ(pImage->GetWidth(level), levels[level][0]);
        EXPECT_EQ(pImage->GetHeight(level), levels[level][1]);
        EXPECT_EQ(pImage->GetDataSize(level), levels[level][2]);
    }
    EXPECT_EQ(pImage->GetTotalSize(), 144u);
    EXPECT_EQ(Image::GetMaxMipCount(4096, 1), 13u);
}

TEST(ImageSizes, HaveLimits) {
    EXPECT_NE(Image::Create(IMAGETYPE_LUMINANCE8, 4096, 1), nullptr);
    EXPECT_THROW(Image::Create(IMAGETYPE_LUMINANCE8, 4097, 1), std::runtime_error);
    EXPECT_THROW(Image::Create(IMAGETYPE_LUMINANCE8, 1, 4097), std::runtime_error);
    EXPECT_THROW(Image::Create(IMAGETYPE_DXT1, 12, 4), std::runtime_error);
    EXPECT_THROW(Image::Create(static_cast<ImageType>(9), 4, 4), std::runtime_error);
    EXPECT_FALSE(Image::AreSidesAllowed(IMAGETYPE_RGBA32, 0, 1));
}

TEST(ImageResize, KeepsWhatBothSizesHave) {
    const std::unique_ptr<Image> pBefore = MakeRandomImage(IMAGETYPE_RGBA32, 5, 4);
    const std::unique_ptr<Image> pImage = MakeRandomImage(IMAGETYPE_RGBA32, 5, 4);
    ASSERT_TRUE(pImage->Resize(3, 6, false));
    for (uint32_t y = 0; y < 6; ++y)
        for (uint32_t x = 0; x < 3; ++x)
            EXPECT_EQ(GetPixel(*pImage, x, y), y < 4 ? GetPixel(*pBefore, x, y) : Colour{}) << x << "," << y;
    const std::unique_ptr<Image> pBlocks = MakeRandomImage(IMAGETYPE_DXT1, 8, 8);
    Bytes expected = GetBytes(*pBlocks);
    ASSERT_TRUE(pBlocks->Resize(4, 16, false));
    expected.erase(expected.begin() + 8, expected.begin() + 16); // the second block of the first row
    std::fill(expected.begin() + 16, expected.end(), uint8_t{0});
    expected.resize(32);
    EXPECT_EQ(GetBytes(*pBlocks), expected);
}

TEST(ImageLevels, StayWhenTheirNumberChanges) {
    const std::unique_ptr<Image> pImage = MakeRandomImage(IMAGETYPE_RGB565, 8, 8, 3);
    const Bytes second(pImage->GetData(1).begin(), pImage->GetData(1).end());
    pImage->SetMipCount(4);
    pImage->SetMipCount(2);
    EXPECT_TRUE(std::ranges::equal(pImage->GetData(1), second));
    EXPECT_THROW(pImage->SetMipCount(5), std::runtime_error);
    EXPECT_THROW(pImage->GetData(2), std::runtime_error);
    pImage->DropFirstLevel();
    EXPECT_EQ(pImage->GetWidth(), 4u);
    EXPECT_TRUE(std::ranges::equal(pImage->GetData(), second));
}

TEST(ImageBlt, CopiesOneRectangle) {
    const std::unique_ptr<Image> pSource = MakeRandomImage(IMAGETYPE_RGBA32, 6, 5, 1, 1);
    const std::unique_ptr<Image> pBefore = MakeRandomImage(IMAGETYPE_RGBA32, 7, 4, 1, 2);
    const std::unique_ptr<Image> pImage = MakeRandomImage(IMAGETYPE_RGBA32, 7, 4, 1, 2);
    ASSERT_TRUE(pImage->Blt(*pSource, {.x = 2, .y = 3, .width = 4, .height = 2}, 3, 1));
    for (uint32_t y = 0; y < 4; ++y)
        for (uint32_t x = 0; x < 7; ++x) {
            const bool isInside = x >= 3 && y >= 1 && y < 3;
            EXPECT_EQ(GetPixel(*pImage, x, y), isInside ? GetPixel(*pSource, x - 1, y + 2) : GetPixel(*pBefore, x, y));
        }
}

TEST(ImageBlt, ClipsNothing) {
    const std::unique_ptr<Image> pSource = Image::Create(IMAGETYPE_RGB888, 4, 4);
    const std::unique_ptr<Image> pImage = Image::Create(IMAGETYPE_RGB888, 4, 4);
    ReportCapture capture;
    EXPECT_FALSE(pImage->Blt(*pSource, {.x = 1, .y = 0, .width = 4, .height = 1}, 0, 0));
    EXPECT_FALSE(pImage->Blt(*pSource, {.x = 0, .y = 0, .width = 1, .height = 4}, 0, 1));
    EXPECT_FALSE(pImage->Blt(*pSource, {.x = 0xFFFFFFFF, .y = 0, .width = 2, .height = 1}, 0, 0));
    EXPECT_EQ(ReportCapture::CountWarnings("leaves its image"), 3u);
    EXPECT_FALSE(pImage->Blt(*Image::Create(IMAGETYPE_RGBA32, 4, 4), {.width = 1, .height = 1}, 0, 0));
    EXPECT_TRUE(ReportCapture::HasWarning("Can only Blt images of same type"));
    EXPECT_FALSE(Image::Create(IMAGETYPE_DXT1, 4, 4)->Blt(*Image::Create(IMAGETYPE_DXT1, 4, 4), {}, 0, 0));
    EXPECT_TRUE(ReportCapture::HasWarning("Blt function not supported in Chunkmap images"));
}
