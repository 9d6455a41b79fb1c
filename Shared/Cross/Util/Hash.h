#pragma once

#include <cstdint>
#include <span>
#include <string_view>

// Bob Jenkins' lookup2 of the bytes, from the initial value 0. The same on every machine, so it may order data.
uint32_t Hash(std::span<const uint8_t> bytes);
uint32_t Hash(std::string_view text);

// The hash of the text in lower case, of its first 2047 characters at most.
uint32_t HashNoCase(std::string_view text);

// ASCII alone: names in files don't change with the machine's language.
constexpr char ToLower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }
bool EqualNoCase(std::string_view left, std::string_view right);
