#pragma once

#include "Shared/Cross/Glaze/Device.h"

namespace gz {

// A device that keeps everything in memory and draws nothing, which is all that a tool needs.
class NullDevice : public Device {
public:
    bool Open(const DeviceConfig& config) override;
    void OnEvent(uint32_t event) override;
    std::unique_ptr<VertexSet> MakeVertexSet() override;
    std::unique_ptr<PrimSet> MakePrimSet(VertexSet& vertexSet, std::shared_ptr<Shader> pShader,
                                         uint32_t usage) override;
    std::shared_ptr<Shader> MakeShader() override;
    std::shared_ptr<Texture> MakeTexture() override;
    std::shared_ptr<ShaderCompiler> MakeShaderCompiler() override;
    DeviceInfo GetInfo() const override;
};

} // namespace gz
