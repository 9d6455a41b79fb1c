#include "Tests/Shared_Tools/PVXExport/ExportFixture.h"

#include "Shared/Cross/RenderAnim/MeshGroup.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"
#include "Shared/Cross/RenderAnim/Shader.h"
#include "Shared/Cross/RenderAnim/Texture.h"
#include "Shared_Tools/PVXExport/ModuleResources.h"
#include "Shared_Tools/PVXExport/SharedTextureName.h"
#include "Tests/Shared/Cross/RenderAnim/Image/PictureBytes.h"
#include "Tests/Shared_Tools/PVXExport/ProjectFolder.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class TextureExport : public ExportTest {
protected:
    // In the project's source tree unless the name leads out of it.
    std::string WritePicture(const std::string& name, const Bytes& bytes) {
        m_Temp.Write("DataSource/" + name, {bytes.begin(), bytes.end()});
        return GetPath("DataSource/" + name);
    }
    scene::Bitmap& AddBitmap(const std::string& path, scene::UVSettings uv = {}) {
        return m_Scene.Make<scene::Bitmap>("Map", path, uv);
    }
    size_t CountTextures() const {
        const std::string bytes = ReadBytes("Foo.pvx");
        size_t count = 0;
        for (size_t place = 0; (place = bytes.find("FOLDTXTR", place)) != bytes.npos; ++place)
            ++count;
        return count;
    }
    static std::string LevelOf(const Texture& texture, uint32_t level = 0) {
        const auto [pImage, imageLevel] = texture.GetLevel(level);
        const std::span<const uint8_t> data = pImage->GetData(imageLevel);
        return {reinterpret_cast<const char*>(data.data()), data.size()};
    }

    ProjectFolder m_Project{m_Temp};
};

TEST_F(TextureExport, TheTextureEqualsThePicture) {
    const Bytes opaque = MakeTga(3, 2, 24);
    const Bytes blocks = MakeDds(8, 8, '5', 3);
    AddPainted("Wall", WithMaps({{ID_DI, &AddBitmap(WritePicture("Art/Foo/Wood.tga", opaque))},
                                 {ID_RL, &AddBitmap(WritePicture("Art/Sky.dds", blocks))}}));
    EXPECT_EQ(Export(), 1);
    EXPECT_THAT(m_Messages, IsEmpty());
    EXPECT_EQ(CountTextures(), 2u);
    WithShader([&](const Shader& shader) {
        const TextureRef& wood = shader.GetChannelTexture(CN_Diffuse);
        ASSERT_TRUE(wood);
        EXPECT_EQ(shader.GetChannelMode(CN_Diffuse), ChannelMode_Texture);
        EXPECT_STREQ(wood->GetName(), "Art\\Foo\\Wood");
        EXPECT_STREQ(wood->GetImages()[0]->GetName(), "Art\\Foo\\Wood");
        EXPECT_EQ(wood->GetWidth(), 3u);
        EXPECT_EQ(wood->GetLevelCount(), 1u);
        std::string pixels;
        for (size_t i = 18; i < opaque.size(); i += 3)
            pixels += {static_cast<char>(opaque[i]), static_cast<char>(opaque[i + 1]), static_cast<char>(opaque[i + 2]),
                       '\xFF'};
        EXPECT_EQ(LevelOf(*wood.GetData()), pixels);

        const TextureRef& sky = shader.GetChannelTexture(CN_Reflection);
        ASSERT_TRUE(sky);
        EXPECT_EQ(sky->GetType(), TextureType_DXT5);
        ASSERT_EQ(sky->GetLevelCount(), 3u);
        EXPECT_EQ(LevelOf(*sky.GetData()) + LevelOf(*sky.GetData(), 1) + LevelOf(*sky.GetData(), 2),
                  std::string(blocks.begin() + 128, blocks.end()));
    });
}

TEST_F(TextureExport, APictureIsOneTextureHoweverOftenItIsUsed) {
    const std::string path = WritePicture("Art/Wood.tga", MakeTga(2, 2, 32));
    WritePicture("Art/Wood.bmp", MakeBmp(2, 2, 24));
    AddPainted("A", WithMaps({{ID_DI, &AddBitmap(path)}, {ID_OP, &AddBitmap(GetPath("DataSource/ART/WOOD.TGA"))}}));
    // The name is the same, so the first one stands for both.
    AddPainted("B", WithMaps({{ID_DI, &AddBitmap(path)}, {ID_SI, &AddBitmap(GetPath("DataSource/Art/Wood.bmp"))}}));
    EXPECT_EQ(Export(), 1);
    EXPECT_THAT(m_Messages, IsEmpty());
    EXPECT_EQ(CountTextures(), 1u);
    WithModel([](const RenderModel& model) {
        const ra::MeshGroup& group = *model.GetMeshGroup();
        const TextureRef& texture = group.GetShader(0)->GetChannelTexture(CN_Diffuse);
        EXPECT_TRUE(texture);
        EXPECT_EQ(group.GetShader(0)->GetChannelTexture(CN_Opacity), texture);
        EXPECT_EQ(group.GetShader(1)->GetChannelTexture(CN_SelfIllumination), texture);
    });
    m_Scene.AddFileProperty("IgnoreShaders", {});
    EXPECT_EQ(Export(), 1);
    EXPECT_EQ(CountTextures(), 0u) << "ignored shaders take their textures with them";
}

TEST_F(TextureExport, TexturesOfMeshesOfOthersComeAlong) {
    scene::Node& node =
        AddPainted("Wall", WithMaps({{ID_DI, &AddBitmap(WritePicture("Wood.tga", MakeTga(2, 2, 32)))}}));
    scene::MakeXRef(node, GetPath("DataSource/Art/Bar/REFERENCE/REF.gltf"));
    EXPECT_EQ(Export(), 1);
    EXPECT_EQ(CountTextures(), 1u) << "their shaders are in the file too";
}

TEST_F(TextureExport, AMissingPictureIsAWarning) {
    const std::string missing = GetPath("DataSource/Art/None.tga");
    const std::string broken = WritePicture("Art/Broken.tga", Bytes(30));
    const std::string unknown = WritePicture("Art/Movie.avi", Bytes(30));
    AddPainted("Wall", WithMaps({{ID_DI, &AddBitmap(missing)},
                                 {ID_SP, &AddBitmap(broken)},
                                 {ID_SI, &AddBitmap(unknown)},
                                 {ID_OP, &AddBitmap(WritePicture("Art/Wood.tga", MakeTga(1, 1, 24)))}}));
    EXPECT_EQ(Export(), 1) << "a warning is no failure";
    EXPECT_THAT(m_Messages, ElementsAre("Warning : Unable to load texture '" + missing + "'!",
                                        "Warning : Unable to load texture '" + broken + "'!",
                                        "Warning : Unable to load texture '" + unknown + "'!"));
    EXPECT_EQ(CountTextures(), 1u);
    WithShader([](const Shader& shader) {
        EXPECT_EQ(shader.GetChannelMode(CN_Diffuse), ChannelMode_Colour);
        EXPECT_FALSE(shader.GetChannelTexture(CN_Diffuse));
        EXPECT_EQ(shader.GetChannelMode(CN_Opacity), ChannelMode_Texture);
        EXPECT_EQ(shader.GetChannelTile(CN_Diffuse), 1) << "the settings stay";
    });
    EXPECT_EQ(Export("Foo.pvx", {ID_EXPORT_MESHES, IDOK}), 1);
    EXPECT_THAT(m_Messages, IsEmpty()) << "nobody minds when no meshes are wanted";
}

TEST_F(TextureExport, APictureOutsideOfEveryProjectIsInNoFile) {
    AddPainted("Wall", WithMaps({{ID_DI, &AddBitmap(WritePicture("../Elsewhere/Wood.tga", MakeTga(1, 1, 24)))},
                                 {ID_SI, &AddBitmap(WritePicture("../Elsewhere/Stone.tga", MakeTga(2, 1, 24)))},
                                 {ID_OP, &AddBitmap(GetPath("Elsewhere/None.tga"))}}));
    EXPECT_EQ(Export(), 1);
    EXPECT_THAT(m_Messages, ElementsAre("Warning : Unable to load texture '" + GetPath("Elsewhere/None.tga") + "'!"));
    EXPECT_EQ(CountTextures(), 0u);
    const std::string log = ReadBytes("Foo.log");
    EXPECT_THAT(log, testing::HasSubstr("Wood.tga': lies in no project's source folder"));
    EXPECT_THAT(log, testing::HasSubstr("Stone.tga': lies in no project's source folder"));
    EXPECT_THAT(log, testing::Not(testing::HasSubstr("Duplicate")));
    WithShader([](const Shader& shader) { EXPECT_FALSE(shader.GetChannelTexture(CN_Diffuse)); });
}

TEST_F(TextureExport, AShaderIsSharedByTheNameOfItsTexture) {
    EXPECT_TRUE(OmbrelSharedShader::IsSharedTextureName("art\\x\\A_TEXTURE_Share_b"));
    EXPECT_FALSE(OmbrelSharedShader::IsSharedTextureName("art\\texture\\share"));
    EXPECT_THROW(OmbrelSharedShader::IsSharedTextureName(nullptr), std::runtime_error);
    scene::Bitmap& map = AddBitmap(WritePicture("Art/Texture_Share_Rock.tga", MakeTga(1, 1, 24)));
    AddPainted("Rock", WithMaps({{ID_DI, &map}}));
    AddPainted("Cliff", WithMaps({{ID_SI, &map}}));
    EXPECT_EQ(Export(), 1);
    WithModel([](const RenderModel& model) {
        EXPECT_STREQ(model.GetMeshGroup()->GetShader(0)->GetName(), "Art\\Texture_Share_Rock");
        EXPECT_STREQ(model.GetMeshGroup()->GetShader(1)->GetName(), "Cliff");
        EXPECT_EQ(model.GetMeshGroup()->GetMesh(0)->GetShader(0), model.GetMeshGroup()->GetShader(0));
    });
}

TEST_F(TextureExport, PlacementFollowsTheMap) {
    const std::string path = WritePicture("Wood.tga", MakeTga(1, 1, 24));
    scene::UVSettings moved;
    moved.transform = IdentityMatrix();
    (*moved.transform)[3] = {0.25f, 0.5f, 0.0f};
    moved.mapChannel = 3;
    AddPainted("Moved", WithMaps({{ID_DI, &AddBitmap(path, moved)}, {ID_SP, &AddBitmap(path, moved)}}));
    scene::UVSettings sphere;
    sphere.environment = true;
    AddPainted("Mirror", WithMaps({{ID_RL, &AddBitmap(path, sphere)}}));
    EXPECT_EQ(Export(), 1);
    EXPECT_THAT(m_Messages, IsEmpty());
    const glm::mat4 identity(1.0f);
    WithShader([&](const Shader& shader) {
        for (const ShaderChannel n : {CN_Diffuse, CN_Specular}) {
            EXPECT_EQ(shader.GetChannelTexGen(n), 2);
            EXPECT_EQ(shader.GetChannelMatrix(n), identity);
            EXPECT_EQ(shader.GetChannelBakedMatrix(n)[3], glm::vec4(0.25f, 0.5f, 0, 1)) << "is in the vertices";
        }
    });
    WithShader(
        [&](const Shader& shader) {
            EXPECT_EQ(shader.GetChannelTexGen(CN_Reflection), 6);
            EXPECT_EQ(shader.GetChannelMatrix(CN_Reflection)[0].x, 0.5f);
            EXPECT_EQ(shader.GetChannelMatrix(CN_Reflection)[3], glm::vec4(0.5f, 0.5f, 0, 1));
            EXPECT_EQ(shader.GetChannelBakedMatrix(CN_Reflection), identity);
        },
        1);
}

} // namespace
