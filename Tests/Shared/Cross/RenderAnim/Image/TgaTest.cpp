#include "Shared/Cross/RenderAnim/Image/ImageLoad.h"
#include "Tests/Shared/Cross/RenderAnim/Image/ImageTesting.h"

namespace {

class Tga : public PictureReading {
protected:
    void ExpectByteRefused(size_t offset, uint8_t value, const char* pText) {
        Bytes bytes = MakeTga(2, 2, 32);
        bytes[offset] = value;
        ExpectRefused(ReadTga, bytes, pText);
    }
};

} // namespace

TEST_F(Tga, RowsAreTakenAsTheyLie) {
    const std::unique_ptr<Image> pImage = Read(ReadTga, MakeTga(3, 2, 32));
    ASSERT_NE(pImage, nullptr);
    EXPECT_EQ(m_Flags, ImageLoad::Flags_Alpha);
    EXPECT_EQ(pImage->GetWidth(), 3u);
    EXPECT_EQ(GetPixel(*pImage, 1, 0), (Colour{4, 5, 6, 7}));
    EXPECT_EQ(GetPixel(*pImage, 0, 1), (Colour{12, 13, 14, 15}));
}

TEST_F(Tga, ThreeBytesAreExpandedBehindAnId) {
    // The last one is more than is read at a time.
    for (const uint16_t width : std::initializer_list<uint16_t>{1, 2, 3, 21, 4096}) {
        const std::unique_ptr<Image> pImage = Read(ReadTga, MakeTga(width, 7, 24, 11));
        ASSERT_NE(pImage, nullptr);
        EXPECT_EQ(m_Flags, ImageLoad::Flags_NoAlpha);
        const std::span<const Colour> pixels = ImageCast<Image_RGBA32>(pImage.get())->GetPixels();
        for (size_t i = 0; i < pixels.size(); ++i)
            ASSERT_EQ(pixels[i], (Colour{static_cast<uint8_t>(i * 3), static_cast<uint8_t>(i * 3 + 1),
                                         static_cast<uint8_t>(i * 3 + 2), 255}));
    }
}

TEST_F(Tga, OtherKindsAreRefusedInWords) {
    ExpectByteRefused(2, 10, "'DATA:pic': the TGA is run-length encoded");
    ExpectByteRefused(17, 0x28, "'DATA:pic': the TGA has its top row first");
    ExpectByteRefused(17, 0x10, "from right to left");
    ExpectByteRefused(17, 0x40, "interleaved");
    for (const uint8_t type : Bytes{0, 1, 3, 9, 11})
        ExpectByteRefused(2, type, "no true colour picture");
    ExpectByteRefused(1, 1, "no true colour picture");
    for (size_t offset = 3; offset < 12; ++offset)
        ExpectByteRefused(offset, 1, "colour map or an origin");
    for (const uint8_t bits : Bytes{0, 8, 15, 16, 31})
        ExpectByteRefused(16, bits, "24 or 32 bits");
}

TEST_F(Tga, SidesHaveLimits) {
    ExpectByteRefused(12, 0, "no pixels (0x2)");
    ExpectByteRefused(15, 0x10, "2x4098 pixels; a side can have up to 4096");
    ExpectByteRefused(15, 0x02, "fewer pixels than its header says");
}

TEST_F(Tga, EveryTruncationIsRefused) { ExpectEveryTruncationRefused(ReadTga, MakeTga(3, 2, 24, 4)); }
