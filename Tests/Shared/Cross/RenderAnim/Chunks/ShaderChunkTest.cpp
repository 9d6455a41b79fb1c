#include <gmock/gmock.h>

#include "Shared/Cross/RenderAnim/Chunks/ShaderChunk.h"
#include "Shared/Cross/RenderAnim/Texture.h"
#include "Tests/Shared/Cross/RenderAnim/Chunks/PayloadBytes.h"
#include "Tests/Shared/Cross/RenderAnim/ModelFixture.h"

using testing::HasSubstr;

namespace {

constexpr std::initializer_list<float> s_Identity = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
constexpr std::initializer_list<float> s_Other = {2, 0, 0, 0, 0, 3, 0, 0, 0, 0, 1, 0, 4, 5, 0, 1};

class ShaderChunk : public ModelFixture {
protected:
    static std::string MakeChannel(uint32_t n, const char* pTexture = "", uint32_t version = 3) {
        PayloadBytes bytes;
        bytes.U32(n).U32(1).U32(0xFF102030).Text(pTexture);
        if (version < 3)
            bytes.U8(9);
        bytes.U32(1).U32(4).U32(6).F32(s_Other).F32(s_Identity);
        return ChunkBytes::Data("CHAN", bytes.Get(), version);
    }
    static std::string MakeBytes(const std::string& channels) {
        const std::string info = PayloadBytes().U32(6).U32(7).F32({0.5f}).U32(3).U8(1).Get();
        return NamedFolder("SHDR", "Clay", ChunkBytes::Data("INFO", info) + channels, 1);
    }
    static std::string MakeBytes(const char* pTexture = "", uint32_t textureChannel = 0) {
        std::string channels;
        for (uint32_t n = 0; n < 6; ++n)
            channels += MakeChannel(n, n == textureChannel ? pTexture : "");
        return MakeBytes(channels);
    }
    static ra::ShaderRecord Read(const std::string& chunk) {
        const auto pStream = MakeReadStream(ChunkBytes::FileHeader() + chunk);
        Chunky chunky{ByteStreamAdapter(pStream.get())};
        return ra::ReadShaderRecord(chunky);
    }
    static std::string Write(const Shader& shader) {
        const auto pStream = MakeWriteStream();
        Chunky chunky{ByteStreamAdapter(pStream.get())};
        PayloadWriter writer;
        ra::WriteShader(chunky, writer, shader);
        return BytesOf(*pStream).substr(24);
    }
};

TEST_F(ShaderChunk, ReadsAndWritesBytesTypedByHand) {
    const ra::ShaderRecord record = Read(MakeBytes());
    EXPECT_EQ(record.name, "Clay");
    EXPECT_EQ(record.blendSource, 6);
    EXPECT_EQ(record.blendDestination, 7);
    EXPECT_EQ(record.alphaReference, 0.5f);
    EXPECT_EQ(record.alphaFunction, 3);
    EXPECT_TRUE(record.twoSided);
    EXPECT_EQ(record.channels[5].colour, (Colour{.b = 0x30, .g = 0x20, .r = 0x10, .a = 0xFF}));
    EXPECT_EQ(record.channels[5].filter, 4);
    EXPECT_EQ(record.channels[5].matrix[3], glm::vec4(4, 5, 0, 1));
    const ShaderRef shader = ra::BuildShader(record);
    EXPECT_EQ(Write(*shader.GetData()), MakeBytes());
    EXPECT_EQ(shader->GetChannelMode(CN_Extra), 0);
}

TEST_F(ShaderChunk, ChannelsOfVersion2HaveAByteMore) {
    std::string channels;
    for (uint32_t n = 0; n < 6; ++n)
        channels += MakeChannel(n, "", 2);
    const ra::ShaderRecord record = Read(MakeBytes(channels));
    EXPECT_EQ(record.channels[0].tile, 1);
    EXPECT_EQ(record.channels[0].matrix[3], glm::vec4(4, 5, 0, 1));
}

TEST_F(ShaderChunk, AMissingTextureIsPink) {
    const ShaderRef shader = ra::BuildShader(Read(MakeBytes("art/wood")));
    EXPECT_EQ(shader->GetChannelColour(CN_Diffuse).GetValue(), 0xFFFF00FFu);
    EXPECT_TRUE(ReportCapture::HasWarning("TEXTURES -- 'Clay': unable to find texture 'art/wood'. Using pink!"));
    EXPECT_FALSE(ReportCapture::HasWarning("has texture on"));
}

TEST_F(ShaderChunk, ATextureOfTheInventoryIsTaken) {
    // As the exporter names it.
    auto pTexture = std::make_unique<Texture>();
    pTexture->SetName("art\\Wood.old");
    TextureRef texture;
    texture.Set(std::move(pTexture));
    const ShaderRef shader = ra::BuildShader(Read(MakeBytes("art\\Wood.old", 3)));
    EXPECT_EQ(shader->GetChannelTexture(3), texture);
    EXPECT_TRUE(ReportCapture::HasWarning("SHADER -- 'Clay': has texture on 'Self Illumination' channel!"));
    EXPECT_EQ(Write(*shader.GetData()), MakeBytes("art\\Wood.old", 3));
}

TEST_F(ShaderChunk, TheFinalLevelHasWordsOfItsOwn) {
    std::unique_ptr<Shader> pShader = ra::MakeShader(Read(MakeBytes("art/wood", 5)), ra::ShaderForm::Final);
    EXPECT_STREQ(pShader->GetName(), "Clay");
    EXPECT_TRUE(ReportCapture::HasWarning("TEXTURES -- 'Clay': has texture on 'Specular' channel!"));
    EXPECT_FALSE(ReportCapture::HasWarning("SHADER --"));
    EXPECT_TRUE(ReportCapture::HasWarning("TEXTURES -- 'Clay': opacity channel has mode 'Add'."));
    const std::pair<int32_t, const char*> modes[] = {{0, nullptr},      {2, "'Blend'."},   {3, "'Blend'."},
                                                     {4, "'Invalid'."}, {9, "'Invalid'."}, {-1, "'Invalid'."}};
    for (const auto& [mode, pText] : modes) {
        ra::ShaderRecord record = Read(MakeBytes());
        record.channels[CN_Opacity].mode = mode;
        ReportCapture::Clear();
        ra::MakeShader(record, ra::ShaderForm::Final);
        EXPECT_EQ(ReportCapture::HasWarning("opacity channel has mode"), pText != nullptr) << mode;
        EXPECT_TRUE(!pText || ReportCapture::HasWarning(pText)) << mode;
        ReportCapture::Clear();
        ra::MakeShader(record);
        EXPECT_FALSE(ReportCapture::HasWarning("opacity channel has mode")) << "not at the generic level";
    }
}

TEST_F(ShaderChunk, DamageIsRefused) {
    std::string five;
    for (uint32_t n = 0; n < 5; ++n)
        five += MakeChannel(n);
    EXPECT_THROW(Read(MakeBytes(five)), Chunky::Exception);
    EXPECT_THROW(Read(MakeBytes(five + MakeChannel(6))), Chunky::Exception);
    EXPECT_THROW(Read(MakeBytes(five + MakeChannel(5, "", 4))), Chunky::Exception);
    EXPECT_THROW(Read(MakeBytes(five + MakeChannel(5, "", 1))), Chunky::Exception);
    EXPECT_THROW(Read(MakeBytes(five + ChunkBytes::Data("CHAN", "short", 3))), Chunky::Exception);
    EXPECT_NO_THROW(Read(MakeBytes(ChunkBytes::Data("WHAT", "new") + five + MakeChannel(5))));
}

TEST_F(ShaderChunk, ASharedShaderIsOnlyNamed) {
    const ShaderRef shader = MakeShader("art/shared");
    shader->SetShared(true);
    const std::string bytes = Write(*shader.GetData());
    EXPECT_EQ(bytes, NamedData("SSHR", "art/shared", PayloadBytes().Text("art/shared").Get(), 1));
    const auto pStream = MakeReadStream(ChunkBytes::FileHeader() + bytes);
    Chunky chunky{ByteStreamAdapter(pStream.get())};
    EXPECT_EQ(ra::ReadSharedShaderName(chunky), "art/shared");
}

} // namespace
