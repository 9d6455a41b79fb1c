#pragma once

#include <cstddef>
#include <cstdint>

// Pixels of three bytes to opaque ones of four. The input may be the tail of the output's own block: a pixel's new
// place never reaches the old ones of those behind it.
void ExpandTriples(const uint8_t* pIn, uint8_t* pOut, size_t count);
