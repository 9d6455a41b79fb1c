#pragma once

#include <string>
#include <string_view>

// Names in configuration files are plain ASCII as far as case goes, on every machine and in every locale.

inline char ToLower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

std::string ToLower(std::string_view text);
bool IsSameNoCase(std::string_view a, std::string_view b);
bool StartsWithNoCase(std::string_view text, std::string_view start);
// Without blanks, and line feeds at the end only: what begins with one isn't a line.
std::string_view TrimLine(std::string_view text);
