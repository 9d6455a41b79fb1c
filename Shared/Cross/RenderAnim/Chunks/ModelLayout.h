#pragma once

#include <cstdint>

#include "Shared/Cross/Util/FourCC.h"

// "QPVX", folder, version 1, name of the model. In this order:
//   "TXTR"            one for each texture
//   "SHDR", "SSHR"    one for each shader
//   "SKEL"            if the model has a skeleton
//   "MSGR"
//   "MARK"            one for each marker
//   "CMRA"            one for each camera
//   "ANIM"            one for each animation
// The intermediate and the generic form have different "SKEL" and "ANIM".

namespace ra {

constexpr uint32_t s_ModelChunk = FourCC("QPVX");
constexpr uint32_t s_ModelVersion = 1;
constexpr uint32_t s_SkeletonChunk = FourCC("SKEL");
constexpr uint32_t s_AnimChunk = FourCC("ANIM");

} // namespace ra
