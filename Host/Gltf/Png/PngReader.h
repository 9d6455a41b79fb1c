#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

// What the module of this folder offers: PNG pictures of every kind as plain rows. It is a module of its own because
// of the libraries behind it, which a scene without a PNG never needs.

namespace gltf {

// 8 bits a channel, the rows from the bottom up, each from the left: blue, green, red and, with it, alpha.
struct PngPicture {
    uint32_t width = 0;
    uint32_t height = 0;
    bool hasAlpha = false;
    // The room that was asked for, without content; then the rows.
    std::unique_ptr<std::byte[]> pBytes;
    size_t size = 0; // of both
};

constexpr uint32_t s_LargestPngSide = 4096;

// Palettes, grey and bits below 8 are expanded, 16 bits rounded to 8; a transparent colour becomes alpha. What a file
// says of its colour space is ignored, as glTF wants it. False, with the reason, for a file that isn't whole, has a
// side over s_LargestPngSide or claims more than its bytes can hold; the latter two before anything is allocated.
using PngReaderFunction = bool(std::span<const std::byte> png, size_t room, PngPicture& picture, std::string& error);

constexpr char s_PngReaderModule[] = "libPngReader.so";
constexpr char s_PngReaderFunction[] = "PvxReadPng";

} // namespace gltf
