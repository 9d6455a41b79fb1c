#include "Shared/Cross/RenderAnim/Chunks/ShaderChunk.h"
#include "Shared/Cross/RenderAnim/Files/ResourceLoaders.h"
#include "Shared/Cross/RenderAnim/Files/SharedShaderFile.h"
#include "Shared/Cross/RenderAnim/Files/TextureFile.h"
#include "Shared/Cross/RenderAnim/LoadSwitch.h"
#include "Shared/Cross/RenderAnim/ShaderTypeInfo.h"
#include "Shared/Cross/RenderAnim/Texture.h"
#include "Shared/Cross/RenderAnim/TextureTypeInfo.h"
#include "Tests/Shared/Cross/RenderAnim/DataTrees.h"
#include "Tests/Shared/Cross/RenderAnim/Image/ImageTesting.h"
#include "Tests/Shared/Cross/RenderAnim/ModelFixture.h"

namespace {

// A generic and a final tree, and the loaders installed.
class MaterialFiles : public ModelFixture {
protected:
    MaterialFiles() { ra::InstallResourceLoaders(); }
    ~MaterialFiles() override {
        ra::SetGenericLoad(false);
        TextureTypeInfo::SetLoaders(nullptr, nullptr);
        ShaderTypeInfo::SetLoaders(nullptr, nullptr);
    }
    static TextureRef AddTexture(const char* pName, ImageType type = IMAGETYPE_RGBA32, uint32_t mips = 1) {
        std::unique_ptr<Texture> pTexture = Image2Texture(MakeRandomImage(type, 8, 8, mips));
        pTexture->SetName(pName);
        TextureRef texture;
        texture.Set(std::move(pTexture));
        return texture;
    }
    static std::unique_ptr<Shader> MakeOwnShader(const char* pName) {
        std::unique_ptr<Shader> pShader = Shader::Create();
        pShader->SetName(pName);
        return pShader;
    }

    DataTrees m_Folder;
};

constexpr const char* s_Name = "art\\Texture_Share.v2";

TEST_F(MaterialFiles, ASharedShaderComesBackWithItsTextures) {
    const std::unique_ptr<Shader> pShader = MakeOwnShader(s_Name);
    pShader->SetBlendMode(6, 7);
    const TextureRef wood = AddTexture("art\\Wood", IMAGETYPE_RGBA32, 2);
    for (const ShaderChannel n : {CN_Diffuse, CN_Opacity})
        pShader->SetChannelTexture(n, wood);
    pShader->SetChannelTexture(CN_Extra, AddTexture("art\\Extra"));
    ASSERT_TRUE(ra::SaveSharedShader((std::string("GENERIC:") + s_Name + ".qsh").c_str(), *pShader));
    ASSERT_TRUE(ra::SaveSharedShaderFinal((std::string("DATA:") + s_Name + ".qsh").c_str(), *pShader, 1));

    for (const bool generic : {true, false}) {
        ra::SetGenericLoad(generic);
        Inv::PushFrame(generic ? "generic" : "final");
        const std::unique_ptr<Shader> pRead =
            generic ? ra::LoadSharedShaderGeneric(s_Name) : ra::LoadSharedShaderFinal(s_Name);
        ASSERT_TRUE(pRead);
        EXPECT_STREQ(pRead->GetName(), s_Name);
        EXPECT_EQ(pRead->GetBlendDestination(), 7);
        const TextureRef& texture = pRead->GetChannelTexture(CN_Diffuse);
        EXPECT_EQ(pRead->GetChannelTexture(CN_Opacity), texture);
        EXPECT_NE(texture, wood);
        EXPECT_EQ(texture->GetLevelCount(), 2u);
        EXPECT_EQ(texture->GetType(), generic ? TextureType_RGBA : TextureType_DXT1);
        if (generic) {
            EXPECT_TRUE(HaveSameData(*texture->GetImages()[0], *wood->GetImages()[0]));
        }
        EXPECT_TRUE(TextureRef().Find("art\\Extra")) << "though the record of the shader has no such channel";
        Inv::PopFrame();
    }
    EXPECT_TRUE(ReportCapture::HasError(std::string("SHADER USAGE -- Loading shared shader '") + s_Name + "'..."));
}

TEST_F(MaterialFiles, AModelsSharedShaderIsFoundFromTheRootByTheSwitch) {
    ASSERT_TRUE(ra::SaveSharedShader((std::string("GENERIC:") + s_Name + ".qsh").c_str(), *MakeOwnShader(s_Name)));
    ra::SetGenericLoad(true);
    Inv::PushFrame("model");
    const ShaderRef shader = ra::GetSharedShader(s_Name);
    Inv::PopFrame();
    EXPECT_TRUE(shader->IsShared());
    EXPECT_EQ(ra::GetSharedShader(s_Name), shader);
    EXPECT_FALSE(ReportCapture::HasWarning("using default"));
    ra::SetGenericLoad(false);
    const ShaderRef missing = ra::GetSharedShader("art\\other");
    EXPECT_TRUE(ReportCapture::HasWarning("Unable to load 'Shader' resource 'art\\other', using default!"));
    EXPECT_EQ(missing->GetChannelColour(CN_Diffuse).GetValue(), 0xFFFF00FFu);
}

TEST_F(MaterialFiles, NamesWithAnAliasTakeTheExtension) {
    ASSERT_TRUE(ra::SaveSharedShader("DATA:art\\stone.qsh", *MakeOwnShader("stone")));
    EXPECT_TRUE(ra::LoadSharedShaderGeneric("DATA:art\\stone"));
    EXPECT_TRUE(ra::LoadSharedShaderFinal("art\\stone.qsh"));
    EXPECT_FALSE(ra::LoadSharedShaderGeneric("art\\stone"));
}

TEST_F(MaterialFiles, OfASharedShaderNothingIsWrittenButTheName) {
    const std::unique_ptr<Shader> pShader = MakeOwnShader("art\\shared");
    pShader->SetChannelTexture(CN_Diffuse, AddTexture("art\\Wood"));
    pShader->SetShared(true);
    const std::string bytes = WriteFile([&](ByteStream& stream) { ra::WriteSharedShader(stream, *pShader); });
    EXPECT_EQ(bytes.substr(24),
              NamedFolder("SHRF", "art\\shared",
                          NamedData("SSHR", "art\\shared", PayloadBytes().Text("art\\shared").Get(), 1), 1));
    EXPECT_THROW(ra::ReadSharedShaderGeneric(*MakeReadStream(bytes)), Chunky::Exception) << "it holds no shader";
}

TEST_F(MaterialFiles, DamagedShaderFilesAreRefused) {
    const std::unique_ptr<Shader> pShader = MakeOwnShader("clay");
    pShader->SetChannelTexture(CN_Diffuse, AddTexture("art\\Wood"));
    const std::string whole = WriteFile([&](ByteStream& stream) { ra::WriteSharedShader(stream, *pShader); });
    const auto read = [](const std::string& bytes) { return ra::ReadSharedShaderGeneric(*MakeReadStream(bytes)); };
    ExpectEveryTruncationRefused(whole, read);
    // Any wrong byte: a shader or an exception, and nothing else.
    for (size_t place = 0; place < whole.size(); ++place) {
        std::string bytes = whole;
        bytes[place] = static_cast<char>(~bytes[place]);
        FaultOf([&] { EXPECT_TRUE(read(bytes)) << place; });
        Inv::PurgeUnreferenced();
    }
    EXPECT_THROW(ra::ReadSharedShaderFinal(*MakeReadStream(whole)), Chunky::Exception) << "generic textures";
    EXPECT_FALSE(ra::SaveSharedShader("NOWHERE:x.qsh", *pShader));
    EXPECT_TRUE(ReportCapture::HasWarning("RENDER ANIM -- NOWHERE:x.qsh: Unable to open file!"));
}

TEST_F(MaterialFiles, TexturesAreFoundByName) {
    const TextureRef wood = AddTexture("x", IMAGETYPE_RGB888);
    ASSERT_TRUE(ra::SaveTexture("GENERIC:art\\chunk.rtx", *wood.GetData()));
    ASSERT_TRUE(ra::SaveTexture("DATA:art\\picture.tga", *wood.GetData()));
    ra::SetGenericLoad(true);
    TextureRef texture;
    EXPECT_TRUE(texture.Get("art\\chunk"));
    EXPECT_EQ(texture->GetType(), TextureType_RGB);
    EXPECT_TRUE(HaveSameData(*texture->GetImages()[0], *wood->GetImages()[0]));
    EXPECT_TRUE(texture.Get("art\\picture"));
    EXPECT_EQ(texture->GetWidth(), 8u);
    EXPECT_FALSE(ReportCapture::HasWarning("using default"));
    ra::SetGenericLoad(false);
    EXPECT_TRUE(texture.Get("art\\chunk2"));
    EXPECT_EQ(GetPixel(*texture->GetImages()[0], 0, 0).GetValue(), 0xFFFF00FFu);
    EXPECT_TRUE(ReportCapture::HasWarning("Unable to load 'Texture' resource 'art\\chunk2', using default!"));
}

TEST_F(MaterialFiles, PicturesAreWrittenByTheirExtension) {
    const auto load = [](const char* pName) { return ra::TextureLoadGeneric(pName); };
    const std::unique_ptr<Texture> pBlocks = Image2Texture(MakeRandomImage(IMAGETYPE_DXT5, 16, 16, 3));
    ASSERT_TRUE(ra::SaveTexture("DATA:blocks.dds", *pBlocks));
    EXPECT_TRUE(HaveSameData(*load("DATA:blocks.dds")->GetImages()[0], *pBlocks->GetImages()[0]));
    const std::unique_ptr<Texture> pGrey = Image2Texture(MakeRandomImage(IMAGETYPE_PALETTE8, 4, 4));
    ASSERT_TRUE(ra::SaveTexture("DATA:grey.tga", *pGrey));
    EXPECT_EQ(GetPixel(*load("DATA:grey.tga")->GetImages()[0], 1, 2),
              ImageCast<Image_Palette>(pGrey->GetImages()[0].get())->GetPalette()[pGrey->GetImages()[0]->GetData()[9]]);
    ASSERT_TRUE(ra::SaveTexture("DATA:new.dds", *Image2Texture(MakeRandomImage(IMAGETYPE_RGBA32, 8, 8)), 3));
    EXPECT_EQ(load("DATA:new.dds")->GetType(), TextureType_DXT3);
    ASSERT_TRUE(ra::SaveTexture("DATA:tiny.dds", *Image2Texture(MakeRandomImage(IMAGETYPE_DXT1, 8, 2))));
    EXPECT_FALSE(load("DATA:tiny.dds")) << "no model that holds it could be read";
    EXPECT_TRUE(ReportCapture::HasWarning("8x2 pixels; a compressed texture has 4 or more a side"));
    EXPECT_FALSE(ra::SaveTexture("DATA:blocks.tga", *pBlocks));
    EXPECT_FALSE(ra::SaveTexture("DATA:what.gif", *pGrey));
    EXPECT_FALSE(load("DATA:nothing.tga"));
    EXPECT_FALSE(load("DATA:nothing.rtx"));
}

} // namespace
