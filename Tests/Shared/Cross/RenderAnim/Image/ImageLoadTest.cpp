#include "Shared/Cross/RenderAnim/Image/ImageLoad.h"

#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/FileSystem/Paths/FilePathHD.h"
#include "Shared/Cross/RenderAnim/Image/DxtcCompression.h"
#include "Shared/Cross/RenderAnim/Image/ImageChunks.h"
#include "Shared/Cross/RenderAnim/Image/MipMap.h"
#include "Tests/Shared/Cross/FileSystem/ChunkBytes.h"
#include "Tests/Shared/Cross/RenderAnim/Image/ImageTesting.h"
#include "Tests/Shared/PC/Debug/SelfRun.h"
#include "Tests/Shared/PC/FileSystem/TempFolder.h"

namespace {

// A folder under the alias "DATA".
class PictureFiles : public testing::Test {
protected:
    PictureFiles() {
        FilePath::AddSource("DATA", "images", 0,
                            FilePathHD::Create(m_Folder.Path().c_str(), FilePath::Mode::Mode_Both));
    }
    ~PictureFiles() override { FilePath::RemoveSource("DATA", "images"); }

    void Write(const char* pName, const Bytes& bytes) const { m_Folder.Write(pName, {bytes.begin(), bytes.end()}); }
    std::unique_ptr<Image> Load(const char* pName, ImageType type = IMAGETYPE_KEEP) {
        m_Flags = 99;
        return ImageLoad::Load(m_Flags, pName, type);
    }

    TempFolder m_Folder;
    uint32_t m_Flags = 0;
};

} // namespace

TEST_F(PictureFiles, TheExtensionChoosesTheReader) {
    // From the last of the table to the first, which is the one that a name without an extension finds.
    const struct {
        const char* pName;
        Bytes bytes;
        ImageType type;
        uint32_t width;
    } files[] = {{"skin.BW", MakeBw(2, 2), IMAGETYPE_LUMINANCE8, 2},
                 {"skin.bmp", MakeBmp(3, 2, 8), IMAGETYPE_PALETTE8, 3},
                 {"skin.Tga", MakeTga(4, 2, 24), IMAGETYPE_RGBA32, 4},
                 {"skin.jpg", MakeGreyJpeg(), IMAGETYPE_RGBA32, 8},
                 {"skin.dds", MakeDds(16, 8, '3'), IMAGETYPE_DXT3, 16}};
    for (const auto& [pName, bytes, type, width] : files) {
        Write(pName, bytes);
        for (const char* pAsked : {pName, "skin", "DATA:SKIN"}) {
            const std::unique_ptr<Image> pImage = Load(pAsked);
            ASSERT_NE(pImage, nullptr) << pName;
            EXPECT_EQ(pImage->GetType(), type) << pName;
            EXPECT_EQ(pImage->GetWidth(), width) << pName;
            EXPECT_NE(m_Flags, ImageLoad::Flags_Unknown) << pName;
        }
    }
}

TEST_F(PictureFiles, TheWantedTypeIsConvertedTo) {
    Write("c.bw", MakeBw(2, 2));
    EXPECT_EQ(GetPixel(*Load("c.bw", IMAGETYPE_RGBA32), 1, 1), (Colour{3, 3, 3, 255}));
    EXPECT_EQ(m_Flags, ImageLoad::Flags_Unknown);
    EXPECT_NE(Load("c.bw", IMAGETYPE_LUMINANCE8), nullptr);
    EXPECT_EQ(m_Flags, ImageLoad::Flags_Luminance);
    EXPECT_EQ(Load("c.bw", IMAGETYPE_DXT1), nullptr);
}

TEST_F(PictureFiles, WhatIsMissingIsOneLine) {
    const std::pair<const char*, const char*> names[] = {
        {"none.tga", "'DATA:none.tga': Unable to open file!"},
        {"none.dds", "'DATA:none.dds': Unable to open file!"},
        {"none.bw", "BW is non-existant. [DATA:none.bw]"},
        {"none.png", "'DATA:none.png': Unrecognized file type"},
        {"none", "'DATA:none': there is no such file of any picture type"},
        {"", "there is no such file"},
    };
    for (const auto& [pName, pText] : names) {
        ReportCapture capture;
        EXPECT_EQ(Load(pName), nullptr) << pName;
        EXPECT_EQ(m_Flags, ImageLoad::Flags_Unknown) << pName;
        EXPECT_EQ(capture.GetWarnings().size(), 1u) << pName;
        EXPECT_TRUE(ReportCapture::HasWarning(pText)) << testing::PrintToString(capture.GetWarnings());
    }
}

TEST_F(PictureFiles, WhatIsWrittenComesBack) {
    const std::unique_ptr<Image> pImage = MakeRandomImage(IMAGETYPE_RGBA32, 16, 8);
    ASSERT_TRUE(ImageLoad::Save("DATA:out.tga", *pImage));
    EXPECT_TRUE(HaveSameData(*Load("out.tga"), *pImage));
    const std::unique_ptr<Image> pThree = MakeRandomImage(IMAGETYPE_RGB888, 5, 3);
    ASSERT_TRUE(ImageLoad::Save("three.TGA", *pThree));
    EXPECT_TRUE(HaveSameData(*Load("three.tga", IMAGETYPE_RGB888), *pThree));
    CreateMipLevels(*pImage, 4);
    for (const ImageType type : {IMAGETYPE_DXT1, IMAGETYPE_DXT3, IMAGETYPE_DXT5}) {
        const std::unique_ptr<Image> pBlocks = CompressImage(*pImage, type);
        ASSERT_TRUE(ImageLoad::Save("out.dds", *pBlocks));
        ReportCapture capture;
        EXPECT_TRUE(HaveSameData(*Load("out.dds"), *pBlocks));
        EXPECT_TRUE(capture.GetWarnings().empty());
    }
    // Smooth, so that the format loses little.
    uint32_t i = 0;
    for (Colour& colour : ImageCast<Image_RGBA32>(pImage.get())->GetPixels())
        colour = Colour::FromValue(0xFFC80000 + i++ * 0x101);
    ASSERT_TRUE(ImageLoad::Save("out.jpg", *pImage));
    const std::unique_ptr<Image> pRead = Load("out.jpg");
    for (size_t k = 0; k < pImage->GetDataSize(); ++k)
        EXPECT_NEAR(pRead->GetData()[k], pImage->GetData()[k], 4) << k;
}

TEST_F(PictureFiles, WhatCannotBeWrittenIsOneLineAndNoFile) {
    const struct {
        const char* pName;
        ImageType type;
        const char* pText;
    } cases[] = {
        {"a.tga", IMAGETYPE_PALETTE8, "TEXTURES -- 'DATA:a.tga': Unrecognized image type!"},
        {"a.jpg", IMAGETYPE_DXT1, "TEXTURES -- 'DATA:a.jpg': Unrecognized image type!"},
        {"a.dds", IMAGETYPE_RGBA32, "TEXTURES -- 'DATA:a.dds': Unrecognized image type 0!"},
        {"a.bmp", IMAGETYPE_RGBA32, "TEXTURES -- 'DATA:a.bmp': Unrecognized file type"},
        {"NOWHERE:a.tga", IMAGETYPE_RGBA32, "TEXTURES -- 'NOWHERE:a.tga': Unable to open file!"},
    };
    for (const auto& [pName, type, pText] : cases) {
        ReportCapture capture;
        EXPECT_FALSE(ImageLoad::Save(pName, *MakeRandomImage(type, 4, 4))) << pName;
        EXPECT_EQ(ReportCapture::CountWarnings(pText), 1u) << testing::PrintToString(capture.GetWarnings());
    }
    EXPECT_TRUE(std::filesystem::is_empty(m_Folder.Native()));
}

TEST_F(PictureFiles, AFullDiskIsReported) {
    if (!std::filesystem::exists("/dev/full"))
        GTEST_SKIP() << "no device that is always full";
    std::filesystem::create_symlink("/dev/full", m_Folder.Native("full.tga"));
    ReportCapture capture;
    EXPECT_FALSE(ImageLoad::Save("full.tga", *MakeRandomImage(IMAGETYPE_RGBA32, 64, 64)));
    EXPECT_EQ(ReportCapture::CountWarnings("TEXTURES -- 'DATA:full.tga': Unable to write to file!"), 1u);
}

// Carried out in a process that was started with the word "noimages".
TEST(NoImagesRun, DISABLED_EveryPictureIsGrey) {
    uint32_t flags = 99;
    const std::unique_ptr<Image> pImage = ImageLoad::Load(flags, "DATA:none.tga");
    ASSERT_NE(pImage, nullptr);
    EXPECT_EQ(pImage->GetWidth(), 1u);
    EXPECT_EQ(GetPixel(*pImage, 0, 0).GetValue(), 0xFF9F9F9F);
    const auto pStream = MakeReadStream(ChunkBytes::FileHeader() + ChunkBytes::Folder("IMAG", "no image"));
    Chunky reader{ByteStreamAdapter(pStream.get())};
    EXPECT_EQ(GetPixel(*ReadImage(reader), 0, 0).GetValue(), 0xFF9F9F9F);
    EXPECT_EQ(reader.GetRemaining(), 0u);
    EXPECT_EQ(LimitImages(3), 1u) << "several such are no levels of a texture";
}

TEST(NoImages, StandsInForFilesAndChunks) {
    const SelfRunResult result = RunSelf("NoImagesRun.DISABLED_EveryPictureIsGrey", "-noimages");
    EXPECT_EQ(result.status, 0) << result.output;
}
