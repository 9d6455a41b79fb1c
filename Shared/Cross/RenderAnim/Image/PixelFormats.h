#pragma once

#include <cstdint>

#include "Shared/Cross/RenderAnim/Colour.h"

// The pixels of images beside Colour, as they lie in memory.

struct Colour_RGB888 {
    uint8_t b = 0;
    uint8_t g = 0;
    uint8_t r = 0;

    constexpr bool operator==(const Colour_RGB888&) const = default;
    static constexpr Colour_RGB888 FromColour(Colour colour) { return {.b = colour.b, .g = colour.g, .r = colour.r}; }
    constexpr Colour GetColour() const { return {.b = b, .g = g, .r = r, .a = 255}; }
};
static_assert(sizeof(Colour_RGB888) == 3 && sizeof(Colour) == 4);

// Four channels in 16 bits, alpha on top. A channel that grows to 8 bits repeats its high bits below, so that the
// largest value stays the largest; one that shrinks loses its low bits. Without alpha bits a pixel is opaque.
template <int RedBits, int GreenBits, int BlueBits, int AlphaBits>
struct Colour_RGBA16 {
    static_assert(RedBits + GreenBits + BlueBits + AlphaBits <= 16);
    uint16_t value = 0;

    constexpr bool operator==(const Colour_RGBA16&) const = default;
    static constexpr Colour_RGBA16 FromColour(Colour colour) {
        return {.value = static_cast<uint16_t>(Shrink<BlueBits>(colour.b) | Shrink<GreenBits>(colour.g) << BlueBits |
                                               Shrink<RedBits>(colour.r) << (BlueBits + GreenBits) |
                                               Shrink<AlphaBits>(colour.a) << (BlueBits + GreenBits + RedBits))};
    }
    constexpr Colour GetColour() const {
        return {.b = Grow<BlueBits>(value),
                .g = Grow<GreenBits>(value >> BlueBits),
                .r = Grow<RedBits>(value >> (BlueBits + GreenBits)),
                .a = Grow<AlphaBits>(value >> (BlueBits + GreenBits + RedBits))};
    }

private:
    template <int Bits>
    static constexpr uint32_t Shrink(uint8_t channel) {
        return static_cast<uint32_t>(channel) >> (8 - Bits);
    }
    template <int Bits>
    static constexpr uint8_t Grow(int bits) {
        if constexpr (Bits == 0) {
            return 255;
        } else {
            const uint32_t channel = static_cast<uint32_t>(bits) & ((1u << Bits) - 1);
            uint32_t grown = 0;
            for (int shift = 8 - Bits; shift > -Bits; shift -= Bits)
                grown |= shift >= 0 ? channel << shift : channel >> -shift;
            return static_cast<uint8_t>(grown);
        }
    }
};
