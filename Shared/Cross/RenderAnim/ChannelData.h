#pragma once

#include <cstdint>

#include <glm/mat4x4.hpp>

#include "Shared/Cross/RenderAnim/Colour.h"
#include "Shared/Cross/RenderAnim/ResourceRefs.h"

// The channels of a shader, by index.
enum ShaderChannel : uint32_t {
    CN_Diffuse = 0,
    CN_Specular = 1,
    CN_Reflection = 2,
    CN_SelfIllumination = 3,
    CN_Opacity = 4,
    CN_SpecularLevel = 5,
    CN_Extra = 6, // in memory only
    CN_Count = 7
};

constexpr uint32_t ChannelCount = 6; // in files

// What a channel does to the picture. The numbers are in files.
enum ChannelMode : int32_t {
    ChannelMode_Colour = 0,
    ChannelMode_Texture = 1,
    ChannelMode_Animated = 3, // texture and colour, mixed by an animated amount
};

struct ChannelData {
    int32_t mode = ChannelMode_Colour;
    Colour colour;
    TextureRef texture; // empty for none
    int32_t tile = 0;   // 0 clamped, 1 tiled, 2 mirrored
    int32_t filter = 0;
    int32_t texGen = 0; // the set of texture coordinates, or how they are made
    glm::mat4 matrix = glm::mat4(1.0f);
    Colour animatedColour;                   // what the reference pose and the control streams start from
    glm::mat4 texMatrix = glm::mat4(1.0f);   // what animation writes; in no file
    glm::mat4 bakedMatrix = glm::mat4(1.0f); // already in the vertices' texture coordinates
};

// What a channel holds that nobody has written to.
const ChannelData& GetDefaultChannel(uint32_t channel);
