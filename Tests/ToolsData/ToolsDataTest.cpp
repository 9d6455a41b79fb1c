// What the tools bring with them for what is missing, as the sample's project names it.
#include "Shared/Cross/Pipeline/ToolsData.h"

#include <string>

#include "Shared/Cross/Pipeline/Pipeline.h"
#include "Shared/Cross/RenderAnim/Files/ResourceLoaders.h"
#include "Shared/Cross/RenderAnim/Final/FinalFile.h"
#include "Shared/Cross/RenderAnim/Generic/GenericFile.h"
#include "Shared/Cross/RenderAnim/LoadSwitch.h"
#include "Shared/Cross/RenderAnim/RenderModelTypeInfo.h"
#include "Shared/Cross/RenderAnim/ShaderTypeInfo.h"
#include "Shared/Cross/RenderAnim/Texture.h"
#include "Shared/PC/FileSystem/OSFile.h"
#include "Tests/Shared/Cross/RenderAnim/ModelFixture.h"

namespace {

// At both levels.
class MissingAssets : public ModelFixture, public testing::WithParamInterface<bool> {
protected:
    MissingAssets() {
        const std::string scene = std::string(PVX_SOURCE_FOLDER) + "/Samples/Vanguard/DataSource/any.glb";
        EXPECT_EQ(Pipeline::Initialize(OSFile::FromNative(scene).c_str()), 0) << Pipeline::GetInitializeError();
        EXPECT_TRUE(m_ToolsData.Map());
        ra::SetGenericLoad(GetParam());
        ra::InstallResourceLoaders();
        ra::InstallGenericModelLoader();
        ra::InstallFinalModelLoader();
    }
    ~MissingAssets() override {
        ra::SetGenericLoad(false);
        m_ToolsData.Unmap();
        Pipeline::Shutdown();
    }

    ToolsData m_ToolsData;
};

TEST_P(MissingAssets, AModelStandsInForEveryOther) {
    RenderModelRef model;
    ASSERT_TRUE(model.Get("art/ebps/no/such/model"));
    EXPECT_TRUE(ReportCapture::HasWarning("Unable to load 'Render Model' resource 'art/ebps/no/such/model', using"));
    const ra::MeshGroup& group = *model->GetMeshGroup();
    ASSERT_EQ(group.GetMeshCount(), 1u);
    EXPECT_EQ(group.GetMesh(0)->GetVertexSet(ra::Mesh::Poly_High)->GetSize(), 24u);
    EXPECT_EQ(group.GetMesh(0)->GetPolyCount(ra::Mesh::Poly_High), 8u);
    ASSERT_EQ(group.GetShaderCount(), 1u);
    EXPECT_EQ(group.GetShader(0)->GetChannelColour(CN_Diffuse), s_MissingTextureColour);
    EXPECT_EQ(group.GetBoundVolume().GetBox().halfExtents, glm::vec3(1));
    EXPECT_FALSE(ReportCapture::HasWarning("RENDER ANIM -- art/ebps/missingmodel"));
}

TEST_P(MissingAssets, AShaderStandsIn) {
    EXPECT_EQ(GetDefaultShader()->GetChannelColour(CN_SelfIllumination), s_MissingTextureColour);
    ShaderRef shader;
    ASSERT_TRUE(shader.Get("no such shader"));
    EXPECT_EQ(shader->GetChannelColour(CN_SelfIllumination), s_MissingTextureColour);
    EXPECT_FALSE(ReportCapture::HasWarning("missingshader"));
}

TEST_P(MissingAssets, ATextureStandsIn) {
    TextureRef texture;
    ASSERT_TRUE(texture.Get("no/such/texture"));
    EXPECT_EQ(texture->GetWidth(), 16u);
    EXPECT_FALSE(ReportCapture::HasWarning("TEXTURES -- 'DATA:art/textures/missingtexture"));
}

INSTANTIATE_TEST_SUITE_P(Levels, MissingAssets, testing::Bool(),
                         [](const auto& level) { return level.param ? "Generic" : "Final"; });

} // namespace
