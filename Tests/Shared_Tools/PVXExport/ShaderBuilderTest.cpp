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
    scene::Bitmap& AddBitmap(const std::string& name, scene::UVSettings uv = {}) {
        return m_Scene.Make<scene::Bitmap>(name, WritePicture(name), uv, FILTER_SAT);
    }
    std::string WritePicture(const std::string& name) {
        const Bytes bytes = MakeTga(1, 1, 24);
        m_Temp.Write(name + ".tga", {bytes.begin(), bytes.end()});
        return GetPath(name + ".tga");
    }
    void AddQuadWith(Mtl& material) {
        scene::AddMesh(m_Scene, "On" + std::string(material.GetName()), MakeQuad(), &material);
    }
};

TEST_F(ShaderExport, ColoursComeOverAsTheyStand) {
    scene::StandardSettings settings;
    settings.diffuse = {0.5f, 1.0f, 0.999f};
    settings.opacity = 0.5f;
    settings.selfIllum = 1.0f;
    settings.twoSided = true;
    settings.transparency = TRANSP_ADDITIVE;
    AddQuadWith(AddMaterial("Paint", settings));
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
    EXPECT_THAT(m_Messages, ElementsAre("Warning : Object [Bare] has no material assigned to it."));
    WithShader([](const Shader& shader) {
        EXPECT_STREQ(shader.GetName(), "Bare");
        EXPECT_EQ(shader.GetChannelColour(CN_Diffuse), (Colour{.b = 3, .g = 2, .r = 1, .a = 255}));
    });
    m_Presses = {ID_EXPORT_MESHES};
    EXPECT_EQ(Export(), 1);
    EXPECT_THAT(m_Messages, IsEmpty()) << "nobody minds when no meshes are wanted";
}

TEST_F(ShaderExport, WhatCannotBeUnderstoodIsTold) {
    scene::StandardSettings shiny;
    shiny.specularLevel = 0.051f;
    shiny.maps[ID_DI].pMap = &m_Scene.Make<scene::OtherTexmap>("Spots", "Noise");
    shiny.maps[ID_SS].pMap = &AddBitmap("Level");
    AddQuadWith(AddMaterial("Shiny", shiny));
    scene::StandardSettings dull;
    dull.specularLevel = 0.05f;
    AddQuadWith(AddMaterial("Dull", dull));
    auto& inner = m_Scene.Make<scene::MultiMaterial>("Inner", std::vector<Mtl*>{&AddMaterial("Deep")});
    AddQuadWith(m_Scene.Make<scene::MultiMaterial>("Outer", std::vector<Mtl*>{&inner}));
    auto& lava = m_Scene.Make<scene::OtherMaterial>("Lava", "Raytrace");
    AddQuadWith(lava);
    EXPECT_EQ(Export(), 0);
    std::string innerClass;
    inner.GetClassName(innerClass);
    char lavaLine[200];
    std::snprintf(lavaLine, sizeof(lavaLine),
                  "Error   : Unsupported material type \"Lava\" [Raytrace] : Class_ID(%X,%X)", lava.ClassID().PartA(),
                  lava.ClassID().PartB());
    EXPECT_THAT(
        m_Messages,
        ElementsAre("Warning : Shader [Shiny] has a specular level that is not 0.  This may not render properly.",
                    "Error   : Unsupported texture type:[Noise] name:[Spots]",
                    "Warning : Shader [Shiny] has a specular level map specified.  This may not render properly.",
                    "Error   : Nested multi-sub objects not supported.  \"" + innerClass + "\" is nested.", lavaLine));
    EXPECT_TRUE(IsThere("Foo.pvx"));
}

TEST_F(ShaderExport, TilesAsBothDirectionsAgree) {
    const std::pair<int, int32_t> tilings[] = {{U_WRAP | V_WRAP, 1}, {U_MIRROR | V_MIRROR, 2}, {0, 0}, {U_WRAP, 1}};
    uint32_t index = 0;
    for (const auto& [tiling, expected] : tilings) {
        scene::UVSettings uv;
        uv.tiling = tiling;
        scene::StandardSettings settings;
        const std::string name = std::to_string(index++);
        settings.maps[ID_DI].pMap = &AddBitmap("Map" + name, uv);
        AddQuadWith(AddMaterial("Mat" + name, settings));
    }
    EXPECT_EQ(Export(), 0);
    EXPECT_THAT(m_Messages, ElementsAre("Error   : Mirroring is not properly supported in shader [Mat1].",
                                        "Warning : Texture [Map3] must have both U and V tile modes as the same.  "
                                        "Assuming tiling."));
    for (uint32_t i = 0; i < index; ++i)
        WithShader(
            [&](const Shader& shader) {
                EXPECT_EQ(shader.GetChannelTile(CN_Diffuse), tilings[i].second) << "tiling " << tilings[i].first;
                EXPECT_EQ(shader.GetChannelFilter(CN_Diffuse), 5);
            },
            i);
}

Matrix3 ScaleBy(float u, float v) {
    Matrix3 m = IdentityMatrix();
    m[0].x = u;
    m[1].y = v;
    return m;
}

TEST_F(ShaderExport, OneMatrixGoesIntoTheVerticesAndSeveralStayWithTheirChannels) {
    scene::UVSettings uv;
    uv.transform = ScaleBy(3, 4);
    scene::StandardSettings settings;
    settings.maps[ID_DI].pMap = &AddBitmap("A", uv);
    settings.maps[ID_SI].pMap = &AddBitmap("B", uv);
    scene::StandardMaterial& shared = AddMaterial("Shared", settings);
    uv.transform = ScaleBy(3, 5);
    settings.maps[ID_SI].pMap = &AddBitmap("C", uv);
    scene::StandardMaterial& differing = AddMaterial("Differing", settings);

    const glm::mat4 identity(1.0f);
    EXPECT_EQ(TextureMatrix::OfFace(&shared)[1].y, 4.0f);
    EXPECT_EQ(TextureMatrix::OfFace(&differing), identity);
    EXPECT_EQ(TextureMatrix::OfFace(nullptr), identity);
    differing.GetSettings().maps[ID_SI].enabled = false;
    EXPECT_EQ(TextureMatrix::OfFace(&differing)[1].y, 4.0f);
    differing.GetSettings().maps[ID_SI].enabled = true;

    AddQuadWith(shared);
    AddQuadWith(differing);
    EXPECT_EQ(Export(), 1);
    WithShader([&](const Shader& shader) { EXPECT_EQ(shader.GetChannelMatrix(CN_Diffuse), identity); });
    WithShader(
        [](const Shader& shader) {
            EXPECT_EQ(shader.GetChannelMatrix(CN_Diffuse)[1].y, 4.0f);
            EXPECT_EQ(shader.GetChannelMatrix(CN_SelfIllumination)[1].y, 5.0f);
        },
        1);
}

TEST_F(ShaderExport, AMirroredMapIsScaledByTwo) {
    scene::UVSettings uv;
    uv.transform = ScaleBy(3, 4);
    uv.tiling = U_MIRROR | V_MIRROR;
    glm::mat4 matrix;
    ASSERT_TRUE(TextureMatrix::FromMap(&AddBitmap("A", uv), matrix));
    EXPECT_EQ(matrix[0].x, 6.0f);
    EXPECT_EQ(matrix[1].y, 8.0f);
    EXPECT_EQ(matrix[3].w, 1.0f);
    EXPECT_FALSE(TextureMatrix::FromMap(&m_Scene.Make<scene::OtherTexmap>("N", "Noise"), matrix));
    EXPECT_FALSE(TextureMatrix::FromMap(&m_Scene.Make<scene::Bitmap>("B", "b.tga", std::nullopt), matrix));
}

TEST_F(ShaderExport, AMapWithoutPlacementIsAWarning) {
    scene::StandardSettings settings;
    settings.maps[ID_DI].pMap = &m_Scene.Make<scene::Bitmap>("Plain", WritePicture("plain"), std::nullopt);
    AddQuadWith(AddMaterial("Paint", settings));
    EXPECT_EQ(Export(), 1);
    EXPECT_THAT(m_Messages, ElementsAre("Warning : Texture [Plain] does not have a UVGen."));
}

} // namespace
