#pragma once

#include <cstdint>

#include "Shared/Cross/RenderAnim/Image/Image.h"

// What a texture is to the renderer. The numbers are in files.
enum TextureType : uint32_t {
    TextureType_RGB = 0,
    TextureType_RGBA = 1,
    TextureType_RGBAMask = 2, // alpha is all or nothing
    TextureType_Luminance = 3,
    TextureType_Palette = 4,
    TextureType_DXT1 = 5,
    TextureType_DXT3 = 6,
    TextureType_DXT5 = 7,
};

// For people; "Invalid" for a number that no type has.
const char* GetTextureTypeName(uint32_t type);
// The type that keeps all that a picture of this type holds.
TextureType GuessFormat(ImageType type);
