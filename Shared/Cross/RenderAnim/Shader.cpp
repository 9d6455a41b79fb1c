#include "Shared/Cross/RenderAnim/Shader.h"

#include "Shared/Cross/Glaze/Device.h"
#include "Shared/Cross/Glaze/Shader.h"
#include "Shared/Cross/RenderAnim/ShaderImp.h"
#include "Shared/Cross/RenderAnim/ShaderTypeInfo.h"

Inv::ResourceTypeInfo& Shader::GetTypeInfo() {
    static ShaderTypeInfo s_typeInfo;
    return s_typeInfo;
}

std::unique_ptr<Shader> Shader::Create() {
    gz::Device* pDevice = gz::GetDevice();
    return std::make_unique<ShaderImp>(pDevice ? pDevice->MakeShader() : nullptr);
}

const ShaderRef& GetNoShader() {
    static const ShaderRef s_noShader;
    return s_noShader;
}

bool Shader::IsOpaque() const { return GetBlendSource() == s_BlendOne && GetBlendDestination() == s_BlendZero; }

bool Shader::IsInvisible() const {
    const int32_t mode = GetChannelMode(CN_Diffuse);
    return GetBlendSource() == s_BlendSourceAlpha && GetBlendDestination() == s_BlendInverseSourceAlpha &&
           (mode == ChannelMode_Colour || mode == ChannelMode_Animated) && GetChannelColour(CN_Diffuse).a == 0;
}
