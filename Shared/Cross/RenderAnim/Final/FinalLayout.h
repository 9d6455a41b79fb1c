#pragma once

#include <cstdint>

#include "Shared/Cross/RenderAnim/Chunks/ModelLayout.h"

// "QPVX", folder, version 3, name of the model, in the game's own files. In this order:
//   "TXTR"            one for each texture
//   "SHDR", "SSHR"    one for each shader that the model owns
//   "SKEL"            if the model has a skeleton
//   "MSGR"
//   "MARK"            one, if the model has markers
//   "CAMS"            one, if the model has cameras
//   "ANIM"            one for each animation of the model's own

namespace ra {

constexpr uint32_t s_FinalModelVersion = 3;

} // namespace ra
