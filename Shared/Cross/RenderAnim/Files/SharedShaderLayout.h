#pragma once

#include <cstdint>

#include "Shared/Cross/Util/FourCC.h"

// "SHRF", folder, version 1, name of the shader. In this order:
//   "TXTR"            one for each texture
//   "SHDR", "SSHR"    the shader; the second only from a writer that was given a shared one

namespace ra {

constexpr uint32_t s_SharedShaderFileChunk = FourCC("SHRF");
constexpr uint32_t s_SharedShaderFileVersion = 1;

} // namespace ra
