#include "Shared/Cross/RenderAnim/Image/ImageLoad.h"
#include "Tests/Shared/Cross/RenderAnim/Image/ImageTesting.h"

namespace {

class Bmp : public PictureReading {};

} // namespace

TEST_F(Bmp, RowsOfEveryDepthFromEitherEnd) {
    const struct {
        int32_t width;
        uint16_t bits;
        uint32_t paletteCount;
        Bytes rows; // two of them
    } cases[] = {
        {5, 4, 0, {0, 0, 0, 1, 0, 0, 4, 0, 5, 0}}, // rows of 00 01 02 03 and 04 05 06 07, the high half first
        {3, 8, 5, {0, 1, 2, 4, 5, 6}},
        {3, 8, 300, {0, 1, 2, 4, 5, 6}}, // more entries than there can be are stepped over
        {3, 24, 0, {0, 1, 2, 255, 3, 4, 5, 255, 6, 7, 8, 255, 12, 13, 14, 255, 15, 16, 17, 255, 18, 19, 20, 255}},
        {2, 32, 0, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15}},
    };
    for (const auto& [width, bits, paletteCount, rows] : cases) {
        const std::unique_ptr<Image> pImage = Read(ReadBmp, MakeBmp(width, 2, bits, paletteCount));
        ASSERT_NE(pImage, nullptr) << bits;
        EXPECT_EQ(GetBytes(*pImage), rows) << bits;
        EXPECT_EQ(m_Flags, bits == 32 ? ImageLoad::Flags_Alpha : ImageLoad::Flags_NoAlpha) << bits;
        if (const Image_Palette* pPaletted = ImageCast<Image_Palette>(pImage.get())) {
            EXPECT_EQ(pPaletted->GetPalette()[4], (Colour{4, 5, 6, 255})) << bits;
        }
        Bytes turned = rows;
        std::ranges::rotate(turned, turned.begin() + static_cast<std::ptrdiff_t>(turned.size() / 2));
        EXPECT_EQ(GetBytes(*Read(ReadBmp, MakeBmp(width, -2, bits, paletteCount))), turned) << bits;
    }
}

TEST_F(Bmp, AlphaThatIsZeroThroughoutIsNone) {
    Bytes bytes = MakeBmp(2, 2, 32);
    for (size_t i = 54 + 3; i < bytes.size(); i += 4)
        bytes[i] = 0;
    const std::unique_ptr<Image> pOpaque = Read(ReadBmp, bytes);
    EXPECT_EQ(m_Flags, ImageLoad::Flags_NoAlpha);
    EXPECT_EQ(GetPixel(*pOpaque, 1, 1), (Colour{12, 13, 14, 255}));
}

TEST_F(Bmp, LongerHeadersAndGapsAreSteppedOver) {
    Bytes bytes = MakeBmp(3, 2, 8);
    bytes.insert(bytes.begin() + 54, 68, 0xEE);
    Put<uint32_t>(bytes, 14, 108);
    bytes.insert(bytes.begin() + 54 + 68 + 1024, 10, 0xEE);
    Put<uint32_t>(bytes, 10, 54 + 68 + 1024 + 10);
    const std::unique_ptr<Image> pImage = Read(ReadBmp, bytes);
    ASSERT_NE(pImage, nullptr);
    EXPECT_EQ(GetBytes(*pImage), (Bytes{0, 1, 2, 4, 5, 6}));
    EXPECT_EQ(ImageCast<Image_Palette>(pImage.get())->GetPalette()[255], (Colour{255, 0, 1, 255}));
}

TEST_F(Bmp, FaultsHaveTheirTexts) {
    ExpectFaultsRefused<uint32_t>(ReadBmp, MakeBmp(3, 2, 8, 5),
                                  {
                                      {0, 0x4D43, "Not a BMP that I know how to read. [DATA:pic]"},
                                      {30, 1, "Don't know how to handle compressed BMPs. [DATA:pic]"},
                                      {28, 16, "Unsupported BMP format. [DATA:pic]"},
                                      {28, 1, "Unsupported BMP format. [DATA:pic]"},
                                      {14, 12, "Unsupported BMP format. [DATA:pic]"},
                                      {18, 0, "no pixels (0x2)"},
                                      {18, 4097, "4097x2 pixels; a side can have up to 4096"},
                                      {18, 0x80000000, "a side can have up to 4096"},
                                      {22, 0x80000000, "a side can have up to 4096"},
                                      {22, 4000, "Not enough file for the bitmap."},
                                      {10, 0xFFFFFFF0, "Not enough file for the bitmap."},
                                      {46, 0xFFFFFFFF, "Not enough file for the palette."},
                                      {14, 0xFFFFFFFF, "Not enough file for the palette."},
                                  });
}
