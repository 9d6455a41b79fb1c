#include "Shared/Cross/RenderAnim/Texture.h"

#include "Shared/Cross/Assist/DebugToolDumpInfo.h"
#include "Shared/Cross/Glaze/Texture.h"
#include "Shared/Cross/RenderAnim/Image/MipMap.h"
#include "Shared/Cross/RenderAnim/TextureConvert.h"
#include "Tests/Shared/Cross/RenderAnim/Image/ImageTesting.h"
#include "Tests/Shared/Cross/RenderAnim/ModelFixture.h"

namespace {

class TextureTest : public ModelFixture {
protected:
    static TextureRef Add(const char* pName, uint32_t side = 4) {
        std::unique_ptr<Texture> pTexture = Image2Texture(MakeRandomImage(IMAGETYPE_RGBA32, side, side));
        pTexture->SetName(pName);
        TextureRef texture;
        texture.Set(std::move(pTexture));
        return texture;
    }
};

TEST_F(TextureTest, TheTypeFollowsFromThePicture) {
    std::string names;
    for (const ImageType type : {IMAGETYPE_RGB565, IMAGETYPE_RGBA32, IMAGETYPE_RGBA5551, IMAGETYPE_LUMINANCE8,
                                 IMAGETYPE_PALETTE8, IMAGETYPE_DXT1, IMAGETYPE_DXT3, IMAGETYPE_DXT5})
        names += std::string(GetTextureTypeName(GuessFormat(type))) + ' ';
    EXPECT_EQ(names, "RGB RGBA RGBAMask Luminance Palette DXT1 DXT3 DXT5 ");
    EXPECT_STREQ(GetTextureTypeName(8), "Invalid");
}

TEST_F(TextureTest, TheDeviceLooksOnAtThePicture) {
    std::unique_ptr<Image> pImage = MakeRandomImage(IMAGETYPE_DXT1, 16, 8, 3);
    const void* pPixels = pImage->GetData(1).data();
    std::unique_ptr<Texture> pTexture = Image2Texture(std::move(pImage));
    const std::shared_ptr<gz::Texture> pDevice = pTexture->GetDeviceTexture();
    ASSERT_TRUE(pDevice);
    EXPECT_EQ(pDevice->GetFormat(), TextureType_DXT1);
    EXPECT_EQ(pDevice->GetLevelCount(), 3u);
    EXPECT_EQ(pDevice->GetLevel(1).data(), pPixels) << "pixels aren't copied";
    pTexture.reset();
    EXPECT_EQ(pDevice->GetLevel(2).size(), 8u) << "and stay as long as somebody looks at them";
}

TEST_F(TextureTest, LevelsHaveToFitEachOther) {
    using Sides = std::vector<std::pair<uint32_t, uint32_t>>;
    const auto make = [](const Sides& sides, ImageType lastType = IMAGETYPE_RGBA32, uint32_t lastMips = 1) {
        std::vector<std::unique_ptr<Image>> images;
        for (const auto& [width, height] : sides)
            images.push_back(
                MakeRandomImage(images.size() + 1 < sides.size() ? IMAGETYPE_RGBA32 : lastType, width, height));
        if (!images.empty())
            images.back()->SetMipCount(lastMips);
        return images;
    };
    Texture texture;
    EXPECT_TRUE(texture.SetImages(make({{8, 2}, {4, 1}, {2, 1}})));
    for (const Sides& sides : {Sides{{8, 2}, {4, 2}}, Sides{{2, 2}, {1, 1}, {1, 1}}, Sides{}})
        EXPECT_FALSE(texture.SetImages(make(sides)));
    EXPECT_FALSE(texture.SetImages(make({{4, 4}, {2, 2}}, IMAGETYPE_RGBA32, 2)));
    EXPECT_FALSE(texture.SetImages(make({{4, 4}, {2, 2}}, IMAGETYPE_RGB888)));
    EXPECT_EQ(texture.GetLevelCount(), 3u) << "nothing has changed";
    EXPECT_EQ(texture.GetSize(), (16u + 4 + 2) * 4);
}

TEST_F(TextureTest, MipsAreMadeOnRequest) {
    const std::unique_ptr<Texture> pPlain = Image2Texture(MakeRandomImage(IMAGETYPE_RGBA32, 8, 4));
    EXPECT_EQ(pPlain->GetLevelCount(), 1u);
    const std::unique_ptr<Texture> pTexture =
        Image2Texture(MakeRandomImage(IMAGETYPE_RGBA32, 8, 4), {.makeMips = true});
    ASSERT_GE(pTexture->GetLevelCount(), 3u);
    const std::unique_ptr<Image> pHalf = CreateMipMap(*Texture2Image(*pPlain, 0));
    EXPECT_TRUE(HaveSameData(*Texture2Image(*pTexture, 1), *pHalf));
    EXPECT_EQ(Image2Texture(MakeRandomImage(IMAGETYPE_DXT5, 16, 16, 2), {.makeMips = true})->GetLevelCount(), 2u)
        << "a picture with levels keeps them";
}

TEST_F(TextureTest, WhatIsTooLargeShrinks) {
    std::unique_ptr<Image> pImage = MakeRandomImage(IMAGETYPE_RGBA32, 16, 4);
    pImage->SetName("art\\wide");
    const std::unique_ptr<Texture> pTexture = Image2Texture(std::move(pImage), {.maxSide = 8});
    EXPECT_EQ(pTexture->GetWidth(), 8u);
    EXPECT_EQ(pTexture->GetHeight(), 2u);
    EXPECT_STREQ(pTexture->GetImages()[0]->GetName(), "art\\wide");
    EXPECT_TRUE(ReportCapture::HasWarning("Creating temporary image for texture downsizing. [art\\wide]"));
    EXPECT_EQ(Image2Texture(MakeRandomImage(IMAGETYPE_DXT1, 16, 16, 3), {.maxSide = 8})->GetLevelCount(), 2u);
    EXPECT_EQ(Image2Texture(MakeRandomImage(IMAGETYPE_RGB888, 17, 3), {.maxSide = 8})->GetHeight(), 1u);
    EXPECT_FALSE(Image2Texture(MakeRandomImage(IMAGETYPE_DXT1, 16, 16), {.maxSide = 8}));
}

TEST_F(TextureTest, LevelsComeBackAsImages) {
    const std::unique_ptr<Texture> pTexture =
        Image2Texture(MakeRandomImage(IMAGETYPE_PALETTE8, 8, 8), {.makeMips = true});
    const std::unique_ptr<Image> pLevel = Texture2Image(*pTexture, 1);
    EXPECT_EQ(pLevel->GetWidth(), 4u);
    EXPECT_EQ(ImageCast<Image_Palette>(pLevel.get())->GetPalette(),
              ImageCast<Image_Palette>(pTexture->GetImages()[0].get())->GetPalette());
    EXPECT_TRUE(HaveSameData(*Texture2Image(*pTexture), *pTexture->GetImages()[0]));
    EXPECT_FALSE(Texture2Image(*pTexture, 9));
    EXPECT_TRUE(ReportCapture::HasWarning("Mip level doesn't exist in Texture2Image()"));
    EXPECT_FALSE(Texture2Image(Texture()));
    EXPECT_TRUE(ReportCapture::HasWarning("Unable to do texture-to-image conversion"));
}

TEST_F(TextureTest, ColoursAreCompressedOnTheWayOut) {
    const std::unique_ptr<Texture> pColours = Image2Texture(MakeRandomImage(IMAGETYPE_RGBA32, 8, 8));
    const std::pair<uint32_t, ImageType> kinds[] = {{1, IMAGETYPE_DXT1}, {3, IMAGETYPE_DXT3}, {5, IMAGETYPE_DXT5}};
    for (const auto& [useDXTC, type] : kinds)
        EXPECT_EQ(Texture2Image(*pColours, 0, useDXTC)->GetType(), type);
    EXPECT_EQ(Texture2Image(*Image2Texture(MakeRandomImage(IMAGETYPE_RGB565, 8, 8)), 0, 1)->GetType(), IMAGETYPE_DXT1);
    for (const ImageType type : {IMAGETYPE_LUMINANCE8, IMAGETYPE_PALETTE8, IMAGETYPE_DXT5})
        EXPECT_EQ(Texture2Image(*Image2Texture(MakeRandomImage(type, 8, 8)), 0, 1)->GetType(), type);
    EXPECT_FALSE(ReportCapture::HasWarning("Unable"));
    EXPECT_FALSE(Texture2Image(*Image2Texture(MakeRandomImage(IMAGETYPE_RGBA32, 12, 8)), 0, 1));
    EXPECT_TRUE(ReportCapture::HasWarning("Unable to compress RGB/RGBA texture to DXTC"));
}

// The name is found as the exporter enters it and as a shader's channel names it.
TEST_F(TextureTest, ShortNamesAreFoundAsTheyStand) {
    for (const char* pName : {"art\\Foo\\Wood", "art\\Foo.v2\\Wood", "art\\wood.old", "art/wood", "Wood.tga", "wood"}) {
        const TextureRef texture = Add(pName);
        TextureRef found;
        EXPECT_TRUE(found.Find(pName)) << pName;
        EXPECT_EQ(found, texture) << pName;
        EXPECT_STREQ(found->GetName(), pName) << "case stays";
    }
    TextureRef found;
    EXPECT_TRUE(found.Find("ART\\foo\\wOOD"));
    EXPECT_FALSE(found.Find("art\\Foo\\Woo"));
    std::string name;
    Texture::GetTypeInfo().TranslateName(name, "DATA:Art\\Foo.v2\\Wood.tga");
    EXPECT_EQ(name, "art/foo.v2/wood");
}

TEST_F(TextureTest, ADumpTellsItsSizeAndType) {
    const TextureRef square = Add("square", 8);
    const TextureRef odd = Add("odd", 6);
    Inv::DebugToolDumpInfo dump;
    Inv::Dump(dump);
    std::vector<std::string> details;
    for (const auto& item : dump.GetItems())
        details.push_back(item.details);
    EXPECT_THAT(details, testing::UnorderedElementsAre("256,8,8,Yes,RGBA", "144,6,6,No,RGBA"));
}

} // namespace
