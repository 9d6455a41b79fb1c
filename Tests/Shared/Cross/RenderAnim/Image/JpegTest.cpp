#include "Shared/Cross/RenderAnim/Image/JpegLibrary.h"

#include "Shared/Cross/RenderAnim/Image/ImageLoad.h"
#include "Tests/Shared/Cross/RenderAnim/Image/ImageTesting.h"

namespace {

class Jpeg : public PictureReading {
protected:
    static std::unique_ptr<Image> ReadDefault(const ImageReaderArgs& args, uint32_t& outFlags) {
        return ReadJpeg(args, outFlags);
    }
    static std::unique_ptr<Image> ReadWithout(const ImageReaderArgs& args, uint32_t& outFlags) {
        return ReadJpeg(args, outFlags, JpegLibrary("libnosuchjpeg.so.0"));
    }
    // The colour is off by the losses of the format.
    static void ExpectNear(Colour colour, uint32_t expected) {
        const Colour wanted = Colour::FromValue(expected);
        EXPECT_NEAR(colour.b, wanted.b, 2);
        EXPECT_NEAR(colour.g, wanted.g, 2);
        EXPECT_NEAR(colour.r, wanted.r, 2);
        EXPECT_EQ(colour.a, wanted.a);
    }
};

} // namespace

TEST_F(Jpeg, ColoursAndGreyWithTheBottomRowFirst) {
    const std::unique_ptr<Image> pColours = Read(ReadDefault, MakeProgressiveJpeg());
    ASSERT_NE(pColours, nullptr);
    EXPECT_EQ(m_Flags, ImageLoad::Flags_NoAlpha);
    ExpectNear(GetPixel(*pColours, 2, 3), 0xFF20A0E0);
    ExpectNear(GetPixel(*pColours, 13, 3), 0xFFC02040);
    const std::unique_ptr<Image> pGrey = Read(ReadDefault, MakeGreyJpeg());
    ASSERT_NE(pGrey, nullptr);
    ExpectNear(GetPixel(*pGrey, 4, 2), 0xFF909090);
    ExpectNear(GetPixel(*pGrey, 4, 13), 0xFF303030);
}

TEST_F(Jpeg, WithoutTheLibraryNothingIsRead) {
    ExpectRefused(ReadWithout, MakeGreyJpeg(), "'DATA:pic': no JPEG can be read: libnosuchjpeg.so.0");
    EXPECT_FALSE(JpegLibrary("libc.so.6").IsLoaded()) << "a library without the operations";
}

TEST_F(Jpeg, FaultsAreRefused) {
    // The end marker alone may be missing: all pixels are there.
    const Bytes whole = MakeProgressiveJpeg();
    ExpectFaultsRefused<uint8_t>(ReadDefault, Bytes(whole.begin(), whole.end() - 2),
                                 {{0, 0, "this is no JPEG that can be read"}});
    Bytes bytes = MakeGreyJpeg();
    bytes[94] = 0x10; // the height's high byte
    ExpectRefused(ReadDefault, bytes, "8x4112 pixels; a side can have up to 4096");
    bytes[94] = 0x0F;
    bytes[96] = 0x08; // and the width's
    ExpectRefused(ReadDefault, bytes, "the JPEG is too short for its 2056x3856 pixels");
    Bytes scans = MakeGreyJpeg();
    for (int i = 0; i < 70; ++i)
        scans.insert(scans.end() - 2, {0xFF, 0xDA});
    ExpectRefused(ReadDefault, scans, "the JPEG has more than 64 scans");
}
