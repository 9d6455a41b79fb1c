#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace gltf {

// Vertices as rows of 32-bit words, compared word by word: equal to the bit or not at all.
struct WeldInput {
    std::span<const uint32_t> words; // `width` a vertex
    size_t width = 3;

    size_t GetCount() const { return words.size() / width; }
    const uint32_t* GetRow(size_t vertex) const { return words.data() + vertex * width; }
};

struct WeldResult {
    std::vector<uint32_t> groups; // of each vertex: its number among the distinct ones
    std::vector<uint32_t> firsts; // of each distinct one: the first vertex that is it. Ascending.
};

// Finds the equal rows. The distinct ones are numbered by their first occurrence.
WeldResult Weld(const WeldInput& input);

} // namespace gltf
