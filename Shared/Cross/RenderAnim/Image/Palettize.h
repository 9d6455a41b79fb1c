#pragma once

#include <memory>

#include "Shared/Cross/RenderAnim/Image/Palette.h"

// The first level in 256 colours, by median cut over the four channels: as long as there are fewer boxes than colours,
// the box with the largest extent is cut in the middle of it. A picture of no more than 256 colours is kept exactly.
// Unused palette entries are 0. Types other than RGBA32 are converted first; one for which there is no such
// conversion is a mistake, and null.
std::unique_ptr<Image_Palette> Palettize(const Image& source);
