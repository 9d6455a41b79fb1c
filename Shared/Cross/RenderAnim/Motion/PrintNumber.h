#pragma once

#include <array>
#include <charconv>
#include <string>

namespace ra {

// As short as tells the number from every other float, whatever the locale.
inline std::string PrintNumber(float value) {
    std::array<char, 32> text;
    return {text.data(), std::to_chars(text.data(), text.data() + text.size(), value).ptr};
}

} // namespace ra
