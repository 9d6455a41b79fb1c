#pragma once

#include <array>

#include "Shared/Cross/RenderAnim/Image/Pixelmap.h"

using ImagePalette = std::array<Colour, 256>;

// Pixels are indices into a palette, which all levels share.
class Image_Palette : public Image_Pixelmap<uint8_t, IMAGETYPE_PALETTE8> {
public:
    ImagePalette& GetPalette() { return m_Palette; }
    const ImagePalette& GetPalette() const { return m_Palette; }

private:
    ImagePalette m_Palette{};
};
