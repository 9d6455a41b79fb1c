#pragma once

#include "Host/Gltf/Fault.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace gltf {

// Gives out names that differ from all given out before, without regard to the case of ASCII letters.
class UniqueNames {
public:
    // `wanted` itself if it is free and not empty, otherwise the first free of `wanted001`, `wanted002`, ... An empty
    // one counts from `fallback`, which always bears a number.
    std::string Make(std::string_view wanted, std::string_view fallback);
    // `base`, then the separator, then the number, or the next number that is free.
    std::string MakeNumbered(std::string_view base, std::string_view separator, unsigned number);

private:
    bool Take(std::string_view name);

    std::unordered_set<std::string> m_Taken;                 // in lower case
    std::unordered_map<std::string, unsigned> m_NextNumbers; // by base in lower case, so that a thousand equal names
                                                             // don't each try all numbers before theirs
};

// Faults when a name that goes into a model is longer than any reader of one takes.
void CheckLength(const Place& place, std::string_view name);

} // namespace gltf
