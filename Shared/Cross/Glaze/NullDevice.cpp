#include "Shared/Cross/Glaze/NullDevice.h"

#include "Shared/Cross/Glaze/NullObjects.h"
#include "Shared/Cross/Util/FourCC.h"

namespace gz {

bool NullDevice::Open(const DeviceConfig&) { return true; }

void NullDevice::OnEvent(uint32_t) {}

std::unique_ptr<VertexSet> NullDevice::MakeVertexSet() { return std::make_unique<NullVertexSet>(); }

std::unique_ptr<PrimSet> NullDevice::MakePrimSet(VertexSet& vertexSet, std::shared_ptr<Shader> pShader,
                                                 uint32_t usage) {
    return std::make_unique<NullPrimSet>(vertexSet, std::move(pShader), usage);
}

std::shared_ptr<Shader> NullDevice::MakeShader() { return std::make_shared<NullShader>(); }

std::shared_ptr<Texture> NullDevice::MakeTexture() { return std::make_shared<NullTexture>(); }

std::shared_ptr<ShaderCompiler> NullDevice::MakeShaderCompiler() { return std::make_shared<NullShaderCompiler>(); }

DeviceInfo NullDevice::GetInfo() const {
    constexpr uint32_t id = FourCC("NULL");
    return {.id = id, .pDriver = "glaze NULL driver", .pDescription = "Dummy Device structure", .pName = "null"};
}

} // namespace gz
