#pragma once

#include <cstdint>

// Four bytes as they lie in files and images.
struct Colour {
    uint8_t b = 0;
    uint8_t g = 0;
    uint8_t r = 0;
    uint8_t a = 0;

    constexpr bool operator==(const Colour&) const = default;
    // 0xAARRGGBB, whose little-endian bytes are the colour's.
    static constexpr Colour FromValue(uint32_t value) {
        return {.b = static_cast<uint8_t>(value),
                .g = static_cast<uint8_t>(value >> 8),
                .r = static_cast<uint8_t>(value >> 16),
                .a = static_cast<uint8_t>(value >> 24)};
    }
    constexpr uint32_t GetValue() const { return uint32_t{a} << 24 | uint32_t{r} << 16 | uint32_t{g} << 8 | b; }
};

// Stands in for a texture that isn't there, so that nobody overlooks it.
constexpr Colour s_MissingTextureColour = Colour::FromValue(0xFFFF00FF);
