#include "Shared/Cross/RenderAnim/Image/ImageLoad.h"
#include "Tests/Shared/Cross/RenderAnim/Image/ImageTesting.h"

namespace {

class Bw : public PictureReading {};

} // namespace

TEST_F(Bw, PixelsLieBehindTheHeader) {
    const std::unique_ptr<Image> pImage = Read(ReadBw, MakeBw(5, 3));
    ASSERT_NE(pImage, nullptr);
    EXPECT_EQ(m_Flags, ImageLoad::Flags_Luminance);
    EXPECT_EQ(pImage->GetType(), IMAGETYPE_LUMINANCE8);
    EXPECT_EQ(pImage->GetWidth(), 5u);
    EXPECT_EQ(pImage->GetData()[14], 14);
}

TEST_F(Bw, FaultsHaveTheirTexts) {
    ExpectFaultsRefused<uint8_t>(ReadBw, MakeBw(5, 3),
                                 {
                                     {0, 2, "BW file header is mangled. [DATA:pic]"},
                                     {2, 2, "BW file header is mangled. [DATA:pic]"},
                                     {5, 4, "BW file header is mangled. [DATA:pic]"},
                                     {2, 1, "BW is run-length encoded"},
                                     {3, 2, "BW hasn't one byte of luminance a pixel. [DATA:pic]"},
                                     {5, 3, "BW hasn't one byte of luminance a pixel. [DATA:pic]"},
                                     {7, 0, "no pixels (0x3)"},
                                     {6, 0x20, "8197x3 pixels"},
                                     {8, 0x02, "BW file doesn't have enough pixels. [DATA:pic]"},
                                 });
    ExpectRefused(ReadBw, Bytes(511), "BW is too small. [DATA:pic]");
}
