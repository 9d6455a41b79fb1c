#pragma once

#include <cstdint>

// A TGA file that this system reads and writes. Behind the header lie the id, `idLength` bytes of anything, and the
// rows of blue, green, red and, with 32 bits, alpha, the bottom row first:
//
//   offset  size
//        0  1     idLength
//        1  1     colour map type, 0
//        2  1     picture type, 2: true colour, one by one
//        3  5     colour map's first entry, length and entry size, all 0
//        8  4     x and y of the origin, 0
//       12  2     width
//       14  2     height
//       16  1     bits a pixel, 24 or 32
//       17  1     bits 0 to 3: bits of alpha, which nobody heeds; 4: right to left; 5: top row first; 6, 7: interleaved
constexpr uint32_t s_TgaHeaderSize = 18;
constexpr uint8_t s_TgaTrueColour = 2;
constexpr uint8_t s_TgaRunLengthBit = 8; // of the picture type
constexpr uint8_t s_TgaRightToLeft = 0x10;
constexpr uint8_t s_TgaTopDown = 0x20;
constexpr uint8_t s_TgaInterleaved = 0xC0;
