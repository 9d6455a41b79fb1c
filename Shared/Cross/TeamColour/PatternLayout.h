#pragma once

#include <cstdint>

#include "Shared/Cross/Util/FourCC.h"

// "TPAT", folder, version 3, name of the colour scheme, holds
//
// "INFO", data, version 1:
//   uint32  width
//   uint32  height
//
// "PTLD", data, version 1, for each layer that is there, in the order of their indices:
//   uint32  layer
//   uint32  count of bytes: width times height
//           the bytes
//   The writer puts all layers into one such chunk; a reader takes any number of them.
//
// "IMAG"  the dirt image, if there is one
//
// "PTBD", data, version 1, the badge, if there is one:
//   float   x, y, width, height
//
// "PTBN", data, version 1, the banner, if there is one: the same.
//
// Before version 3 a layer was an image, in the folder "PTLR", version 1:
//   "PTIN", data, version 2: uint32 layer; version 1 has a uint32 more, which is dropped
//   "IMAG", if there is one: its alpha is the layer; that of the dirt layer is the dirt image, too

// The top of a pattern file.
constexpr uint32_t s_PatternChunk = FourCC("TPAT");
constexpr uint32_t s_PatternVersion = 3;
