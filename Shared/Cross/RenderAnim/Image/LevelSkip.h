#pragma once

#include <cstdint>

#include "Shared/Cross/RenderAnim/Image/Image.h"

// How many of the largest levels may be left out when a caller asks for `wanted`: one level has to stay, and of a
// compressed image one of at least 4 pixels a side, since smaller ones are no textures of their own.
uint32_t ClampLevelSkip(ImageType type, uint32_t width, uint32_t height, uint32_t mipCount, uint32_t wanted);
