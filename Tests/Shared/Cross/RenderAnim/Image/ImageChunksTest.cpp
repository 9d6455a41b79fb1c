#include "Shared/Cross/RenderAnim/Image/ImageChunks.h"

#include <string>

#include "Tests/Shared/Cross/RenderAnim/Image/ImageTesting.h"

namespace {

class ImageChunks : public testing::Test {
protected:
    // A file with what the function writes; one more chunk behind it shows that a reader stops in time.
    template <class WriteContent>
    void WriteFile(WriteContent&& write) {
        RamStream stream;
        stream.Create(64, ByteStream::Mode_Write);
        Chunky chunky{ByteStreamAdapter(&stream)};
        write(chunky);
        chunky.BeginData(FourCC("LAST"), 1);
        chunky.EndChunk();
        m_Bytes.assign(stream.GetBuffer(), stream.GetBuffer() + stream.GetLength());
    }
    void WriteOne(const Image& image) {
        WriteFile([&](Chunky& chunky) { WriteImage(chunky, image); });
    }
    // An image by hand.
    void WriteParts(uint32_t version, const std::vector<uint32_t>& attributes, uint32_t dataSize) {
        WriteFile([&](Chunky& chunky) {
            chunky.BeginFolder(s_ImageChunk, 1);
            chunky.BeginData(FourCC("ATTR"), version);
            chunky.GetStream().Write(attributes.data(), static_cast<uint32_t>(attributes.size()));
            chunky.EndChunk();
            chunky.BeginData(FourCC("DATA"), 2);
            const Bytes data(dataSize, 5);
            chunky.GetStream().Write(static_cast<const void*>(data.data()), dataSize);
            chunky.EndChunk();
            chunky.EndChunk();
        });
    }
    std::unique_ptr<Image> Read(uint32_t levelsToSkip = 0) {
        RamStream stream;
        stream.Attach(m_Bytes.data(), static_cast<uint32_t>(m_Bytes.size()), false, ByteStream::Mode_Read);
        Chunky chunky{ByteStreamAdapter(&stream)};
        std::unique_ptr<Image> pImage = ReadImage(chunky, levelsToSkip);
        EXPECT_TRUE(chunky.FindChunk(ChunkKind_Data, FourCC("LAST")));
        return pImage;
    }
    void ExpectFault(const std::vector<uint32_t>& attributes, uint32_t dataSize, const char* pText) {
        WriteParts(2, attributes, dataSize);
        try {
            Read();
            ADD_FAILURE() << "read in spite of: " << pText;
        } catch (const Chunky::Exception& exception) {
            EXPECT_NE(std::string(exception.what()).find(pText), std::string::npos) << exception.what();
        }
    }

    Bytes m_Bytes;
};

} // namespace

TEST_F(ImageChunks, EveryTypeComesBack) {
    for (uint32_t type = 0; type < IMAGETYPE_KEEP; ++type) {
        if (!Image::IsTypeKnown(type))
            continue;
        const std::unique_ptr<Image> pImage = MakeRandomImage(static_cast<ImageType>(type), 16, 8, 5);
        pImage->SetName("art\\skin");
        WriteOne(*pImage);
        const std::unique_ptr<Image> pRead = Read();
        ASSERT_NE(pRead, nullptr);
        EXPECT_TRUE(HaveSameData(*pRead, *pImage)) << type;
        EXPECT_STREQ(pRead->GetName(), "art\\skin");
        if (type == IMAGETYPE_PALETTE8) {
            EXPECT_EQ(ImageCast<Image_Palette>(pRead.get())->GetPalette(),
                      ImageCast<Image_Palette>(pImage.get())->GetPalette());
        }
    }
}

TEST_F(ImageChunks, LieAsTheTableSays) {
    const std::unique_ptr<Image> pImage = Image::Create(IMAGETYPE_PALETTE8, 2, 1, 2);
    pImage->GetData(0)[0] = 0xAA;
    pImage->GetData(0)[1] = 0xBB;
    pImage->GetData(1)[0] = 0xCC;
    ImageCast<Image_Palette>(pImage.get())->GetPalette()[255] = Colour::FromValue(0x11223344);
    WriteOne(*pImage);
    RamStream stream;
    stream.Attach(m_Bytes.data(), static_cast<uint32_t>(m_Bytes.size()), false, ByteStream::Mode_Read);
    Chunky chunky{ByteStreamAdapter(&stream)};
    EXPECT_EQ(chunky.EnterFolder(FourCC("IMAG"), 99).version, 1u);
    const auto expectNext = [&](uint32_t id, uint32_t version, const Bytes& expected) {
        EXPECT_EQ(chunky.EnterData(id, 99).version, version);
        Bytes payload(chunky.GetRemaining());
        chunky.GetStream().Read(payload.data(), static_cast<uint32_t>(payload.size()));
        EXPECT_EQ(payload, expected);
        chunky.EndChunk();
    };
    expectNext(FourCC("ATTR"), 2, {2, 0, 0, 0, 2, 0, 0, 0, 1, 0, 0, 0, 2, 0, 0, 0});
    expectNext(FourCC("DATA"), 2, {0xAA, 0xBB, 0xCC});
    Bytes palette(1024);
    Put(palette, 1020, 0x11223344);
    expectNext(FourCC("PAL8"), 1, palette);
}

TEST_F(ImageChunks, AnOldOneHasOneLevel) {
    WriteParts(1, {IMAGETYPE_RGB565, 4, 2}, 16);
    EXPECT_EQ(Read()->GetMipCount(), 1u);
    EXPECT_EQ(Read()->GetData()[15], 5);
    EXPECT_EQ(Read()->GetName(), nullptr);
}

TEST_F(ImageChunks, LevelsCanBeLeftOut) {
    const std::unique_ptr<Image> pImage = MakeRandomImage(IMAGETYPE_RGBA32, 8, 4, 4);
    WriteOne(*pImage);
    EXPECT_TRUE(std::ranges::equal(Read(2)->GetData(), pImage->GetData(2)));
    EXPECT_EQ(Read(9)->GetWidth(), 1u);
    WriteOne(*MakeRandomImage(IMAGETYPE_DXT5, 32, 8, 6));
    EXPECT_EQ(Read(9)->GetWidth(), 16u) << "as long as 4 pixels a side are left";
    EXPECT_EQ(Read(1)->GetMipCount(), 5u);
}

TEST_F(ImageChunks, FaultsAreRefusedBeforeMemoryIsTaken) {
    ExpectFault({9, 4, 4, 1}, 64, "there is no image type 9");
    ExpectFault({0xFFFFFFFF, 4, 4, 1}, 64, "there is no image type");
    ExpectFault({IMAGETYPE_DXT1, 2, 4, 1}, 64, "imageWidth >= 4");
    ExpectFault({IMAGETYPE_DXT1, 4, 1, 1}, 64, "imageHeight >= 4");
    ExpectFault({IMAGETYPE_DXT1, 12, 4, 1}, 64, "12x4 pixels are no sides");
    ExpectFault({IMAGETYPE_RGBA32, 4097, 1, 1}, 64, "4097x1 pixels are no sides");
    ExpectFault({IMAGETYPE_RGBA32, 0, 1, 1}, 64, "imageWidth >= 1");
    ExpectFault({IMAGETYPE_RGBA32, 4, 4, 0}, 64, "0 levels");
    ExpectFault({IMAGETYPE_RGBA32, 4, 4, 4}, 640, "4 levels where 4x4 pixels have 1 to 3");
    ExpectFault({IMAGETYPE_RGBA32, 4096, 4096, 13}, 64, "64 bytes of pixels where");
    ExpectFault({IMAGETYPE_RGBA32, 4, 4}, 64, "mip count is missing");
}

TEST_F(ImageChunks, EveryTruncationIsRefused) {
    WriteOne(*MakeRandomImage(IMAGETYPE_PALETTE8, 4, 4, 2));
    const Bytes whole = m_Bytes;
    for (size_t size = 0; size < whole.size(); ++size) {
        m_Bytes.assign(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        try {
            RamStream stream;
            stream.Attach(m_Bytes.data(), static_cast<uint32_t>(size), false, ByteStream::Mode_Read);
            Chunky chunky{ByteStreamAdapter(&stream)};
            ReadImage(chunky);
            // The chunk behind the image is all that may be missing.
            EXPECT_GE(size, whole.size() - 20) << size;
        } catch (const std::runtime_error&) {
        }
    }
}
