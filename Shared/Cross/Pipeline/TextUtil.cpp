#include "Shared/Cross/Pipeline/TextUtil.h"

#include <algorithm>

std::string ToLower(std::string_view text) {
    std::string lower(text);
    std::ranges::transform(lower, lower.begin(), [](char c) { return ToLower(c); });
    return lower;
}

bool IsSameNoCase(std::string_view a, std::string_view b) { return a.size() == b.size() && StartsWithNoCase(a, b); }

bool StartsWithNoCase(std::string_view text, std::string_view start) {
    return text.size() >= start.size() && std::ranges::equal(text.substr(0, start.size()), start,
                                                             [](char x, char y) { return ToLower(x) == ToLower(y); });
}

std::string_view TrimLine(std::string_view text) {
    const size_t first = text.find_first_not_of(" \t\r\v\f");
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(" \t\r\v\f\n") + 1 - first);
}
