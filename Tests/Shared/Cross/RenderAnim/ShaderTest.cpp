#include "Shared/Cross/Glaze/Shader.h"
#include "Shared/Cross/RenderAnim/ShaderImp.h"
#include "Shared/Cross/RenderAnim/ShaderTypeInfo.h"
#include "Tests/Shared/Cross/RenderAnim/ModelFixture.h"

namespace {

class ShaderTest : public ModelFixture {
protected:
    ShaderImp m_Shader{gz::GetDevice()->MakeShader()};
};

TEST_F(ShaderTest, ChannelsCostNothingUntilWritten) {
    for (uint32_t n = 0; n < CN_Count; ++n)
        EXPECT_FALSE(m_Shader.OwnsChannel(n));
    m_Shader.SetChannelColour(2, m_Shader.GetChannelColour(2));
    m_Shader.SetChannelMatrix(2, glm::mat4(1.0f));
    EXPECT_FALSE(m_Shader.OwnsChannel(2));
    EXPECT_FALSE(m_Shader.IsDirty());
    m_Shader.SetChannelTile(2, 1);
    EXPECT_TRUE(m_Shader.OwnsChannel(2));
    EXPECT_TRUE(m_Shader.IsChannelDirty(2));
    EXPECT_FALSE(m_Shader.IsChannelDirty(1));
    m_Shader.SetChannelColour(6, Colour::FromValue(0x01020304));
    EXPECT_EQ(m_Shader.GetChannelAnimatedColour(6).GetValue(), 0x01020304u) << "animation starts from the colour";
    m_Shader.SetChannelAnimatedColour(6, Colour::FromValue(5));
    m_Shader.SetChannelColour(6, Colour::FromValue(0x01020304));
    EXPECT_EQ(m_Shader.GetChannelAnimatedColour(6).GetValue(), 5u) << "the colour was there already";
    EXPECT_THROW(m_Shader.GetChannelMode(CN_Count), std::runtime_error);
}

TEST_F(ShaderTest, BlendingDecidesWhatIsOpaqueAndInvisible) {
    EXPECT_TRUE(m_Shader.IsOpaque());
    m_Shader.SetBlendMode(1, 0);
    EXPECT_FALSE(m_Shader.IsDirty());
    m_Shader.SetBlendMode(6, 7);
    EXPECT_TRUE(m_Shader.IsDirty());
    EXPECT_FALSE(m_Shader.IsOpaque());
    EXPECT_FALSE(m_Shader.IsInvisible());
    m_Shader.SetChannelColour(CN_Diffuse, Colour::FromValue(0x00FFFFFF));
    EXPECT_TRUE(m_Shader.IsInvisible());
    m_Shader.SetChannelMode(CN_Diffuse, 3);
    EXPECT_TRUE(m_Shader.IsInvisible());
    m_Shader.SetChannelMode(CN_Diffuse, 1);
    EXPECT_FALSE(m_Shader.IsInvisible());
}

TEST_F(ShaderTest, MaterialsAreFoundByWhateverNameTheyHave) {
    for (const char* pName : {"Metal.001", "ns:Metal", "a\\b", "Metal.002"}) {
        const ShaderRef made = MakeShader(pName);
        ShaderRef found;
        EXPECT_TRUE(found.Find(pName)) << pName;
        EXPECT_EQ(found, made) << pName;
    }
    std::string key;
    ShaderTypeInfo().TranslateName(key, "DATA:Art\\Shaders\\Hull.qsh");
    EXPECT_EQ(key, "art/shaders/hull");
}

} // namespace
