#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

// Small picture files made byte by byte, for tests and as the seeds of the fuzz targets.

using Bytes = std::vector<uint8_t>;

template <typename T>
void Put(Bytes& bytes, size_t offset, T value) {
    std::memcpy(&bytes[offset], &value, sizeof(value));
}

inline Bytes FromHex(std::string_view hex) {
    const auto digit = [](char c) { return c <= '9' ? c - '0' : c - 'a' + 10; };
    Bytes bytes;
    for (size_t i = 0; i + 1 < hex.size(); i += 2)
        bytes.push_back(static_cast<uint8_t>(digit(hex[i]) * 16 + digit(hex[i + 1])));
    return bytes;
}

// 0, 1, 2 and so on: every byte tells its place.
inline void AppendCounting(Bytes& bytes, size_t count) {
    for (size_t i = 0; i < count; ++i)
        bytes.push_back(static_cast<uint8_t>(i));
}

inline Bytes MakeTga(uint16_t width, uint16_t height, uint8_t bits, uint8_t idLength = 0) {
    Bytes bytes(18);
    bytes[0] = idLength;
    bytes[2] = 2;
    Put(bytes, 12, width);
    Put(bytes, 14, height);
    bytes[16] = bits;
    bytes.resize(bytes.size() + idLength, 0xEE);
    AppendCounting(bytes, size_t{width} * height * bits / 8);
    return bytes;
}

// Entry i of the palette is i, i + 1, i + 2 and a spare byte of 7.
inline Bytes MakeBmp(int32_t width, int32_t height, uint16_t bits, uint32_t paletteCount = 0) {
    Bytes bytes(54);
    const size_t entries = bits > 8 ? 0 : paletteCount ? paletteCount : size_t{1} << bits;
    Put<uint16_t>(bytes, 0, 0x4D42);
    Put(bytes, 10, static_cast<uint32_t>(54 + entries * 4));
    Put<uint32_t>(bytes, 14, 40);
    Put(bytes, 18, width);
    Put(bytes, 22, height);
    Put<uint16_t>(bytes, 26, 1);
    Put(bytes, 28, bits);
    Put(bytes, 46, paletteCount);
    for (size_t i = 0; i < entries; ++i)
        for (const size_t channel : {i, i + 1, i + 2, size_t{7}})
            bytes.push_back(static_cast<uint8_t>(channel));
    const auto rows = static_cast<size_t>(height < 0 ? -height : height);
    AppendCounting(bytes, (static_cast<size_t>(width) * bits + 31) / 32 * 4 * rows);
    return bytes;
}

inline Bytes MakeBw(uint8_t width, uint8_t height) {
    Bytes bytes(512);
    bytes[0] = 0x01;
    bytes[1] = 0xDA;
    bytes[3] = 1;
    bytes[5] = 2;
    bytes[7] = width;
    bytes[9] = height;
    AppendCounting(bytes, size_t{width} * height);
    return bytes;
}

// `kind` is the last character of the FourCC; the levels are counting bytes.
inline Bytes MakeDds(uint32_t width, uint32_t height, char kind, uint32_t mipCount = 1) {
    Bytes bytes(128);
    Put<uint32_t>(bytes, 0, 0x20534444);
    Put<uint32_t>(bytes, 4, 124);
    Put<uint32_t>(bytes, 8, mipCount > 1 ? 0x21007 : 0x1007);
    Put(bytes, 12, height);
    Put(bytes, 16, width);
    Put(bytes, 28, mipCount);
    Put<uint32_t>(bytes, 76, 32);
    Put<uint32_t>(bytes, 80, 4);
    const char fourCC[] = {'D', 'X', 'T', kind};
    std::memcpy(&bytes[84], fourCC, sizeof(fourCC));
    Put<uint32_t>(bytes, 108, mipCount > 1 ? 0x401008 : 0x1000);
    size_t size = 0;
    for (; mipCount > 0; --mipCount, width /= 2, height /= 2) {
        const size_t columns = width < 8 ? 1 : width / 4;
        const size_t rows = height < 8 ? 1 : height / 4;
        size += columns * rows * (kind == '1' ? 8 : 16);
    }
    AppendCounting(bytes, size);
    return bytes;
}

// 16 by 8 pixels: the left half 0x20A0E0, the right half 0xC02040. Progressive, in seven scans.
inline Bytes MakeProgressiveJpeg() {
    return FromHex(
        "ffd8ffe000104a46494600010100000100010000ffdb00430003020202020203020202030303030406040404040408060605"
        "0609080a0a090809090a0c0f0c0a0b0e0b09090d110d0e0f101011100a0c12131210130f101010ffdb004301030303040304"
        "08040408100b090b101010101010101010101010101010101010101010101010101010101010101010101010101010101010"
        "1010101010101010ffc20011080008001003011100021101031101ffc4001500010100000000000000000000000000000106"
        "ffc4001501010100000000000000000000000000000708ffda000c030100021003100000015208e08a2c2fffc40014100100"
        "000000000000000000000000000010ffda00080101000105023fffc40014110100000000000000000000000000000010ffda"
        "0008010301013f013fffc40014110100000000000000000000000000000010ffda0008010201013f013fffc4001410010000"
        "0000000000000000000000000010ffda0008010100063f023fffc40014100100000000000000000000000000000010ffda00"
        "08010100013f213fffda000c030100020003000000108fffc40014110100000000000000000000000000000010ffda000801"
        "0301013f103fffc40014110100000000000000000000000000000010ffda0008010201013f103fffc4001410010000000000"
        "0000000000000000000010ffda0008010100013f103fffd9");
}

// 8 by 16 pixels: the upper half grey 0x30, the lower half 0x90. One channel.
inline Bytes MakeGreyJpeg() {
    return FromHex(
        "ffd8ffe000104a46494600010100000100010000ffdb00430003020202020203020202030303030406040404040408060605"
        "0609080a0a090809090a0c0f0c0a0b0e0b09090d110d0e0f101011100a0c12131210130f101010ffc0000b08001000080101"
        "1100ffc4001500010100000000000000000000000000000809ffc40014100100000000000000000000000000000000ffda00"
        "08010100003f00152803ffd9");
}
