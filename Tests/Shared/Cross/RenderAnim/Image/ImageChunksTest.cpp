#include "Shared/Cross/RenderAnim/Image/ImageChunks.h"

#include <string>

#include "Tests/Shared/Cross/RenderAnim/Chunks/PayloadBytes.h"
#include "Tests/Shared/Cross/RenderAnim/Image/ImageTesting.h"

namespace {

std::string WriteOne(const Image& image) {
    const std::unique_ptr<RamStream> pStream = MakeWriteStream();
    Chunky chunky{ByteStreamAdapter(pStream.get())};
    WriteImage(chunky, image);
    return BytesOf(*pStream);
}

// One more chunk behind the image shows that the reader stops in time.
std::unique_ptr<Image> ReadOne(const std::string& file, uint32_t levelsToSkip = 0) {
    const std::unique_ptr<RamStream> pStream = MakeReadStream(file + ChunkBytes::Data("LAST", ""));
    Chunky chunky{ByteStreamAdapter(pStream.get())};
    std::unique_ptr<Image> pImage = ReadImage(chunky, levelsToSkip);
    EXPECT_TRUE(chunky.FindChunk(ChunkKind_Data, FourCC("LAST")));
    return pImage;
}

std::string MakeFile(const std::string& children) {
    return ChunkBytes::FileHeader() + ChunkBytes::Folder("IMAG", children);
}
std::string MakeFile(uint32_t version, const std::vector<uint32_t>& attributes, size_t dataSize) {
    PayloadBytes bytes;
    for (const uint32_t attribute : attributes)
        bytes.U32(attribute);
    return MakeFile(ChunkBytes::Data("ATTR", bytes.Get(), version) +
                    ChunkBytes::Data("DATA", std::string(dataSize, 5), 2));
}

std::string GetFault(const std::string& file) {
    try {
        ReadOne(file);
    } catch (const Chunky::Exception& exception) {
        return exception.what();
    }
    return "it was read";
}

} // namespace

TEST(ImageChunks, EveryTypeComesBack) {
    for (uint32_t type = 0; type < IMAGETYPE_KEEP; ++type) {
        if (!Image::IsTypeKnown(type))
            continue;
        const std::unique_ptr<Image> pImage = MakeRandomImage(static_cast<ImageType>(type), 16, 8, 5);
        pImage->SetName("art\\skin");
        const std::unique_ptr<Image> pRead = ReadOne(WriteOne(*pImage));
        ASSERT_NE(pRead, nullptr);
        EXPECT_TRUE(HaveSameData(*pRead, *pImage)) << type;
        EXPECT_STREQ(pRead->GetName(), "art\\skin");
    }
}

TEST(ImageChunks, LieAsTheTableSays) {
    const std::unique_ptr<Image> pImage = Image::Create(IMAGETYPE_PALETTE8, 2, 1, 2);
    pImage->GetData(0)[0] = 'a';
    pImage->GetData(0)[1] = 'b';
    pImage->GetData(1)[0] = 'c';
    ImageCast<Image_Palette>(pImage.get())->GetPalette()[255] = Colour::FromValue(0x11223344);
    const std::string attributes = PayloadBytes().U32(2).U32(2).U32(1).U32(2).Get();
    const std::string palette = PayloadBytes().Add(std::string(1020, 0)).U32(0x11223344).Get();
    EXPECT_EQ(WriteOne(*pImage), MakeFile(ChunkBytes::Data("ATTR", attributes, 2) + ChunkBytes::Data("DATA", "abc", 2) +
                                          ChunkBytes::Data("PAL8", palette, 1)));
    const std::unique_ptr<Image> pOld = ReadOne(MakeFile(1, {IMAGETYPE_RGB565, 4, 2}, 16));
    EXPECT_EQ(pOld->GetMipCount(), 1u);
    EXPECT_EQ(pOld->GetData()[15], 5);
    EXPECT_EQ(pOld->GetName(), nullptr);
}

TEST(ImageChunks, LevelsCanBeLeftOut) {
    const std::unique_ptr<Image> pImage = MakeRandomImage(IMAGETYPE_RGBA32, 8, 4, 4);
    EXPECT_TRUE(std::ranges::equal(ReadOne(WriteOne(*pImage), 2)->GetData(), pImage->GetData(2)));
    EXPECT_EQ(ReadOne(WriteOne(*pImage), 9)->GetWidth(), 1u);
    const std::string blocks = WriteOne(*MakeRandomImage(IMAGETYPE_DXT5, 32, 8, 6));
    EXPECT_EQ(ReadOne(blocks, 9)->GetWidth(), 16u) << "as long as 4 pixels a side are left";
    EXPECT_EQ(ReadOne(blocks, 1)->GetMipCount(), 5u);
}

TEST(ImageChunks, FaultsAreRefusedBeforeMemoryIsTaken) {
    const struct {
        std::vector<uint32_t> attributes;
        size_t dataSize;
        const char* pText;
    } faults[] = {
        {{9, 4, 4, 1}, 64, "there is no image type 9"},
        {{0xFFFFFFFF, 4, 4, 1}, 64, "there is no image type"},
        {{IMAGETYPE_DXT1, 2, 4, 1}, 64, "imageWidth >= 4"},
        {{IMAGETYPE_DXT1, 4, 1, 1}, 64, "imageHeight >= 4"},
        {{IMAGETYPE_DXT1, 12, 4, 1}, 64, "12x4 pixels are no sides"},
        {{IMAGETYPE_RGBA32, 4097, 1, 1}, 64, "4097x1 pixels are no sides"},
        {{IMAGETYPE_RGBA32, 0, 1, 1}, 64, "imageWidth >= 1"},
        {{IMAGETYPE_RGBA32, 4, 4, 0}, 64, "0 levels"},
        {{IMAGETYPE_RGBA32, 4, 4, 4}, 640, "4 levels where 4x4 pixels have 1 to 3"},
        {{IMAGETYPE_RGBA32, 4096, 4096, 13}, 64, "64 bytes of pixels where"},
        {{IMAGETYPE_RGBA32, 4, 4}, 64, "mip count is missing"},
    };
    for (const auto& [attributes, dataSize, pText] : faults) {
        const std::string fault = GetFault(MakeFile(2, attributes, dataSize));
        EXPECT_NE(fault.find(pText), std::string::npos) << fault << " in place of " << pText;
    }
}

TEST(ImageChunks, EveryTruncationIsRefused) {
    const std::string whole = WriteOne(*MakeRandomImage(IMAGETYPE_PALETTE8, 4, 4, 2));
    for (size_t size = 0; size < whole.size(); ++size) {
        const std::unique_ptr<RamStream> pStream = MakeReadStream(whole.substr(0, size));
        const auto read = [&] {
            Chunky chunky{ByteStreamAdapter(pStream.get())};
            ReadImage(chunky);
        };
        EXPECT_THROW(read(), std::runtime_error) << size;
    }
}
