#include "Tests/Shared_Tools/PVXExport/ExportFixture.h"

#include "Shared/Cross/RenderAnim/Shader.h"
#include "Shared_Tools/PVXExport/ModuleResources.h"
#include "Shared_Tools/PVXExport/TextureMatrix.h"
#include "Tests/Shared/Cross/RenderAnim/Image/PictureBytes.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ShaderExport : public ExportTest {
protected:
    scene::Bitmap& AddBitmap(const std::string& name, std::optional<scene::UVSettings> uv = scene::UVSettings{}) {
        const Bytes bytes = MakeTga(1, 1, 24);
        m_Temp.Write(name + ".tga", {bytes.begin(), bytes.end()});
        return m_Scene.Make<scene::Bitmap>(name, GetPath(name + ".tga"), uv, FILTER_SAT);
    }
};

TEST_F(ShaderExport, ColoursComeOverAsTheyStand) {
    scene::StandardSettings settings;
    settings.diffuse = {0.5f, 1.0f, 0.999f};
    settings.opacity = 0.5f;
    settings.selfIllum = 1.0f;
    settings.specularLevel = 0.05f;
    settings.twoSided = true;
    settings.transparency = TRANSP_ADDITIVE;
    AddPainted("Glow", settings);
    EXPECT_EQ(Export(), 1);
    EXPECT_THAT(m_Messages, IsEmpty());
    WithShader([](const Shader& shader) {
        EXPECT_EQ(shader.GetChannelColour(CN_Diffuse).GetValue(), 0xff000100u);
        EXPECT_EQ(shader.GetChannelColour(CN_Opacity).GetValue(), 0x7fffffffu);
        EXPECT_EQ(shader.GetChannelColour(CN_SelfIllumination).GetValue(), 0xffffffffu);
        EXPECT_EQ(shader.GetChannelColour(CN_SpecularLevel).GetValue(), 0xff000000u);
        EXPECT_TRUE(shader.IsTwoSided());
        EXPECT_EQ(shader.GetBlendSource(), 1);
        EXPECT_EQ(shader.GetBlendDestination(), 1);
    });
}

TEST_F(ShaderExport, ANodeWithoutMaterialShowsItsWireColour) {
    scene::AddMesh(m_Scene, "Bare", MakeQuad()).SetWireColor(1, 2, 3);
    EXPECT_EQ(Export(), 1);
    WithShader([](const Shader& shader) {
        EXPECT_STREQ(shader.GetName(), "Bare");
        EXPECT_EQ(shader.GetChannelColour(CN_Diffuse), (Colour{.b = 3, .g = 2, .r = 1, .a = 255}));
    });
    EXPECT_EQ(Export("Foo.pvx", {ID_EXPORT_MESHES, IDOK}), 1);
    EXPECT_THAT(m_Messages, IsEmpty()) << "nobody minds when no meshes are wanted";
}

TEST_F(ShaderExport, WhatCannotBeUnderstoodIsTold) {
    scene::StandardSettings shiny = WithMaps({{ID_DI, &m_Scene.Make<scene::OtherTexmap>("Spots", "Noise")},
                                              {ID_SS, &AddBitmap("Level")},
                                              {ID_RL, &AddBitmap("Plain", std::nullopt)}});
    shiny.specularLevel = 0.051f;
    AddPainted("Shiny", shiny);
    auto& inner = m_Scene.Make<scene::MultiMaterial>("Inner", std::vector<Mtl*>{m_pPaint});
    auto& lava = m_Scene.Make<scene::OtherMaterial>("Lava", "Raytrace");
    scene::AddMesh(m_Scene, "Outer", MakeQuad(),
                   &m_Scene.Make<scene::MultiMaterial>("Outer", std::vector<Mtl*>{&inner}));
    scene::AddMesh(m_Scene, "Hot", MakeQuad(), &lava);
    EXPECT_EQ(Export(), 0);
    std::string innerClass;
    inner.GetClassName(innerClass);
    char lavaId[40];
    std::snprintf(lavaId, sizeof(lavaId), "Class_ID(%X,%X)", lava.ClassID().PartA(), lava.ClassID().PartB());
    EXPECT_THAT(
        m_Messages,
        ElementsAre("Warning : Shader [Shiny] has a specular level that is not 0.  This may not render properly.",
                    "Error   : Unsupported texture type:[Noise] name:[Spots]",
                    "Warning : Texture [Plain] does not have a UVGen.",
                    "Warning : Shader [Shiny] has a specular level map specified.  This may not render properly.",
                    "Error   : Nested multi-sub objects not supported.  \"" + innerClass + "\" is nested.",
                    "Error   : Unsupported material type \"Lava\" [Raytrace] : " + std::string(lavaId)));
    EXPECT_TRUE(IsThere("Foo.pvx"));
}

TEST_F(ShaderExport, TilesAsBothDirectionsAgree) {
    const std::pair<int, int32_t> tilings[] = {{U_WRAP | V_WRAP, 1}, {U_MIRROR | V_MIRROR, 2}, {0, 0}, {U_WRAP, 1}};
    for (size_t i = 0; i < std::size(tilings); ++i) {
        scene::UVSettings uv;
        uv.tiling = tilings[i].first;
        AddPainted("Mat" + std::to_string(i), WithMaps({{ID_DI, &AddBitmap("Map" + std::to_string(i), uv)}}));
    }
    EXPECT_EQ(Export(), 0);
    EXPECT_THAT(m_Messages, ElementsAre("Error   : Mirroring is not properly supported in shader [Mat1].",
                                        "Warning : Texture [Map3] must have both U and V tile modes as the same.  "
                                        "Assuming tiling."));
    for (uint32_t i = 0; i < std::size(tilings); ++i)
        WithShader(
            [&](const Shader& shader) {
                EXPECT_EQ(shader.GetChannelTile(CN_Diffuse), tilings[i].second) << "tiling " << tilings[i].first;
                EXPECT_EQ(shader.GetChannelFilter(CN_Diffuse), 5);
            },
            i);
}

scene::UVSettings ScaledBy(float u, float v, int tiling = U_WRAP | V_WRAP) {
    scene::UVSettings uv;
    uv.transform = Matrix3({u, 0, 0}, {0, v, 0}, {0, 0, 1}, {0, 0, 0});
    uv.tiling = tiling;
    return uv;
}

TEST_F(ShaderExport, OneMatrixGoesIntoTheVerticesAndSeveralStayWithTheirChannels) {
    scene::StandardSettings settings =
        WithMaps({{ID_DI, &AddBitmap("A", ScaledBy(3, 4))}, {ID_SI, &AddBitmap("B", ScaledBy(3, 4))}});
    scene::StandardMaterial& shared = AddMaterial("Shared", settings);
    settings.maps[ID_SI].pMap = &AddBitmap("C", ScaledBy(3, 5));
    scene::StandardMaterial& differing = AddMaterial("Differing", settings);
    settings.maps[ID_SI].enabled = false;

    const glm::mat4 identity(1.0f);
    EXPECT_EQ(TextureMatrix::OfFace(&shared)[1].y, 4.0f);
    EXPECT_EQ(TextureMatrix::OfFace(&differing), identity);
    EXPECT_EQ(TextureMatrix::OfFace(nullptr), identity);
    EXPECT_EQ(TextureMatrix::OfFace(&AddMaterial("OneOff", settings))[1].y, 4.0f);

    scene::AddMesh(m_Scene, "OnDiffering", MakeQuad(), &differing);
    EXPECT_EQ(Export(), 1);
    WithShader([](const Shader& shader) {
        EXPECT_EQ(shader.GetChannelMatrix(CN_Diffuse)[1].y, 4.0f);
        EXPECT_EQ(shader.GetChannelMatrix(CN_SelfIllumination)[1].y, 5.0f);
    });

    glm::mat4 mirrored;
    ASSERT_TRUE(TextureMatrix::FromMap(&AddBitmap("D", ScaledBy(3, 4, U_MIRROR | V_MIRROR)), mirrored));
    EXPECT_EQ(mirrored[0].x, 6.0f);
    EXPECT_EQ(mirrored[1].y, 8.0f);
    EXPECT_EQ(mirrored[3].w, 1.0f);
}

} // namespace
