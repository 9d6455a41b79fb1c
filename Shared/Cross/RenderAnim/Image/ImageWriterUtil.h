#pragma once

#include <cstdint>
#include <initializer_list>
#include <span>

// What the writers of picture files share.

// A whole file out of its parts. False, with the line that tells which, when it can't be opened or written; what stood
// under the name is still there then.
bool WritePictureFile(const char* pName, std::initializer_list<std::span<const uint8_t>> parts);
bool WritePictureFile(const char* pName, std::span<const std::span<const uint8_t>> parts);
