#include "Host/Gltf/PositionWeld.h"

#include <bit>
#include <cstring>

namespace gltf {

namespace {

constexpr uint32_t s_Free = 0xffffffff;

uint64_t HashRow(const uint32_t* pRow, size_t width) {
    uint64_t hash = 0;
    for (size_t i = 0; i < width; ++i) {
        hash = (hash ^ pRow[i]) * 0x9e3779b97f4a7c15u;
        hash ^= hash >> 29;
    }
    return hash * 0xbf58476d1ce4e5b9u;
}

template <typename Hash, typename Equal>
WeldResult WeldRows(size_t count, const Hash& hash, const Equal& equal) {
    WeldResult result;
    result.groups.resize(count);
    result.firsts.reserve(count);
    // At most half full, so that runs of taken places stay short.
    const unsigned bits = static_cast<unsigned>(std::bit_width(count * 2 | 15));
    const uint64_t mask = (uint64_t{1} << bits) - 1;
    std::vector<uint32_t> table(size_t{1} << bits, s_Free);
    for (size_t i = 0; i < count; ++i) {
        uint64_t place = hash(i) >> (64 - bits);
        while (table[place] != s_Free && !equal(result.firsts[table[place]], i))
            place = (place + 1) & mask;
        if (table[place] == s_Free) {
            table[place] = static_cast<uint32_t>(result.firsts.size());
            result.firsts.push_back(static_cast<uint32_t>(i));
        }
        result.groups[i] = table[place];
    }
    return result;
}

} // namespace

WeldResult Weld(const WeldInput& input) {
    const auto compare = [&](size_t width) {
        return WeldRows(
            input.GetCount(), [&, width](size_t i) { return HashRow(input.GetRow(i), width); },
            [&, width](size_t a, size_t b) {
                return std::memcmp(input.GetRow(a), input.GetRow(b), width * sizeof(uint32_t)) == 0;
            });
    };
    // Bare positions are the common case; with a known width the loops over a row disappear.
    return input.width == 3 ? compare(3) : compare(input.width);
}

} // namespace gltf
