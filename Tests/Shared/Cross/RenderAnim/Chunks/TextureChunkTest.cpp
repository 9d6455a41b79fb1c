#include "Shared/Cross/RenderAnim/Chunks/TextureChunk.h"

#include "Shared/Cross/RenderAnim/Texture.h"
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
        return ReadChunks(chunk, [](Chunky& chunky) { return ra::TextureLoadGeneric(chunky); });
    }
    static std::string Write(const Texture& texture) {
        return WriteChunks([&](Chunky& chunky, PayloadWriter& writer) { ra::WriteTexture(chunky, writer, texture); });
    }
    static std::string Fault(const std::string& chunk) {
        return FaultOf([&] { Read(chunk); });
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
    const std::string image = MakeImage(IMAGETYPE_LUMINANCE8, 3, 1, 3);
    for (const uint32_t version : {1u, 2u}) {
        const std::string info = PayloadBytes().U32(7).U32(8).U32(9).U32(1).Get();
        EXPECT_EQ(Read(NamedFolder("TXTR", "old", ChunkBytes::Data("INFO", info, version) + image, 1))->GetWidth(), 3u);
    }
    EXPECT_THAT(Fault(NamedFolder("TXTR", "old", ChunkBytes::Data("INFO", "1234", 2) + image, 1)),
                HasSubstr("image count"));
}

TEST_F(TextureChunk, SeveralImagesAreTheLevelsOfOneTexture) {
    const std::string levels =
        MakeImage(IMAGETYPE_LUMINANCE8, 2, 2, 4) + MakeImage(IMAGETYPE_LUMINANCE8, 1, 1, 1, 1, 9);
    const std::unique_ptr<Texture> pTexture = Read(MakeBytes(levels, 2));
    EXPECT_EQ(pTexture->GetLevelCount(), 2u);
    // The writer puts them into one.
    const std::unique_ptr<Texture> pAgain = Read(Write(*pTexture));
    EXPECT_EQ(pAgain->GetImages().size(), 1u);
    EXPECT_EQ(pAgain->GetImages()[0]->GetData(1)[0], 9);
    // A compressed one is whole, whatever the count says.
    for (const uint32_t count : {0u, 5u})
        EXPECT_EQ(Read(MakeBytes(MakeImage(IMAGETYPE_DXT1, 4, 4, 8), count))->GetLevelCount(), 1u);
}

TEST_F(TextureChunk, DamageIsRefused) {
    const std::string grey = MakeImage(IMAGETYPE_LUMINANCE8, 2, 2, 4);
    EXPECT_EQ(Fault(MakeBytes(grey, 0)), "Unable to load image(s) for texture 'art\\wood'!");
    EXPECT_NE(Fault(MakeBytes("", 1)), "");
    EXPECT_NE(Fault(MakeBytes(grey, 0xFFFFFFFF)), "");
    EXPECT_THAT(Fault(MakeBytes(grey + grey, 2)), HasSubstr("no levels of one texture"));
    EXPECT_THAT(Fault(MakeBytes(MakeImage(IMAGETYPE_LUMINANCE8, 2, 2, 3))), HasSubstr("3 bytes of pixels"));
    EXPECT_NE(Fault(NamedFolder("TXTR", "new", "", 2)), "");
    ExpectEveryTruncationRefused(MakeBytes(grey), Read);
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
