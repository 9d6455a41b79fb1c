#include "Shared/Cross/RenderAnim/TextureType.h"

#include <array>

const char* GetTextureTypeName(uint32_t type) {
    static constexpr std::array<const char*, 8> s_Names = {"RGB",     "RGBA", "RGBAMask", "Luminance",
                                                           "Palette", "DXT1", "DXT3",     "DXT5"};
    return type < s_Names.size() ? s_Names[type] : "Invalid";
}

TextureType GuessFormat(ImageType type) {
    switch (type) {
    case IMAGETYPE_LUMINANCE8:
        return TextureType_Luminance;
    case IMAGETYPE_PALETTE8:
        return TextureType_Palette;
    case IMAGETYPE_RGB565:
    case IMAGETYPE_RGB888:
        return TextureType_RGB;
    case IMAGETYPE_RGBA5551:
        return TextureType_RGBAMask;
    case IMAGETYPE_DXT1:
        return TextureType_DXT1;
    case IMAGETYPE_DXT3:
        return TextureType_DXT3;
    case IMAGETYPE_DXT5:
        return TextureType_DXT5;
    default:
        return TextureType_RGBA;
    }
}
