#include "Shared/Cross/RenderAnim/ShaderImp.h"

#include <utility>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/Glaze/Shader.h"

ShaderImp::ShaderImp(std::shared_ptr<gz::Shader> pDeviceShader) : m_pDeviceShader(std::move(pDeviceShader)) {}

const ChannelData& ShaderImp::Read(uint32_t n) const {
    dbAssert(n < CN_Count);
    return n < CN_Count && m_pChannels[n] ? *m_pChannels[n] : GetDefaultChannel(n < CN_Count ? n : 0);
}

template <class T>
void ShaderImp::Write(uint32_t n, T ChannelData::*pField, const T& value) {
    const ChannelData& channel = Read(n);
    if (n >= CN_Count || channel.*pField == value)
        return;
    if (!m_pChannels[n])
        m_pChannels[n] = std::make_unique<ChannelData>(channel);
    (*m_pChannels[n]).*pField = value;
    m_DirtyChannels.set(n);
}

void ShaderImp::SetBlendMode(int32_t source, int32_t destination) {
    if (source == m_BlendSource && destination == m_BlendDestination)
        return;
    m_BlendSource = source;
    m_BlendDestination = destination;
    m_BlendDirty = true;
}

void ShaderImp::SetSupersample(bool supersample) {
    m_Supersample = supersample;
    if (m_pDeviceShader)
        m_pDeviceShader->SetSupersample(supersample);
}

float ShaderImp::GetShininess() const { return m_pDeviceShader ? m_pDeviceShader->GetShininess() : 0.0f; }

void ShaderImp::SetShininess(float shininess) {
    if (m_pDeviceShader)
        m_pDeviceShader->SetShininess(shininess);
}

int32_t ShaderImp::GetChannelMode(uint32_t n) const { return Read(n).mode; }

void ShaderImp::SetChannelMode(uint32_t n, int32_t mode) { Write(n, &ChannelData::mode, mode); }

Colour ShaderImp::GetChannelColour(uint32_t n) const { return Read(n).colour; }

void ShaderImp::SetChannelColour(uint32_t n, Colour colour) {
    if (Read(n).colour == colour)
        return;
    Write(n, &ChannelData::colour, colour);
    Write(n, &ChannelData::animatedColour, colour);
}

const TextureRef& ShaderImp::GetChannelTexture(uint32_t n) const { return Read(n).texture; }

void ShaderImp::SetChannelTexture(uint32_t n, const TextureRef& texture) { Write(n, &ChannelData::texture, texture); }

int32_t ShaderImp::GetChannelTile(uint32_t n) const { return Read(n).tile; }

void ShaderImp::SetChannelTile(uint32_t n, int32_t tile) { Write(n, &ChannelData::tile, tile); }

int32_t ShaderImp::GetChannelFilter(uint32_t n) const { return Read(n).filter; }

void ShaderImp::SetChannelFilter(uint32_t n, int32_t filter) { Write(n, &ChannelData::filter, filter); }

int32_t ShaderImp::GetChannelTexGen(uint32_t n) const { return Read(n).texGen; }

void ShaderImp::SetChannelTexGen(uint32_t n, int32_t texGen) { Write(n, &ChannelData::texGen, texGen); }

const glm::mat4& ShaderImp::GetChannelMatrix(uint32_t n) const { return Read(n).matrix; }

void ShaderImp::SetChannelMatrix(uint32_t n, const glm::mat4& matrix) { Write(n, &ChannelData::matrix, matrix); }

Colour ShaderImp::GetChannelAnimatedColour(uint32_t n) const { return Read(n).animatedColour; }

void ShaderImp::SetChannelAnimatedColour(uint32_t n, Colour colour) { Write(n, &ChannelData::animatedColour, colour); }

const glm::mat4& ShaderImp::GetChannelTexMatrix(uint32_t n) const { return Read(n).texMatrix; }

void ShaderImp::SetChannelTexMatrix(uint32_t n, const glm::mat4& matrix) { Write(n, &ChannelData::texMatrix, matrix); }

const glm::mat4& ShaderImp::GetChannelBakedMatrix(uint32_t n) const { return Read(n).bakedMatrix; }

void ShaderImp::SetChannelBakedMatrix(uint32_t n, const glm::mat4& matrix) {
    Write(n, &ChannelData::bakedMatrix, matrix);
}

bool ShaderImp::IsChannelDirty(uint32_t n) const { return n < CN_Count && m_DirtyChannels[n]; }

void ShaderImp::ClearDirty() {
    m_BlendDirty = false;
    m_DirtyChannels.reset();
}

bool ShaderImp::OwnsChannel(uint32_t n) const { return n < CN_Count && m_pChannels[n]; }
