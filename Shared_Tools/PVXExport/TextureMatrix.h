// Where a material's maps lie on the surface, as matrices for texture coordinates: a row (u, v, 0, 1) multiplies them
// from the left, and their rows are the columns of the GLM type.
#pragma once

#include <array>

#include <glm/mat4x4.hpp>

#include "Shared/Cross/RenderAnim/ChannelData.h"

class BitmapTex;
class Mtl;
class StdMat;
class Texmap;

namespace TextureMatrix {

// The host's map slot of each shader channel.
extern const std::array<int, ChannelCount> s_MapOfChannel;

// Null when the map is no bitmap.
BitmapTex* AsBitmap(Texmap* pTexmap);
// Null when the material is no standard one.
StdMat* AsStandard(Mtl* pMtl);

// Whether the host's tiling bits mirror every other tile both ways.
bool IsMirrored(int tiling);

// False for a map that has no such matrix: all but bitmaps with a placement.
bool FromMap(Texmap* pTexmap, glm::mat4& out);

// True when all maps that are on lie alike; `out` is then their matrix, or the identity without maps. It goes into the
// vertices. False, and the identity, when two differ: then each channel of the shader holds its own.
bool IsShared(StdMat& material, glm::mat4& out);

// What the texture coordinates of a face with this material are multiplied by. Null has the identity.
glm::mat4 OfFace(Mtl* pMtl);

} // namespace TextureMatrix
