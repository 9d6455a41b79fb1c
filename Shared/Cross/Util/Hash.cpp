#include "Shared/Cross/Util/Hash.h"

#include <algorithm>

namespace {

constexpr uint32_t s_GoldenRatio = 0x9E3779B9;
constexpr size_t s_HashBlockSize = 12;
constexpr size_t s_MaxNoCaseHashLength = 2047;

struct State {
    uint32_t a = s_GoldenRatio;
    uint32_t b = s_GoldenRatio;
    uint32_t c = 0;
};

uint32_t LoadLittle(const uint8_t* pBytes) {
    return static_cast<uint32_t>(pBytes[0]) | static_cast<uint32_t>(pBytes[1]) << 8 |
           static_cast<uint32_t>(pBytes[2]) << 16 | static_cast<uint32_t>(pBytes[3]) << 24;
}

void Mix(State& s) {
    s.a = (s.a - s.b - s.c) ^ (s.c >> 13);
    s.b = (s.b - s.c - s.a) ^ (s.a << 8);
    s.c = (s.c - s.a - s.b) ^ (s.b >> 13);
    s.a = (s.a - s.b - s.c) ^ (s.c >> 12);
    s.b = (s.b - s.c - s.a) ^ (s.a << 16);
    s.c = (s.c - s.a - s.b) ^ (s.b >> 5);
    s.a = (s.a - s.b - s.c) ^ (s.c >> 3);
    s.b = (s.b - s.c - s.a) ^ (s.a << 10);
    s.c = (s.c - s.a - s.b) ^ (s.b >> 15);
}

void AddBlock(State& state, const uint8_t* pBlock) {
    state.a += LoadLittle(pBlock);
    state.b += LoadLittle(pBlock + 4);
    state.c += LoadLittle(pBlock + 8);
}

} // namespace

uint32_t Hash(std::span<const uint8_t> bytes) {
    State state;
    const auto length = static_cast<uint32_t>(bytes.size());
    for (; bytes.size() >= s_HashBlockSize; bytes = bytes.subspan(s_HashBlockSize)) {
        AddBlock(state, bytes.data());
        Mix(state);
    }
    // The rest in a block of its own; the length has the low byte of the third word to itself.
    uint8_t last[s_HashBlockSize] = {};
    for (size_t i = 0; i < bytes.size(); ++i)
        last[i < 8 ? i : i + 1] = bytes[i];
    AddBlock(state, last);
    state.c += length;
    Mix(state);
    return state.c;
}

uint32_t Hash(std::string_view text) {
    return Hash(std::span(reinterpret_cast<const uint8_t*>(text.data()), text.size()));
}

uint32_t HashNoCase(std::string_view text) {
    char lower[s_MaxNoCaseHashLength];
    text = text.substr(0, sizeof lower);
    std::ranges::transform(text, lower, ToLower);
    return Hash(std::string_view(lower, text.size()));
}

bool EqualNoCase(std::string_view left, std::string_view right) {
    return std::ranges::equal(left, right, {}, ToLower, ToLower);
}
