#pragma once

#include <string_view>

inline bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// A warning's text, without the place in the source that it begins with.
inline std::string_view WithoutPlace(std::string_view line) {
    constexpr std::string_view placeEnd = ":!";
    const size_t end = line.find(placeEnd);
    return end == line.npos ? line : line.substr(end + placeEnd.size());
}
