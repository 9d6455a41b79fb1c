#pragma once

#include <memory>

#include "Shared/Cross/FileSystem/Chunky.h"

class Anim;
class RenderModel;

namespace ra::intermediate {

// Reads the next chunk, an "ANIM", for a model, as the generic form has it:
//
// - Bones are those of the skeleton, by their indices. One that the skeleton lacks is logged and left out. The matrices
//   in the world become positions and rotations relative to the parent, without a sudden change of a rotation's sign.
// - What drives a shader or a mesh that the model lacks is logged and left out. A shader's values become offsets to
//   what the shader itself has; those that never leave it are left out.
// - A mesh whose visibility isn't driven gets a key of 0.
//
// Throws as ReadAnim, and std::runtime_error at the first bone for a model without a skeleton.
std::unique_ptr<Anim> ReadLocalAnim(Chunky& chunky, const RenderModel& model);

} // namespace ra::intermediate
