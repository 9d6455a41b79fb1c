#include "Shared/Cross/RenderAnim/Image/ImageLoad.h"
#include "Tests/Shared/Cross/RenderAnim/Image/ImageTesting.h"

namespace {

class Dds : public PictureReading {
protected:
    static Bytes Changed(Bytes bytes, size_t offset, uint32_t value) {
        Put(bytes, offset, value);
        return bytes;
    }
    // How often the file's maker is blamed.
    static size_t CountBadTool() {
        return ReportCapture::CountWarnings("TEXTURE FORMAT -- The tool used to create the DDS file 'DATA:pic' did not "
                                            "save it correctly, please check for an updated version of the tool.");
    }
};

} // namespace

TEST_F(Dds, FourCodesGiveTypes) {
    const std::pair<char, ImageType> kinds[] = {{'1', IMAGETYPE_DXT1}, {'3', IMAGETYPE_DXT3}, {'5', IMAGETYPE_DXT5}};
    for (const auto& [kind, type] : kinds) {
        const std::unique_ptr<Image> pImage = Read(ReadDds, MakeDds(8, 16, kind));
        ASSERT_NE(pImage, nullptr);
        EXPECT_EQ(pImage->GetType(), type);
        EXPECT_EQ(pImage->GetHeight(), 16u);
        EXPECT_EQ(m_Flags, kind == '1' ? ImageLoad::Flags_NoAlpha : ImageLoad::Flags_Alpha);
        Bytes blocks;
        AppendCounting(blocks, kind == '1' ? 64 : 128);
        EXPECT_EQ(GetBytes(*pImage), blocks);
    }
    EXPECT_NE(Read(ReadDds, Changed(MakeDds(8, 16, '1'), 80, 5)), nullptr);
    EXPECT_EQ(m_Flags, ImageLoad::Flags_Alpha);
}

TEST_F(Dds, AsManyLevelsAreDroppedAsLeaveFourPixels) {
    const struct {
        uint32_t width, height, mipCount, wanted, left;
        Bytes starts; // of the first levels that are left
    } cases[] = {
        {16, 8, 5, 0, 5, {0, 64, 80, 88, 96}},
        {16, 16, 5, 1, 4, {128}},
        {16, 16, 5, 2, 3, {160}},
        {16, 16, 5, 9, 3, {160}},
        {16, 16, 1, 1, 1, {0}},
        {16, 16, 2, 5, 1, {128}},
        {16, 8, 4, 3, 3, {64}},
        {4, 4, 3, 2, 3, {0}},
        {2, 2, 2, 1, 2, {0}},
    };
    for (const auto& [width, height, mipCount, wanted, left, starts] : cases) {
        const std::unique_ptr<Image> pImage = Read(ReadDds, MakeDds(width, height, '1', mipCount), wanted);
        ASSERT_NE(pImage, nullptr);
        ASSERT_EQ(pImage->GetMipCount(), left) << width << "x" << height << " less " << wanted;
        EXPECT_EQ(pImage->GetWidth(), width >> (mipCount - left));
        for (uint32_t level = 0; level < starts.size(); ++level)
            EXPECT_EQ(pImage->GetData(level)[0], starts[level]) << width << "x" << height << " less " << wanted;
    }
}

TEST_F(Dds, FaultsHaveTheirTexts) {
    ExpectFaultsRefused<uint32_t>(ReadDds, MakeDds(8, 8, '1', 2),
                                  {
                                      {0, 0x21534444, "DDS is not happy. [DATA:pic]"},
                                      {4, 123, "DDS is not happy. [DATA:pic]"},
                                      {76, 24, "DDS is not happy. [DATA:pic]"},
                                      {8, 0x1006, "DDS is not happy. [DATA:pic]"},
                                      {8, 0x0007, "DDS is not happy. [DATA:pic]"},
                                      {84, 0x32545844, "Unsupported FourCC code in [DATA:pic]."},
                                      {12, 12, "8x12 pixels; sides of a compressed one are powers of two"},
                                      {16, 0x2000, "8192x8 pixels; a side can have up to 4096"},
                                      {16, 0, "no pixels (0x8)"},
                                      {12, 4096, "Malformed DDS file.  Not enough file for image."},
                                      {28, 5, "the DDS says 5 levels; 8x8 pixels have up to 4"},
                                      {112, 0xFE00, "Does not support loading of cube maps [DATA:pic]."},
                                      {112, 0x200000, "Does not support loading of volume textures [DATA:pic]."},
                                  });
}

TEST_F(Dds, WhatOnlyHalfTheHeaderSaysIsReported) {
    ReportCapture capture;
    EXPECT_EQ(Read(ReadDds, Changed(MakeDds(8, 8, '1'), 112, 0x200)), nullptr);
    EXPECT_EQ(CountBadTool(), 1u) << "a cube that isn't complex";
    const Bytes bytes = MakeDds(8, 8, '5', 3);
    EXPECT_EQ(Read(ReadDds, Changed(bytes, 108, 0x1000))->GetMipCount(), 3u);
    EXPECT_EQ(CountBadTool(), 2u) << "levels without their caps";
    EXPECT_EQ(Read(ReadDds, Changed(bytes, 28, 0))->GetMipCount(), 1u);
    EXPECT_EQ(CountBadTool(), 3u) << "no count of levels";
}
