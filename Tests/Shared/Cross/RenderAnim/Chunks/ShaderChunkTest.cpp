#include "Shared/Cross/RenderAnim/Chunks/ShaderChunk.h"
#include "Shared/Cross/RenderAnim/Texture.h"
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
    static std::string MakeBytes(const char* pTexture = "", uint32_t textureChannel = 0, uint32_t version = 3) {
        std::string channels;
        for (uint32_t n = 0; n < 6; ++n)
            channels += MakeChannel(n, n == textureChannel ? pTexture : "", version);
        return MakeBytes(channels);
    }
    static ra::ShaderRecord Read(const std::string& chunk) { return ReadChunks(chunk, ra::ReadShaderRecord); }
    static std::string Write(const Shader& shader) {
        return WriteChunks([&](Chunky& chunky, PayloadWriter& writer) { ra::WriteShader(chunky, writer, shader); });
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
    EXPECT_EQ(Write(*ra::MakeShader(record)), MakeBytes());
    EXPECT_EQ(Write(*ra::MakeShader(Read(MakeBytes("", 0, 2)))), MakeBytes()) << "with a byte more";
}

TEST_F(ShaderChunk, AMissingTextureIsPink) {
    const std::unique_ptr<Shader> pShader = ra::MakeShader(Read(MakeBytes("art/wood")));
    EXPECT_EQ(pShader->GetChannelColour(CN_Diffuse).GetValue(), 0xFFFF00FFu);
    EXPECT_TRUE(ReportCapture::HasWarning("TEXTURES -- 'Clay': unable to find texture 'art/wood'. Using pink!"));
    EXPECT_FALSE(ReportCapture::HasWarning("has texture on"));
}

TEST_F(ShaderChunk, ATextureOfTheInventoryIsTaken) {
    // As the exporter names it.
    auto pTexture = std::make_unique<Texture>();
    pTexture->SetName("art\\Wood.old");
    TextureRef texture;
    texture.Set(std::move(pTexture));
    const std::unique_ptr<Shader> pShader = ra::MakeShader(Read(MakeBytes("art\\Wood.old", 3)));
    EXPECT_EQ(pShader->GetChannelTexture(3), texture);
    EXPECT_TRUE(ReportCapture::HasWarning("SHADER -- 'Clay': has texture on 'Self Illumination' channel!"));
    EXPECT_EQ(Write(*pShader), MakeBytes("art\\Wood.old", 3));
}

TEST_F(ShaderChunk, TheFinalLevelHasWordsOfItsOwn) {
    ra::MakeShader(Read(MakeBytes("art/wood", 5)), ra::ShaderForm::Final);
    EXPECT_TRUE(ReportCapture::HasWarning("TEXTURES -- 'Clay': has texture on 'Specular' channel!"));
    EXPECT_FALSE(ReportCapture::HasWarning("SHADER --"));
    const std::pair<int32_t, const char*> modes[] = {{0, nullptr},   {1, "Add"},     {2, "Blend"},   {3, "Blend"},
                                                     {4, "Invalid"}, {9, "Invalid"}, {-1, "Invalid"}};
    for (const auto& [mode, pName] : modes) {
        ra::ShaderRecord record = Read(MakeBytes());
        record.channels[CN_Opacity].mode = mode;
        ReportCapture::Clear();
        ra::MakeShader(record);
        EXPECT_FALSE(ReportCapture::HasWarning("opacity channel has mode")) << "not at the generic level";
        ra::MakeShader(record, ra::ShaderForm::Final);
        const std::string text =
            pName ? std::string("TEXTURES -- 'Clay': opacity channel has mode '") + pName + "'." : "";
        EXPECT_EQ(ReportCapture::CountWarnings("opacity channel has mode"), pName ? 1u : 0u) << mode;
        EXPECT_TRUE(text.empty() || ReportCapture::HasWarning(text)) << mode;
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
    EXPECT_EQ(ReadChunks(bytes, ra::ReadSharedShaderName), "art/shared");
}

} // namespace
