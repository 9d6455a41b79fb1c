#pragma once

#include <cstddef>

// What the module of this folder offers.

// Matches the whole text with a pattern and copies its first group, with a final 0 and cut to the room. False when it
// doesn't match, or is too much work for the library.
using PatternMatchFunction = bool(const char* pPattern, const char* pText, char* pGroup, size_t room);

constexpr char s_PatternModule[] = "libRevControlPatterns.so";
constexpr char s_PatternFunction[] = "PvxMatchPattern";
