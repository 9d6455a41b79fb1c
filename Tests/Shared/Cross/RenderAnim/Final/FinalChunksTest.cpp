#include "Shared/Cross/RenderAnim/Final/FinalShaderChunk.h"
#include "Shared/Cross/RenderAnim/Final/FinalTextureChunk.h"
#include "Shared/Cross/RenderAnim/Texture.h"
#include "Shared/Cross/RenderAnim/TextureConvert.h"
#include "Tests/Shared/Cross/RenderAnim/Image/ImageTesting.h"
#include "Tests/Shared/Cross/RenderAnim/ModelFixture.h"

using testing::HasSubstr;

namespace {

class FinalChunks : public ModelFixture {
protected:
    static std::unique_ptr<Texture> Make(ImageType type, uint32_t width, uint32_t height, uint32_t mips) {
        std::unique_ptr<Texture> pTexture = Image2Texture(MakeRandomImage(type, width, height, mips));
        pTexture->SetName("art\\wood");
        return pTexture;
    }
    static std::string Write(const Texture& texture, uint32_t useDXTC = 0, bool complete = true) {
        return WriteChunks([&](Chunky& chunky, PayloadWriter& writer) {
            EXPECT_EQ(ra::WriteFinalTexture(chunky, writer, texture, useDXTC), complete);
        });
    }
    static std::unique_ptr<Texture> Read(const std::string& chunk, uint32_t levelsToSkip = 0) {
        return ReadChunks(chunk, [&](Chunky& chunky) { return ra::TextureLoadFinal(chunky, levelsToSkip); });
    }
    static std::string MakeGreyLevel(uint32_t side, const std::string& pixels) {
        const std::string attributes = PayloadBytes().U32(IMAGETYPE_LUMINANCE8).U32(side).U32(side).U32(1).Get();
        return ChunkBytes::Folder("IMAG",
                                  ChunkBytes::Data("ATTR", attributes, 2) + ChunkBytes::Data("DATA", pixels, 2));
    }
    static std::string MakeBytes(uint32_t count, const std::string& levels) {
        const std::string head = ChunkBytes::Data("HEAD", PayloadBytes().U32(3).U32(count).Get(), 1);
        return NamedFolder("TXTR", "art\\wood", head + levels, 1);
    }
};

TEST_F(FinalChunks, ATextureLiesLevelByLevel) {
    const std::string bytes = MakeBytes(2, MakeGreyLevel(2, "abcd") + MakeGreyLevel(1, "e"));
    const std::unique_ptr<Texture> pTexture = Read(bytes);
    EXPECT_STREQ(pTexture->GetName(), "art\\wood");
    EXPECT_EQ(pTexture->GetLevelCount(), 2u);
    EXPECT_EQ(Write(*pTexture), bytes);
    // Level by level or all in one image: the file is the same.
    EXPECT_EQ(Write(*Image2Texture(Texture2Image(*pTexture))).size(), bytes.size() - sizeof("art\\wood"));
    for (const uint32_t skip : {1u, 9u}) {
        const std::unique_ptr<Texture> pLeft = Read(bytes, skip);
        ASSERT_EQ(pLeft->GetLevelCount(), 1u) << "one stays";
        EXPECT_EQ(pLeft->GetLevel(0).pImage->GetData()[0], 'e');
    }
}

TEST_F(FinalChunks, SmallLevelsOfCompressedTexturesArentStored) {
    const std::unique_ptr<Texture> pRead = Read(Write(*Make(IMAGETYPE_DXT3, 16, 8, 5)));
    EXPECT_EQ(pRead->GetLevelCount(), 2u) << "8x4 is the last that can be read back";
    const std::unique_ptr<Texture> pCompressed = Read(Write(*Make(IMAGETYPE_RGBA32, 16, 16, 5), 5));
    EXPECT_EQ(pCompressed->GetLevelCount(), 3u);
    EXPECT_EQ(pCompressed->GetType(), TextureType_DXT5);
    const std::string head = Write(*Make(IMAGETYPE_RGBA32, 16, 16, 5), 1).substr(20 + 9 + 20, 8);
    EXPECT_EQ(head, PayloadBytes().U32(TextureType_DXT1).U32(3).Get());
}

TEST_F(FinalChunks, TexturesSmallerThanABlockStayInColours) {
    for (const auto& [width, height] : {std::pair(1u, 1u), {64u, 2u}, {3u, 3u}}) {
        const std::unique_ptr<Texture> pRead = Read(Write(*Make(IMAGETYPE_RGBA32, width, height, 2 - height % 2), 5));
        EXPECT_EQ(pRead->GetType(), TextureType_RGBA) << width;
        EXPECT_EQ(pRead->GetLevel(0).pImage->GetWidth(), width);
    }
}

TEST_F(FinalChunks, ALevelThatCannotBeConvertedIsTold) {
    const std::string bytes = Write(*Make(IMAGETYPE_RGBA32, 12, 8, 1), 1, false);
    EXPECT_TRUE(ReportCapture::HasWarning("TEXTURES -- 'art\\wood': Unable to convert mip-map 0 to an image!"));
    EXPECT_EQ(FaultOf([&] { Read(bytes); }), "TEXTURES -- 'art\\wood': Unable to load images!");
}

TEST_F(FinalChunks, DamageIsRefused) {
    const std::string level = MakeGreyLevel(2, "abcd");
    EXPECT_THROW(Read(MakeBytes(0, level)), Chunky::Exception);
    EXPECT_THROW(Read(MakeBytes(2, level)), Chunky::Exception);
    EXPECT_THROW(Read(MakeBytes(0xFFFFFFFF, level), 0xFFFFFFFF), Chunky::Exception);
    EXPECT_THROW(Read(MakeBytes(2, level + level)), Chunky::Exception);
    EXPECT_THROW(Read(NamedFolder("TXTR", "x", ChunkBytes::Data("HEAD", "1234", 1) + level, 1)), Chunky::Exception);
    EXPECT_THROW(Read(NamedFolder("TXTR", "x", level, 1)), Chunky::Exception);
}

TEST_F(FinalChunks, ASharedShaderIsKnownByItsChunksName) {
    const ShaderRef shader = MakeShader("art\\shared");
    const auto write = [&](Chunky& chunky, PayloadWriter& writer) {
        ra::WriteFinalShader(chunky, writer, *shader.GetData());
    };
    EXPECT_EQ(WriteChunks(write).substr(0, 8), "FOLDSHDR");
    shader->SetShared(true);
    const std::string bytes = WriteChunks(write);
    EXPECT_EQ(bytes, NamedData("SSHR", "art\\shared", PayloadBytes().Text("art\\shared").Get(), 2));
    for (const std::string& chunk : {bytes, NamedData("SSHR", "art\\shared", "", 1)})
        EXPECT_EQ(ReadChunks(chunk, ra::ReadFinalSharedShaderName), "art\\shared");
}

} // namespace
