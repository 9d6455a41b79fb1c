#pragma once

#include <cstdint>

// A four-character code with its first character in the top byte, so that codes compare as their texts do.
consteval uint32_t FourCC(const char (&text)[5]) {
    uint32_t code = 0;
    for (int i = 0; i < 4; ++i)
        code = code << 8 | static_cast<uint8_t>(text[i]);
    return code;
}
