#pragma once

#include <cstdint>

// A DDS file: the magic, a header, and the levels, the largest first. Offsets are from the start of the file:
//
//   offset  size
//        0  4     magic, "DDS "
//        4  4     size of the header, 124
//        8  4     flags
//       12  4     height
//       16  4     width
//       20  4     bytes of the first level
//       28  4     levels, if the flags say so
//       76  4     size of the pixel format, 32
//       80  4     flags of the pixel format
//       84  4     FourCC, "DXT1", "DXT3" or "DXT5"
//      108  4     caps
//      112  4     more caps
// All else is 0 as written and not looked at when read.
constexpr uint32_t s_DdsHeaderSize = 128; // with the magic
constexpr uint32_t s_DdsMagic = 0x20534444;
constexpr uint32_t s_DdsSizeField = 124;
constexpr uint32_t s_DdsPixelFormatSize = 32;

constexpr uint32_t s_DdsFlagsNeeded = 0x1007; // caps, height, width, pixel format
constexpr uint32_t s_DdsFlagMipCount = 0x20000;
constexpr uint32_t s_DdsFlagLinearSize = 0x80000;
constexpr uint32_t s_DdsFormatAlpha = 1;
constexpr uint32_t s_DdsFormatFourCC = 4;
constexpr uint32_t s_DdsCapsComplex = 8;
constexpr uint32_t s_DdsCapsTexture = 0x1000;
constexpr uint32_t s_DdsCapsMipMap = 0x400000;
constexpr uint32_t s_DdsCaps2CubeMap = 0x200;
constexpr uint32_t s_DdsCaps2Volume = 0x200000;

// As little-endian values of their four characters.
constexpr uint32_t s_DdsDxt1 = 0x31545844;
constexpr uint32_t s_DdsDxt3 = 0x33545844;
constexpr uint32_t s_DdsDxt5 = 0x35545844;
