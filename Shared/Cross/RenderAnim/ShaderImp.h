#pragma once

#include <array>
#include <bitset>
#include <memory>
#include <string>

#include "Shared/Cross/RenderAnim/Shader.h"

// The one kind of shader. A channel that nobody has written to costs nothing: it reads from defaults that all share.
class ShaderImp : public Shader {
public:
    // Null for a shader that no device draws.
    explicit ShaderImp(std::shared_ptr<gz::Shader> pDeviceShader);

    bool IsShared() const override { return m_Shared; }
    void SetShared(bool shared) override { m_Shared = shared; }

    int32_t GetBlendSource() const override { return m_BlendSource; }
    int32_t GetBlendDestination() const override { return m_BlendDestination; }
    void SetBlendMode(int32_t source, int32_t destination) override;
    float GetAlphaReference() const override { return m_AlphaReference; }
    void SetAlphaReference(float reference) override { m_AlphaReference = reference; }
    int32_t GetAlphaFunction() const override { return m_AlphaFunction; }
    void SetAlphaFunction(int32_t function) override { m_AlphaFunction = function; }
    bool IsTwoSided() const override { return m_TwoSided; }
    void SetTwoSided(bool twoSided) override { m_TwoSided = twoSided; }
    bool IsSupersampled() const override { return m_Supersample; }
    void SetSupersample(bool supersample) override;
    float GetShininess() const override;
    void SetShininess(float shininess) override;

    int32_t GetChannelMode(uint32_t n) const override;
    void SetChannelMode(uint32_t n, int32_t mode) override;
    Colour GetChannelColour(uint32_t n) const override;
    void SetChannelColour(uint32_t n, Colour colour) override;
    const TextureRef& GetChannelTexture(uint32_t n) const override;
    void SetChannelTexture(uint32_t n, const TextureRef& texture) override;
    int32_t GetChannelTile(uint32_t n) const override;
    void SetChannelTile(uint32_t n, int32_t tile) override;
    int32_t GetChannelFilter(uint32_t n) const override;
    void SetChannelFilter(uint32_t n, int32_t filter) override;
    int32_t GetChannelTexGen(uint32_t n) const override;
    void SetChannelTexGen(uint32_t n, int32_t texGen) override;
    const glm::mat4& GetChannelMatrix(uint32_t n) const override;
    void SetChannelMatrix(uint32_t n, const glm::mat4& matrix) override;
    Colour GetChannelAnimatedColour(uint32_t n) const override;
    void SetChannelAnimatedColour(uint32_t n, Colour colour) override;
    const glm::mat4& GetChannelTexMatrix(uint32_t n) const override;
    void SetChannelTexMatrix(uint32_t n, const glm::mat4& matrix) override;
    const glm::mat4& GetChannelBakedMatrix(uint32_t n) const override;
    void SetChannelBakedMatrix(uint32_t n, const glm::mat4& matrix) override;

    const std::shared_ptr<gz::Shader>& GetDeviceShader() const override { return m_pDeviceShader; }

    // What has changed since the renderer last took the shader over.
    bool IsDirty() const { return m_BlendDirty || m_DirtyChannels.any(); }
    bool IsChannelDirty(uint32_t n) const;
    void ClearDirty();
    // True once the channel has data of its own.
    bool OwnsChannel(uint32_t n) const;

private:
    const ChannelData& Read(uint32_t n) const;
    // Does nothing when the value is there already; otherwise the channel gets data of its own.
    template <class T>
    void Write(uint32_t n, T ChannelData::*pField, const T& value);

    bool m_Shared = false;
    std::array<std::unique_ptr<ChannelData>, CN_Count> m_pChannels;
    std::shared_ptr<gz::Shader> m_pDeviceShader;
    int32_t m_BlendSource = s_BlendOne;
    int32_t m_BlendDestination = s_BlendZero;
    float m_AlphaReference = 0.0f;
    int32_t m_AlphaFunction = 0;
    bool m_TwoSided = false;
    bool m_Supersample = false;
    bool m_BlendDirty = false;
    std::bitset<CN_Count> m_DirtyChannels;
};
