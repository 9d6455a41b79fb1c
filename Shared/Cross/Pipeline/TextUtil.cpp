#include "Shared/Cross/Pipeline/TextUtil.h"

#include <algorithm>

std::string ToLower(std::string_view text) {
    std::string lower(text);
    std::ranges::transform(lower, lower.begin(), [](char c) { return ToLower(c); });
    return lower;
}

bool StartsWithNoCase(std::string_view text, std::string_view start) {
    return EqualNoCase(text.substr(0, start.size()), start);
}

std::string_view TrimLine(std::string_view text) {
    const size_t first = text.find_first_not_of(" \t\r\v\f");
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(" \t\r\v\f\n") + 1 - first);
}

bool CopyOut(std::string_view text, char* pOut, uint32_t outLen) {
    if (outLen == 0)
        return false;
    const bool fits = text.size() < outLen;
    pOut[fits ? text.copy(pOut, text.size()) : 0] = '\0';
    return fits;
}
