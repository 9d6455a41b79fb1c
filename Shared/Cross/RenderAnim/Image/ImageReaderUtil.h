#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

#include "Shared/Cross/FileSystem/ByteStream.h"
#include "Shared/Cross/RenderAnim/Image/Image.h"

// What the readers of picture files share.

// A little-endian number at any place.
template <typename T>
T GetLittle(const uint8_t* pBytes) {
    static_assert(std::endian::native == std::endian::little);
    T value;
    std::memcpy(&value, pBytes, sizeof(value));
    return value;
}

inline uint16_t GetBig16(const uint8_t* pBytes) { return static_cast<uint16_t>(pBytes[0] << 8 | pBytes[1]); }

// Bytes from the position to the end.
uint32_t GetBytesAhead(ByteStream& stream);

// Says in the log why a picture isn't read. Null, for the reader to give back.
std::unique_ptr<Image> Refuse(const char* pName, const std::string& reason);
// The same in the words of the oldest readers, which have the name at the end.
std::unique_ptr<Image> RefuseNameLast(const char* pReason, const char* pName);
// The same in those of theirs that leave the name to the caller's line.
std::unique_ptr<Image> RefuseWithoutName(const char* pReason);

// Whether an image can have the sides that a picture file claims; a line that says what would be right if not.
bool CheckSides(const char* pName, ImageType type, uint32_t width, uint32_t height);
