#pragma once

#include <array>
#include <memory>
#include <string>

#include <glm/mat4x4.hpp>

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/RenderAnim/ChannelData.h"
#include "Shared/Cross/RenderAnim/Chunks/PayloadWriter.h"
#include "Shared/Cross/RenderAnim/Colour.h"
#include "Shared/Cross/RenderAnim/ResourceRefs.h"

namespace ra {

class MeshGroup;

constexpr uint32_t s_ShaderChunk = FourCC("SHDR");
constexpr uint32_t s_SharedShaderChunk = FourCC("SSHR");

struct ChannelRecord {
    int32_t mode = 0;
    Colour colour;
    std::string texture; // empty for none
    int32_t tile = 0;
    int32_t filter = 0;
    int32_t texGen = 0;
    glm::mat4 matrix = glm::mat4(1.0f);
    glm::mat4 bakedMatrix = glm::mat4(1.0f);
};

// A shader as it lies in a file.
struct ShaderRecord {
    std::string name;
    int32_t blendSource = 0;
    int32_t blendDestination = 0;
    float alphaReference = 0.0f;
    int32_t alphaFunction = 0;
    bool twoSided = false;
    std::array<ChannelRecord, ChannelCount> channels;
};

// The levels of data that shaders are read at. They lie in files alike; what is logged differs.
enum class ShaderForm { Generic, Final };

// A shared shader is only named.
void WriteShader(Chunky& chunky, PayloadWriter& writer, const Shader& shader);
// All shaders of the group, each once.
void WriteShaders(Chunky& chunky, PayloadWriter& writer, const MeshGroup& group);
// The next chunk is a "SHDR".
ShaderRecord ReadShaderRecord(Chunky& chunky);
// The next chunk is a "SSHR". Gives the shader's name.
std::string ReadSharedShaderName(Chunky& chunky);

// The textures are those of the inventory. One that isn't there is logged and becomes a colour that shows it.
std::unique_ptr<Shader> MakeShader(const ShaderRecord& record, ShaderForm form = ShaderForm::Generic);
// A shader that lies in a file of its own, by its name and from the root; now known to be shared. Loaded at need.
ShaderRef GetSharedShader(const std::string& name);

} // namespace ra
