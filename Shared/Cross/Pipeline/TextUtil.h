#pragma once

#include "Shared/Cross/Util/Hash.h"

#include <cstdint>
#include <string>
#include <string_view>

// Names in configuration files are plain ASCII as far as case goes, on every machine and in every locale.

std::string ToLower(std::string_view text);
bool StartsWithNoCase(std::string_view text, std::string_view start);
// Without blanks, and line feeds at the end only: what begins with one isn't a line.
std::string_view TrimLine(std::string_view text);

// False, with the buffer empty, when the text doesn't fit with its end.
bool CopyOut(std::string_view text, char* pOut, uint32_t outLen);
