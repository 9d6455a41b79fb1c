// From the host's axes to the game's: (x, y, z) becomes (-x, z, -y).
#pragma once

#include <array>

#include <glm/mat4x3.hpp>
#include <glm/vec3.hpp>

#include "Host/Sdk/Matrix3.h"

namespace ModelTransform {

inline glm::vec3 AxesFromHost(const Point3& p) { return {-p.x, p.z, -p.y}; }

// A transformation of the model: without scale, in the game's axes, its rows at right angles.
glm::mat4x3 FromHost(const Matrix3& hostMatrix);

// Four at once, in their places; they take little longer than one.
using FourMatrices = std::array<Matrix3, 4>;
void FromHost(FourMatrices& matrices);

// Rows side, up, forward and eye, with forward from the eye to the target.
glm::mat4x3 LookAt(const glm::vec3& eye, const glm::vec3& target, const glm::vec3& up);

} // namespace ModelTransform
