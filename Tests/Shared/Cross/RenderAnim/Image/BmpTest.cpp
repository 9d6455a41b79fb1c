#include "Shared/Cross/RenderAnim/Image/ImageLoad.h"
#include "Tests/Shared/Cross/RenderAnim/Image/ImageTesting.h"

namespace {

class Bmp : public PictureReading {
protected:
    std::unique_ptr<Image> ReadMade(const Bytes& bytes) { return Read(ReadBmp, bytes); }
    static Bytes GetIndices(const Image& image) { return {image.GetData().begin(), image.GetData().end()}; }
};

} // namespace

TEST_F(Bmp, HalfBytesHighOneFirst) {
    const std::unique_ptr<Image> pImage = ReadMade(MakeBmp(5, 2, 4)); // rows of 00 01 02 03 and 04 05 06 07
    ASSERT_NE(pImage, nullptr);
    EXPECT_EQ(m_Flags, ImageLoad::Flags_NoAlpha);
    EXPECT_EQ(GetIndices(*pImage), (Bytes{0, 0, 0, 1, 0, 0, 4, 0, 5, 0}));
    const ImagePalette& palette = ImageCast<Image_Palette>(pImage.get())->GetPalette();
    EXPECT_EQ(palette[15], (Colour{15, 16, 17, 255}));
}

TEST_F(Bmp, WholeBytesAndAShortPalette) {
    const std::unique_ptr<Image> pImage = ReadMade(MakeBmp(3, 2, 8, 5));
    ASSERT_NE(pImage, nullptr);
    EXPECT_EQ(GetIndices(*pImage), (Bytes{0, 1, 2, 4, 5, 6}));
    EXPECT_EQ(ImageCast<Image_Palette>(pImage.get())->GetPalette()[4], (Colour{4, 5, 6, 255}));
    // More entries than there can be are stepped over.
    const std::unique_ptr<Image> pLong = ReadMade(MakeBmp(3, 2, 8, 300));
    ASSERT_NE(pLong, nullptr);
    EXPECT_EQ(GetIndices(*pLong), (Bytes{0, 1, 2, 4, 5, 6}));
}

TEST_F(Bmp, ThreeBytesArePadded) {
    const std::unique_ptr<Image> pImage = ReadMade(MakeBmp(3, 2, 24)); // 9 bytes a row and 3 of padding
    ASSERT_NE(pImage, nullptr);
    EXPECT_EQ(m_Flags, ImageLoad::Flags_NoAlpha);
    EXPECT_EQ(GetPixel(*pImage, 2, 0), (Colour{6, 7, 8, 255}));
    EXPECT_EQ(GetPixel(*pImage, 0, 1), (Colour{12, 13, 14, 255}));
}

TEST_F(Bmp, FourBytesHaveAlphaUnlessItIsAllZero) {
    Bytes bytes = MakeBmp(2, 2, 32);
    const std::unique_ptr<Image> pImage = ReadMade(bytes);
    ASSERT_NE(pImage, nullptr);
    EXPECT_EQ(m_Flags, ImageLoad::Flags_Alpha);
    EXPECT_EQ(GetPixel(*pImage, 1, 1), (Colour{12, 13, 14, 15}));
    for (size_t i = 54 + 3; i < bytes.size(); i += 4)
        bytes[i] = 0;
    const std::unique_ptr<Image> pOpaque = ReadMade(bytes);
    EXPECT_EQ(m_Flags, ImageLoad::Flags_NoAlpha);
    EXPECT_EQ(GetPixel(*pOpaque, 1, 1), (Colour{12, 13, 14, 255}));
}

TEST_F(Bmp, ANegativeHeightTurnsTheRows) {
    for (const uint16_t bits : std::initializer_list<uint16_t>{4, 8, 24, 32}) {
        const std::unique_ptr<Image> pUp = ReadMade(MakeBmp(3, 5, bits));
        const std::unique_ptr<Image> pDown = ReadMade(MakeBmp(3, -5, bits));
        ASSERT_TRUE(pUp && pDown) << bits;
        const size_t rowSize = pUp->GetDataSize() / 5;
        for (size_t row = 0; row < 5; ++row)
            EXPECT_TRUE(std::ranges::equal(pUp->GetData().subspan(row * rowSize, rowSize),
                                           pDown->GetData().subspan((4 - row) * rowSize, rowSize)))
                << bits;
    }
}

TEST_F(Bmp, LongerHeadersAndGapsAreSteppedOver) {
    Bytes bytes = MakeBmp(3, 2, 8);
    bytes.insert(bytes.begin() + 54, 68, 0xEE);
    Put<uint32_t>(bytes, 14, 108);
    bytes.insert(bytes.begin() + 54 + 68 + 1024, 10, 0xEE);
    Put<uint32_t>(bytes, 10, 54 + 68 + 1024 + 10);
    const std::unique_ptr<Image> pImage = ReadMade(bytes);
    ASSERT_NE(pImage, nullptr);
    EXPECT_EQ(GetIndices(*pImage), (Bytes{0, 1, 2, 4, 5, 6}));
    EXPECT_EQ(ImageCast<Image_Palette>(pImage.get())->GetPalette()[255], (Colour{255, 0, 1, 255}));
}

TEST_F(Bmp, FaultsHaveTheirTexts) {
    const struct {
        size_t offset;
        uint32_t value;
        const char* pText;
    } faults[] = {
        {0, 0x4D43, "Not a BMP that I know how to read. [DATA:pic]"},
        {30, 1, "Don't know how to handle compressed BMPs. [DATA:pic]"},
        {28, 16, "Unsupported BMP format. [DATA:pic]"},
        {28, 1, "Unsupported BMP format. [DATA:pic]"},
        {14, 12, "Unsupported BMP format. [DATA:pic]"},
        {18, 0, "no pixels (0x2)"},
        {18, 4097, "4097x2 pixels; a side can have up to 4096"},
        {18, 0x80000000, "a side can have up to 4096"},
        {22, 0x80000000, "a side can have up to 4096"},
        {22, 4000, "Not enough file for the bitmap. [DATA:pic]"},
        {10, 0xFFFFFFF0, "Not enough file for the bitmap. [DATA:pic]"},
        {46, 0xFFFFFFFF, "Not enough file for the palette. [DATA:pic]"},
        {14, 0xFFFFFFFF, "Not enough file for the palette. [DATA:pic]"},
    };
    for (const auto& [offset, value, pText] : faults) {
        Bytes bytes = MakeBmp(3, 2, 8);
        Put(bytes, offset, value);
        ExpectRefused(ReadBmp, bytes, pText);
    }
}

TEST_F(Bmp, EveryTruncationIsRefused) {
    ExpectEveryTruncationRefused(ReadBmp, MakeBmp(5, 2, 4));
    ExpectEveryTruncationRefused(ReadBmp, MakeBmp(3, 2, 24));
}
