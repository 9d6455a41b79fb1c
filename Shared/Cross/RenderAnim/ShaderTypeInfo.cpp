#include "Shared/Cross/RenderAnim/ShaderTypeInfo.h"

#include <algorithm>

#include "Shared/Cross/Assist/DebugToolDumpInfo.h"
#include "Shared/Cross/FileSystem/Paths/FilePathUtil.h"
#include "Shared/Cross/RenderAnim/LoadSwitch.h"
#include "Shared/Cross/RenderAnim/Shader.h"
#include "Shared/Cross/Util/Hash.h"

namespace {

constexpr char s_MissingShader[] = "DATA:art/shaders/missingshader";

constinit ra::ResourceLoaders<Shader> s_shaderLoaders;

} // namespace

void ShaderTypeInfo::TranslateName(std::string& outName, const char* pName) const {
    if (FilePathUtil::HasExtension(pName, "qsh")) {
        ResourceTypeInfo::TranslateName(outName, pName);
        return;
    }
    outName = pName;
    std::ranges::transform(outName, outName.begin(), ToLower);
}

std::unique_ptr<Inv::NamedResource> ShaderTypeInfo::CreateDefault(const char*) {
    if (std::unique_ptr<Inv::NamedResource> pMissing = Load(s_MissingShader))
        return pMissing;
    std::unique_ptr<Shader> pShader = Shader::Create();
    pShader->SetChannelColour(CN_Diffuse, s_MissingTextureColour);
    return pShader;
}

std::unique_ptr<Inv::NamedResource> ShaderTypeInfo::Load(const char* pName) { return s_shaderLoaders.Load(pName); }

void ShaderTypeInfo::Report(Inv::DebugToolDumpInfo& sink, const Inv::Resource&, const char* pName,
                            const char* pFrameName, uint32_t refCount) const {
    sink.Add({.typeName = GetTypeName(), .name = pName, .frame = pFrameName, .refCount = refCount});
}

void ShaderTypeInfo::SetLoaders(Loader pGeneric, Loader pFinal) {
    s_shaderLoaders = {.pGeneric = pGeneric, .pFinal = pFinal};
}

ShaderRef GetDefaultShader() {
    const Inv::RootFrameScope root;
    ShaderRef shader;
    shader.Get(s_MissingShader);
    return shader;
}
