#include "Shared/Cross/RenderAnim/Chunks/TextureChunk.h"

#include <gmock/gmock.h>

#include "Shared/Cross/RenderAnim/Texture.h"
#include "Tests/Shared/Cross/RenderAnim/Chunks/PayloadBytes.h"
#include "Tests/Shared/Cross/RenderAnim/Image/ImageTesting.h"
#include "Tests/Shared/Cross/RenderAnim/ModelFixture.h"

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

class TextureChunk : public ModelFixture {
protected:
    // Pixel bytes count up from `first`.
    static std::string MakeImage(uint32_t type, uint32_t width, uint32_t height, size_t bytes, uint32_t mips = 1,
                                 uint8_t first = 0, const char* pName = "art\\wood") {
        std::string data;
        for (size_t i = 0; i < bytes; ++i)
            data += static_cast<char>(first + i);
        return NamedFolder(
            "IMAG", pName,
            ChunkBytes::Data("ATTR", PayloadBytes().U32(type).U32(width).U32(height).U32(mips).Get(), 2) +
                ChunkBytes::Data("DATA", data, 2),
            1);
    }
    static std::string MakeBytes(const std::string& images, uint32_t count = 1) {
        return NamedFolder("TXTR", "art\\wood", ChunkBytes::Data("INFO", PayloadBytes().U32(count).Get(), 3) + images,
                           1);
    }
    static std::unique_ptr<Texture> Read(const std::string& chunk) {
        const auto pStream = MakeReadStream(ChunkBytes::FileHeader() + chunk);
        Chunky chunky{ByteStreamAdapter(pStream.get())};
        return ra::TextureLoadGeneric(chunky);
    }
    static std::string Write(const Texture& texture) {
        const auto pStream = MakeWriteStream();
        Chunky chunky{ByteStreamAdapter(pStream.get())};
        PayloadWriter writer;
        ra::WriteTexture(chunky, writer, texture);
        return BytesOf(*pStream).substr(24);
    }
    static void ExpectFault(const std::string& chunk, const char* pText) {
        try {
            Read(chunk);
            ADD_FAILURE() << "read in spite of: " << pText;
        } catch (const Chunky::Exception& exception) {
            EXPECT_THAT(exception.what(), HasSubstr(pText));
        }
    }
    static TextureRef Add(const char* pName) {
        std::unique_ptr<Texture> pTexture = Image2Texture(MakeRandomImage(IMAGETYPE_RGBA32, 2, 2));
        pTexture->SetName(pName);
        return ra::AddTexture(std::move(pTexture));
    }
};

TEST_F(TextureChunk, ReadsAndWritesBytesTypedByHand) {
    const std::string bytes = MakeBytes(MakeImage(IMAGETYPE_RGB888, 2, 1, 6));
    const std::unique_ptr<Texture> pTexture = Read(bytes);
    EXPECT_STREQ(pTexture->GetName(), "art\\wood");
    EXPECT_EQ(pTexture->GetWidth(), 2u);
    EXPECT_EQ(pTexture->GetType(), TextureType_RGB);
    EXPECT_EQ(Write(*pTexture), bytes);
    const std::string compressed = MakeBytes(MakeImage(IMAGETYPE_DXT1, 8, 8, 4 * 8 + 8 + 8 + 8, 4, 1, "other"));
    EXPECT_EQ(Read(compressed)->GetLevelCount(), 4u);
    EXPECT_EQ(Write(*Read(compressed)), compressed);
}

TEST_F(TextureChunk, OldOnesHaveThreeNumbersMore) {
    for (const uint32_t version : {1u, 2u}) {
        const std::string info = PayloadBytes().U32(7).U32(8).U32(9).U32(1).Get();
        const std::string image = MakeImage(IMAGETYPE_LUMINANCE8, 3, 1, 3);
        const auto pTexture = Read(NamedFolder("TXTR", "old", ChunkBytes::Data("INFO", info, version) + image, 1));
        EXPECT_EQ(pTexture->GetWidth(), 3u) << version;
    }
    ExpectFault(NamedFolder("TXTR", "old", ChunkBytes::Data("INFO", PayloadBytes().U32(1).Get(), 2), 1), "image count");
}

TEST_F(TextureChunk, SeveralImagesAreTheLevelsOfOneTexture) {
    const std::string levels =
        MakeImage(IMAGETYPE_LUMINANCE8, 2, 2, 4) + MakeImage(IMAGETYPE_LUMINANCE8, 1, 1, 1, 1, 9);
    const std::unique_ptr<Texture> pTexture = Read(MakeBytes(levels, 2));
    EXPECT_EQ(pTexture->GetLevelCount(), 2u);
    EXPECT_EQ(pTexture->GetLevel(1).pImage->GetData()[0], 9);
    // The writer puts them into one.
    const std::unique_ptr<Texture> pAgain = Read(Write(*pTexture));
    EXPECT_EQ(pAgain->GetImages().size(), 1u);
    EXPECT_EQ(pAgain->GetLevelCount(), 2u);
    EXPECT_EQ(pAgain->GetImages()[0]->GetData(1)[0], 9);
    // A compressed one is whole, whatever the count says.
    EXPECT_EQ(Read(MakeBytes(MakeImage(IMAGETYPE_DXT1, 4, 4, 8), 5))->GetLevelCount(), 1u);
}

TEST_F(TextureChunk, DamageIsRefused) {
    ExpectFault(MakeBytes("", 0), "Unable to load image(s) for texture 'art\\wood'!");
    ExpectFault(MakeBytes("", 1), "");
    ExpectFault(MakeBytes(MakeImage(IMAGETYPE_LUMINANCE8, 2, 2, 4), 0xFFFFFFFF), "");
    ExpectFault(MakeBytes(MakeImage(IMAGETYPE_LUMINANCE8, 2, 2, 4) + MakeImage(IMAGETYPE_LUMINANCE8, 2, 2, 4), 2),
                "no levels of one texture");
    ExpectFault(MakeBytes(MakeImage(IMAGETYPE_LUMINANCE8, 2, 2, 3)), "3 bytes of pixels");
    ExpectFault(NamedFolder("TXTR", "new", "", 2), "");
    const std::string whole = ChunkBytes::FileHeader() + MakeBytes(MakeImage(IMAGETYPE_RGB888, 2, 1, 6));
    for (size_t size = 24; size < whole.size(); ++size) {
        const auto pStream = MakeReadStream(std::string_view(whole).substr(0, size));
        Chunky chunky{ByteStreamAdapter(pStream.get())};
        EXPECT_THROW(ra::TextureLoadGeneric(chunky), std::runtime_error) << "cut to " << size;
    }
}

TEST_F(TextureChunk, EachTextureOfTheGroupsOwnShadersIsWrittenOnce) {
    const ShaderRef clay = MakeShader("Clay");
    const ShaderRef shared = MakeShader("Shared");
    const ShaderRef foreign = MakeShader("Foreign");
    const TextureRef wood = Add("wood");
    const TextureRef stone = Add("stone");
    clay->SetChannelTexture(CN_Extra, stone);
    clay->SetChannelTexture(CN_Opacity, wood);
    clay->SetChannelTexture(CN_Diffuse, wood);
    clay->SetChannelTexture(CN_Specular, Add("")); // no channel could name it
    shared->SetShared(true);
    shared->SetChannelTexture(CN_Diffuse, Add("elsewhere"));
    foreign->SetChannelTexture(CN_Diffuse, Add("foreign"));
    ra::MeshGroup group;
    group.AddShader(clay, true);
    group.AddShader(shared, true);
    group.AddShader(foreign, false);
    EXPECT_THAT(ra::CollectTextures(group), ElementsAre(wood.GetData(), stone.GetData()));
}

} // namespace
