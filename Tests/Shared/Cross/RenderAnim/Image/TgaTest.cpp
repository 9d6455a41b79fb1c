#include "Shared/Cross/RenderAnim/Image/ImageLoad.h"
#include "Tests/Shared/Cross/RenderAnim/Image/ImageTesting.h"

namespace {

class Tga : public PictureReading {};

} // namespace

TEST_F(Tga, RowsAreTakenAsTheyLie) {
    const std::unique_ptr<Image> pImage = Read(ReadTga, MakeTga(3, 2, 32));
    ASSERT_NE(pImage, nullptr);
    EXPECT_EQ(m_Flags, ImageLoad::Flags_Alpha);
    EXPECT_EQ(pImage->GetWidth(), 3u);
    EXPECT_EQ(GetPixel(*pImage, 0, 1), (Colour{12, 13, 14, 15}));
}

TEST_F(Tga, ThreeBytesAreExpandedBehindAnId) {
    // The last one is more than is read at a time.
    for (const uint16_t width : std::initializer_list<uint16_t>{1, 2, 3, 21, 4096}) {
        const uint16_t height = width == 4096 ? 20 : 7;
        const std::unique_ptr<Image> pImage = Read(ReadTga, MakeTga(width, height, 24, 11));
        ASSERT_NE(pImage, nullptr);
        EXPECT_EQ(m_Flags, ImageLoad::Flags_NoAlpha);
        const std::span<const Colour> pixels = ImageCast<Image_RGBA32>(pImage.get())->GetPixels();
        for (size_t i = 0; i < pixels.size(); ++i)
            ASSERT_EQ(pixels[i], (Colour{static_cast<uint8_t>(i * 3), static_cast<uint8_t>(i * 3 + 1),
                                         static_cast<uint8_t>(i * 3 + 2), 255}));
    }
}

TEST_F(Tga, OtherKindsAreRefusedInWords) {
    ExpectFaultsRefused<uint8_t>(ReadTga, MakeTga(2, 2, 24, 4),
                                 {
                                     {2, 10, "'DATA:pic': the TGA is run-length encoded"},
                                     {17, 0x28, "'DATA:pic': the TGA has its top row first"},
                                     {17, 0x10, "from right to left"},
                                     {17, 0x40, "interleaved"},
                                     {2, 0, "no true colour picture"},
                                     {2, 3, "no true colour picture"},
                                     {1, 1, "no true colour picture"},
                                     {16, 0, "24 or 32 bits"},
                                     {16, 16, "24 or 32 bits"},
                                     {12, 0, "no pixels (0x2)"},
                                     {15, 0x10, "2x4098 pixels; a side can have up to 4096"},
                                     {15, 0x02, "fewer pixels than its header says"},
                                 });
    for (size_t offset = 3; offset < 12; ++offset) {
        Bytes bytes = MakeTga(2, 2, 32);
        bytes[offset] = 1;
        ExpectRefused(ReadTga, bytes, "colour map or an origin");
    }
}
