#pragma once

#include <cstdint>
#include <memory>

#include <glm/mat4x4.hpp>

#include "Shared/Cross/Assist/Inventory.h"
#include "Shared/Cross/RenderAnim/ChannelData.h"
#include "Shared/Cross/RenderAnim/Colour.h"
#include "Shared/Cross/RenderAnim/ResourceRefs.h"

namespace gz {
class Shader;
}

// The material of meshes: how it blends, and CN_Count channels, each with a colour, a texture and the texture's
// transforms. Channel indices are below CN_Count; asking for another is a mistake that gives the default's values.
class Shader : public Inv::NamedResource {
public:
    static Inv::ResourceTypeInfo& GetTypeInfo();
    // The caller's, until it is given to the inventory. It is drawn by the running device, or by nothing without one.
    static std::unique_ptr<Shader> Create();

    // True for a shader that lies in a file of its own; models name it and don't hold it.
    virtual bool IsShared() const = 0;
    virtual void SetShared(bool shared) = 0;

    virtual int32_t GetBlendSource() const = 0;
    virtual int32_t GetBlendDestination() const = 0;
    virtual void SetBlendMode(int32_t source, int32_t destination) = 0;
    virtual float GetAlphaReference() const = 0;
    virtual void SetAlphaReference(float reference) = 0;
    virtual int32_t GetAlphaFunction() const = 0;
    virtual void SetAlphaFunction(int32_t function) = 0;
    virtual bool IsTwoSided() const = 0;
    virtual void SetTwoSided(bool twoSided) = 0;
    // These two go to the renderer only and are in no file.
    virtual bool IsSupersampled() const = 0;
    virtual void SetSupersample(bool supersample) = 0;
    virtual float GetShininess() const = 0;
    virtual void SetShininess(float shininess) = 0;

    virtual int32_t GetChannelMode(uint32_t n) const = 0;
    virtual void SetChannelMode(uint32_t n, int32_t mode) = 0;
    virtual Colour GetChannelColour(uint32_t n) const = 0;
    // Sets the animated colour too, since animation starts from here.
    virtual void SetChannelColour(uint32_t n, Colour colour) = 0;
    virtual const TextureRef& GetChannelTexture(uint32_t n) const = 0;
    virtual void SetChannelTexture(uint32_t n, const TextureRef& texture) = 0;
    virtual int32_t GetChannelTile(uint32_t n) const = 0;
    virtual void SetChannelTile(uint32_t n, int32_t tile) = 0;
    virtual int32_t GetChannelFilter(uint32_t n) const = 0;
    virtual void SetChannelFilter(uint32_t n, int32_t filter) = 0;
    virtual int32_t GetChannelTexGen(uint32_t n) const = 0;
    virtual void SetChannelTexGen(uint32_t n, int32_t texGen) = 0;
    virtual const glm::mat4& GetChannelMatrix(uint32_t n) const = 0;
    virtual void SetChannelMatrix(uint32_t n, const glm::mat4& matrix) = 0;
    virtual Colour GetChannelAnimatedColour(uint32_t n) const = 0;
    virtual void SetChannelAnimatedColour(uint32_t n, Colour colour) = 0;
    virtual const glm::mat4& GetChannelTexMatrix(uint32_t n) const = 0;
    virtual void SetChannelTexMatrix(uint32_t n, const glm::mat4& matrix) = 0;
    virtual const glm::mat4& GetChannelBakedMatrix(uint32_t n) const = 0;
    virtual void SetChannelBakedMatrix(uint32_t n, const glm::mat4& matrix) = 0;

    // Replaces what is behind it, so that it can be drawn without looking at what lies further back.
    bool IsOpaque() const;
    // Blends in nothing at all as it stands; an animation may bring it out.
    bool IsInvisible() const;

    // The renderer's side; null without a device.
    virtual const std::shared_ptr<gz::Shader>& GetDeviceShader() const = 0;
};

// Holds nothing, for those who have to answer with a hold on a shader and have none.
const ShaderRef& GetNoShader();

constexpr int32_t s_BlendOne = 1;
constexpr int32_t s_BlendZero = 0;
constexpr int32_t s_BlendSourceAlpha = 6;
constexpr int32_t s_BlendInverseSourceAlpha = 7;
