#include "Shared/Cross/RenderAnim/Image/ImageLoad.h"
#include "Tests/Shared/Cross/RenderAnim/Image/ImageTesting.h"

namespace {

constexpr char s_BadTool[] = "TEXTURE FORMAT -- The tool used to create the DDS file 'DATA:pic' did not save it "
                             "correctly, please check for an updated version of the tool.";

class Dds : public PictureReading {
protected:
    static Bytes Changed(const Bytes& original, size_t offset, uint32_t value) {
        Bytes bytes = original;
        Put(bytes, offset, value);
        return bytes;
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
        for (size_t i = 0; i < pImage->GetDataSize(); ++i)
            ASSERT_EQ(pImage->GetData()[i], static_cast<uint8_t>(i));
    }
    EXPECT_NE(Read(ReadDds, Changed(MakeDds(8, 16, '1'), 80, 5)), nullptr);
    EXPECT_EQ(m_Flags, ImageLoad::Flags_Alpha);
}

TEST_F(Dds, LevelsLieBackToBack) {
    const std::unique_ptr<Image> pImage = Read(ReadDds, MakeDds(16, 8, '1', 5));
    ASSERT_NE(pImage, nullptr);
    ASSERT_EQ(pImage->GetMipCount(), 5u);
    const uint8_t starts[] = {0, 64, 80, 88, 96};
    for (uint32_t level = 0; level < 5; ++level)
        EXPECT_EQ(pImage->GetData(level)[0], starts[level]);
}

TEST_F(Dds, AsManyLevelsAreDroppedAsLeaveFourPixels) {
    const struct {
        uint32_t width, height, mipCount, wanted, width0, start;
    } cases[] = {
        {16, 16, 5, 1, 8, 128}, {16, 16, 5, 2, 4, 160}, {16, 16, 5, 9, 4, 160}, {16, 16, 1, 1, 16, 0},
        {16, 16, 2, 5, 8, 128}, {16, 8, 4, 3, 8, 64},   {4, 4, 3, 2, 4, 0},     {2, 2, 2, 1, 2, 0},
    };
    for (const auto& [width, height, mipCount, wanted, width0, start] : cases) {
        const std::unique_ptr<Image> pImage = Read(ReadDds, MakeDds(width, height, '1', mipCount), wanted);
        ASSERT_NE(pImage, nullptr);
        EXPECT_EQ(pImage->GetWidth(), width0) << width << "x" << height << " less " << wanted;
        EXPECT_EQ(pImage->GetData()[0], start) << width << "x" << height << " less " << wanted;
        uint32_t dropped = 0;
        while (width >> dropped > width0)
            ++dropped;
        EXPECT_EQ(pImage->GetMipCount(), mipCount - dropped);
    }
}

TEST_F(Dds, UnsoundHeadersAreUnhappy) {
    const Bytes bytes = MakeDds(8, 8, '1');
    const std::pair<size_t, uint32_t> faults[] = {{0, 0x21534444}, {4, 123}, {76, 24}, {8, 0x1006}, {8, 0x0007}};
    for (const auto& [offset, value] : faults)
        ExpectRefused(ReadDds, Changed(bytes, offset, value), "DDS is not happy. [DATA:pic]");
    ExpectRefused(ReadDds, Changed(bytes, 84, 0x32545844), "Unsupported FourCC code in [DATA:pic].");
    ExpectRefused(ReadDds, Changed(bytes, 80, 0x40), "Unsupported FourCC code in [DATA:pic].");
    ExpectRefused(ReadDds, Changed(bytes, 12, 12), "8x12 pixels; sides of a compressed one are powers of two");
    ExpectRefused(ReadDds, Changed(bytes, 16, 0x2000), "8192x8 pixels; a side can have up to 4096");
    ExpectRefused(ReadDds, Changed(bytes, 16, 0), "no pixels (0x8)");
    ExpectRefused(ReadDds, Changed(bytes, 12, 4096), "Malformed DDS file.  Not enough file for image.");
    ExpectRefused(ReadDds, Changed(MakeDds(8, 8, '1', 2), 28, 5), "the DDS says 5 levels; 8x8 pixels have up to 4");
}

TEST_F(Dds, CubesAndVolumesAreRefused) {
    const Bytes complex = Changed(MakeDds(8, 8, '1'), 108, 0x1008);
    ExpectRefused(ReadDds, Changed(complex, 112, 0xFE00), "Does not support loading of cube maps [DATA:pic].");
    ExpectRefused(ReadDds, Changed(complex, 112, 0x200000), "Does not support loading of volume textures [DATA:pic].");
    ReportCapture capture;
    EXPECT_EQ(Read(ReadDds, Changed(MakeDds(8, 8, '1'), 112, 0x200)), nullptr);
    ASSERT_EQ(capture.GetWarnings().size(), 2u);
    EXPECT_NE(capture.GetWarnings()[0].find(s_BadTool), std::string::npos);
}

TEST_F(Dds, LevelsThatOnlyHalfAreThereAreReported) {
    const Bytes bytes = MakeDds(8, 8, '5', 3);
    {
        ReportCapture capture;
        const std::unique_ptr<Image> pImage = Read(ReadDds, Changed(bytes, 108, 0x1000));
        EXPECT_EQ(pImage->GetMipCount(), 3u);
        EXPECT_EQ(ReportCapture::CountWarnings(s_BadTool), 1u);
    }
    ReportCapture capture;
    const std::unique_ptr<Image> pImage = Read(ReadDds, Changed(bytes, 28, 0));
    EXPECT_EQ(pImage->GetMipCount(), 1u);
    EXPECT_EQ(ReportCapture::CountWarnings(s_BadTool), 1u);
}

TEST_F(Dds, EveryTruncationIsRefused) { ExpectEveryTruncationRefused(ReadDds, MakeDds(8, 8, '1', 3)); }
