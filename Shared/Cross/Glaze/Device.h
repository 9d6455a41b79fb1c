#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "Shared/Cross/Glaze/Object.h"

namespace gz {

class PrimSet;
class Shader;
class ShaderCompiler;
class Texture;
class VertexSet;

// What a device is started with.
struct DeviceConfig {
    std::string name; // of the device, compared exactly; "Null" is the one without a driver
    uint32_t adapter = 0;
    std::string driverFile = {}; // when given, no installed driver is looked at
};

// Texts are good for the life of the device.
struct DeviceInfo {
    uint32_t id = 0;
    const char* pDriver = "";
    const char* pDescription = "";
    const char* pName = "";
};

constexpr uint32_t s_DeviceCreatedEvent = 0x10000003; // sent to a device that a driver has just made

// Makes the objects that hold render data. Vertex and primitive sets belong to the caller and go before the device.
class Device : public Object {
public:
    // False when the device can't serve this configuration.
    virtual bool Open(const DeviceConfig& config) = 0;
    virtual void OnEvent(uint32_t event) = 0;

    // Without vertices; Create gives it some.
    virtual std::unique_ptr<VertexSet> MakeVertexSet() = 0;
    // The vertex set must outlive the primitive set; the shader, which may be null, is held by it.
    virtual std::unique_ptr<PrimSet> MakePrimSet(VertexSet& vertexSet, std::shared_ptr<Shader> pShader,
                                                 uint32_t usage) = 0;
    virtual std::shared_ptr<Shader> MakeShader() = 0;
    virtual std::shared_ptr<Texture> MakeTexture() = 0;
    virtual std::shared_ptr<ShaderCompiler> MakeShaderCompiler() = 0;
    virtual DeviceInfo GetInfo() const = 0;
};

// The process's one device. Start makes and opens it; false, with a line in the log, when there is one already, when no
// device has that name, or when it doesn't open. One thread starts, uses and stops it.
bool Start(const DeviceConfig& config);
// Destroys the device; does nothing without one. All vertex and primitive sets have gone by then.
void Stop();
// Null between Stop and Start.
Device* GetDevice();
// The configuration that the running device was started with.
const DeviceConfig& GetDeviceConfig();

} // namespace gz
