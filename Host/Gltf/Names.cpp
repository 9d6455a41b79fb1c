#include "Host/Gltf/Names.h"

#include "Shared/Cross/Util/Hash.h"

#include <algorithm>
#include <cstdio>

namespace gltf {

namespace {

// In bytes; longer strings can be written to a model, and nothing reads it then.
constexpr size_t s_LongestName = 259;

std::string LowerCased(std::string_view text) {
    std::string lower(text);
    std::ranges::transform(lower, lower.begin(), ToLower);
    return lower;
}

} // namespace

bool UniqueNames::Take(std::string_view name) { return m_Taken.insert(LowerCased(name)).second; }

std::string UniqueNames::Make(std::string_view wanted, std::string_view fallback) {
    if (!wanted.empty() && Take(wanted))
        return std::string(wanted);
    const std::string_view base = wanted.empty() ? fallback : wanted;
    unsigned& next = m_NextNumbers[LowerCased(base)];
    for (;;) {
        char number[16];
        std::snprintf(number, sizeof number, "%03u", ++next);
        std::string name = std::string(base) + number;
        if (Take(name))
            return name;
    }
}

std::string UniqueNames::MakeNumbered(std::string_view base, std::string_view separator, unsigned number) {
    for (;; ++number) {
        std::string name = std::string(base).append(separator) + std::to_string(number);
        if (Take(name))
            return name;
    }
}

void CheckLength(const Place& place, std::string_view name) {
    if (name.size() > s_LongestName)
        Fail(place, "its name has " + std::to_string(name.size()) + " bytes",
             "a name holds at most " + std::to_string(s_LongestName) +
                 ", with the number that tells it from others: shorten it");
}

} // namespace gltf
