#pragma once

#include <cstdint>

#include "Shared/Cross/Util/FourCC.h"

// "ANIM", folder, version 2, name of the animation: "DATA" or "XREF", and "ANBV" when its bounds are known.
//
// "DATA" in an animation, folder, version 3, of the same name: "INFO"; "BANM" for each bone, in the skeleton's order
// and for a model with a skeleton alone; "CANM" for each control; "CMRA" for each camera, as Chunks/AnimParts.cpp
// tells.
//
// "INFO", data, version 5:
//   int32   in version 1 alone; means nothing
//   int32   frames, above 0
//   float   duration in seconds, above 0
//   int32   before version 5, in place of these two: the first frame,
//   int32     the last one
//   float     and frames a second
//   2 vec3  before version 4; mean nothing
//   int32   before version 3; means nothing
//   2 vec3  before version 4; mean nothing
//
// "BANM", data, version 2, name of the bone:
//   uint32  keys; for each:
//     float   time
//     vec3    position in the parent
//   uint32  keys; for each:
//     float   time
//     quat    rotation in the parent
//   uint8   whether the bone is animated
//   int32   in version 1, in place of the byte: above 0 when it is
//
// "CANM", data, version 2, name of the shader or mesh: a control, as Chunks/AnimParts.cpp tells. In version 1 the
// values of shaders are 1 below what they are now.
//
// "XREF", data, version 3, and "ANBV" are told by Chunks/AnimRecord.cpp. In version 1 of "XREF" the model's name is a
// path with drive and extension.

namespace ra::generic {

constexpr uint32_t s_AnimDataVersion = 3;
constexpr uint32_t s_AnimInfoVersion = 5;
constexpr uint32_t s_BoneAnimVersion = 2;
constexpr uint32_t s_ControlAnimChunk = FourCC("CANM");
constexpr uint32_t s_ControlAnimVersion = 2;
constexpr uint32_t s_XRefAnimVersion = 3;
constexpr uint32_t s_OldestVersion = 1; // of all of these

} // namespace ra::generic
