#pragma once

#include <algorithm>
#include <string_view>

// Latin letters alone, whatever the locale.
inline char ToLowerAscii(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

inline bool EqualNoCase(std::string_view a, std::string_view b) {
    return std::ranges::equal(a, b, {}, ToLowerAscii, ToLowerAscii);
}
