#include "Shared_Tools/BurnerImp/BurnPlugin.h"

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/RenderAnim/Chunks/TextureChunk.h"
#include "Shared/Cross/RenderAnim/Files/SharedShaderFile.h"
#include "Shared/Cross/RenderAnim/Shader.h"
#include "Shared_Tools/BurnerImp/BurnInfo.h"
#include "Shared_Tools/BurnerImp/BurnTextures.h"

#include <array>
#include <stdexcept>
#include <vector>

namespace {

class ShaderPlugin : public BurnPlugin {
public:
    const char* GetName() const override { return "shader"; }
    const char* GetSourceExtension() const override { return ".qsh"; }
    std::vector<std::string> GetOutputExtensions(const BurnSource&) const override { return {".qsh"}; }
    std::vector<std::string> GetSideFiles(const BurnSource&) const override { return {}; }
    uint32_t GetKnownParams() const override { return BurnParam_UseDXTC | BurnParam_MipMaps | BurnParam_BurnInfo; }

    void Burn(const BurnSource& source, const BurnParams& params, std::span<ByteStream* const> outputs) const override {
        const std::unique_ptr<Shader> pShader = ra::LoadSharedShaderGeneric(source.alias.c_str());
        if (!pShader)
            throw std::runtime_error("can't be opened");
        const std::vector<const Texture*> textures = ra::CollectTextures(std::array<const Shader*, 1>{pShader.get()});
        SetMipMaps(textures, params.mipMaps);
        Chunky chunky{ByteStreamAdapter(outputs[0])};
        if (params.burnInfo)
            WriteBurnInfo(chunky, source);
        if (!ra::WriteSharedShaderFinal(chunky, *pShader, params.useDXTC))
            throw std::runtime_error(ExplainUnconverted(textures));
    }
};

} // namespace

const BurnPlugin& GetShaderPlugin() {
    static const ShaderPlugin s_Plugin;
    return s_Plugin;
}
