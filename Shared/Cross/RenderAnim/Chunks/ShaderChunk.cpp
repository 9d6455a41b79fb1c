#include "Shared/Cross/RenderAnim/Chunks/ShaderChunk.h"

#include <algorithm>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/Chunks/PayloadReader.h"
#include "Shared/Cross/RenderAnim/MeshGroup.h"
#include "Shared/Cross/RenderAnim/Shader.h"
#include "Shared/Cross/RenderAnim/Texture.h"

// "SHDR", folder, version 1, name of the shader: "INFO", and one "CHAN" for each of the 6 channels in files.
//
// "INFO", data, version 1:
//   int32      blend source
//   int32      blend destination
//   float      alpha reference
//   int32      alpha function
//   uint8      two-sided
//
// "CHAN", data, version 3:
//   uint32     channel, 0 to 5
//   int32      mode
//   uint32     colour
//   string     texture name, empty for none
//   uint8      in version 2 alone; means nothing
//   int32      tile
//   int32      filter
//   int32      texture generation
//   16 floats  matrix
//   16 floats  baked matrix
//
// "SSHR", data, version 1, name of the shader: a shader that lies in a file of its own.
//   string     the same name

namespace ra {

namespace {

constexpr uint32_t s_ShaderInfoChunk = FourCC("INFO");
constexpr uint32_t s_ChannelChunk = FourCC("CHAN");
constexpr uint32_t s_ShaderVersion = 1;
constexpr uint32_t s_SharedShaderVersion = 1;
constexpr uint32_t s_ShaderInfoVersion = 1;
constexpr uint32_t s_ChannelVersion = 3;
constexpr uint32_t s_OldestChannelVersion = 2;

// Both "Specular" are known by that name to the artists.
constexpr std::array<const char*, ChannelCount> s_ChannelNames = {"Diffuse",           "Specular", "Reflection",
                                                                  "Self Illumination", "Opacity",  "Specular"};

// As they are known in the log of the final level.
constexpr std::array<const char*, 5> s_ModeNames = {"Texture", "Add", "Blend", "Blend", "Invalid"};

void WriteChannel(PayloadWriter& writer, const Shader& shader, uint32_t n) {
    const TextureRef& texture = shader.GetChannelTexture(n);
    writer.Write(n);
    writer.Write(shader.GetChannelMode(n));
    writer.Write(shader.GetChannelColour(n).GetValue());
    writer.WriteString(texture.IsValid() ? texture.GetResource()->GetName() : nullptr);
    writer.Write(shader.GetChannelTile(n));
    writer.Write(shader.GetChannelFilter(n));
    writer.Write(shader.GetChannelTexGen(n));
    writer.WriteMat4(shader.GetChannelMatrix(n));
    writer.WriteMat4(shader.GetChannelBakedMatrix(n));
}

void ReadChannel(PayloadReader& reader, uint32_t version, ShaderRecord& record) {
    const auto n = reader.Read<uint32_t>("channel index");
    if (n >= ChannelCount)
        reader.Fail("channel index", std::to_string(n) + " is above 5");
    ChannelRecord& channel = record.channels[n];
    channel.mode = reader.Read<int32_t>("channel mode");
    channel.colour = Colour::FromValue(reader.Read<uint32_t>("channel colour"));
    channel.texture = reader.ReadString("texture name");
    if (version < 3)
        reader.Read<uint8_t>("texture name");
    channel.tile = reader.Read<int32_t>("tile setting");
    channel.filter = reader.Read<int32_t>("filter setting");
    channel.texGen = reader.Read<int32_t>("texture generation");
    channel.matrix = reader.ReadMat4("matrix");
    channel.bakedMatrix = reader.ReadMat4("baked matrix");
}

void LogOddTexture(const Shader& shader, uint32_t n, ShaderForm form) {
    if (form == ShaderForm::Final)
        dbWarningf("TEXTURES -- '%s': has texture on '%s' channel!", shader.GetName(), s_ChannelNames[n]);
    else
        dbWarningf("SHADER -- '%s': has texture on '%s' channel!", shader.GetName(), s_ChannelNames[n]);
}

void LogOpacityMode(const Shader& shader) {
    const auto mode = static_cast<uint32_t>(shader.GetChannelMode(CN_Opacity));
    if (mode != ChannelMode_Colour)
        dbWarningf("TEXTURES -- '%s': opacity channel has mode '%s'.", shader.GetName(),
                   s_ModeNames[std::min<size_t>(mode, s_ModeNames.size() - 1)]);
}

void BuildTexture(Shader& shader, uint32_t n, const std::string& textureName, ShaderForm form) {
    if (textureName.empty())
        return;
    if (n > 0)
        LogOddTexture(shader, n, form);
    TextureRef texture;
    if (texture.Find(textureName.c_str())) {
        shader.SetChannelTexture(n, texture);
        return;
    }
    dbWarningf("TEXTURES -- '%s': unable to find texture '%s'. Using pink!\n", shader.GetName(), textureName.c_str());
    shader.SetChannelColour(n, s_MissingTextureColour);
}

} // namespace

void WriteShader(Chunky& chunky, PayloadWriter& writer, const Shader& shader) {
    if (shader.IsShared()) {
        writer.WriteString(shader.GetName());
        writer.WriteChunk(chunky, s_SharedShaderChunk, s_SharedShaderVersion, shader.GetName());
        return;
    }
    chunky.BeginFolder(s_ShaderChunk, s_ShaderVersion, shader.GetName());
    writer.Write(shader.GetBlendSource());
    writer.Write(shader.GetBlendDestination());
    writer.Write(shader.GetAlphaReference());
    writer.Write(shader.GetAlphaFunction());
    writer.Write<uint8_t>(shader.IsTwoSided() ? 1 : 0);
    writer.WriteChunk(chunky, s_ShaderInfoChunk, s_ShaderInfoVersion);
    for (uint32_t n = 0; n < ChannelCount; ++n) {
        WriteChannel(writer, shader, n);
        writer.WriteChunk(chunky, s_ChannelChunk, s_ChannelVersion);
    }
    chunky.EndChunk();
}

void WriteShaders(Chunky& chunky, PayloadWriter& writer, const MeshGroup& group) {
    for (uint32_t i = 0; i < group.GetShaderCount(); ++i)
        WriteShader(chunky, writer, *group.GetShader(i).GetData());
}

ShaderRecord ReadShaderRecord(Chunky& chunky) {
    const ChunkInfo folder = chunky.EnterFolder(s_ShaderChunk, s_ShaderVersion);
    ShaderRecord record;
    record.name = folder.name.GetView();
    EnterData(chunky, s_ShaderInfoChunk, s_ShaderInfoVersion, s_ShaderInfoVersion);
    PayloadReader info(chunky, "shader", record.name.c_str());
    record.blendSource = info.Read<int32_t>("blend source");
    record.blendDestination = info.Read<int32_t>("blend destination");
    record.alphaReference = info.Read<float>("alpha reference");
    record.alphaFunction = info.Read<int32_t>("alpha function");
    record.twoSided = info.Read<uint8_t>("two-sided") != 0;
    chunky.EndChunk();
    for (uint32_t i = 0; i < ChannelCount; ++i) {
        const ChunkInfo channel = EnterData(chunky, s_ChannelChunk, s_OldestChannelVersion, s_ChannelVersion);
        PayloadReader reader(chunky, "shader", record.name.c_str());
        ReadChannel(reader, channel.version, record);
        chunky.EndChunk();
    }
    chunky.EndChunk();
    return record;
}

std::string ReadSharedShaderName(Chunky& chunky) {
    const ChunkInfo info = EnterData(chunky, s_SharedShaderChunk, s_SharedShaderVersion, s_SharedShaderVersion);
    PayloadReader reader(chunky, "shared shader", info.name.GetText());
    std::string name = reader.ReadString("name");
    chunky.EndChunk();
    return name;
}

std::unique_ptr<Shader> MakeShader(const ShaderRecord& record, ShaderForm form) {
    std::unique_ptr<Shader> pShader = Shader::Create();
    pShader->SetName(record.name.c_str());
    pShader->SetBlendMode(record.blendSource, record.blendDestination);
    pShader->SetAlphaReference(record.alphaReference);
    pShader->SetAlphaFunction(record.alphaFunction);
    pShader->SetTwoSided(record.twoSided);
    for (uint32_t n = 0; n < ChannelCount; ++n) {
        const ChannelRecord& channel = record.channels[n];
        pShader->SetChannelMode(n, channel.mode);
        pShader->SetChannelColour(n, channel.colour);
        pShader->SetChannelTile(n, channel.tile);
        pShader->SetChannelFilter(n, channel.filter);
        pShader->SetChannelTexGen(n, channel.texGen);
        pShader->SetChannelMatrix(n, channel.matrix);
        pShader->SetChannelBakedMatrix(n, channel.bakedMatrix);
        BuildTexture(*pShader, n, channel.texture, form);
    }
    if (form == ShaderForm::Final)
        LogOpacityMode(*pShader);
    return pShader;
}

ShaderRef GetSharedShader(const std::string& name) {
    const Inv::RootFrameScope root;
    ShaderRef shaderRef;
    shaderRef.Get(name.c_str());
    dbAssert(shaderRef.IsValid());
    if (shaderRef.IsValid())
        shaderRef->SetShared(true);
    return shaderRef;
}

} // namespace ra
