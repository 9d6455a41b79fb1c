#pragma once

#include "Host/Sdk/Matrix3.h"

#include <glm/gtc/quaternion.hpp>
#include <glm/mat4x3.hpp>

namespace scene {

// A transformation as the scene works with it: laid out like a Matrix3, in double, since long chains of nodes are
// multiplied. It is handed out as a Matrix3.
using Affine = glm::dmat4x3;

inline Affine IdentityAffine() { return Affine(1.0); }
inline Affine ToAffine(const Matrix3& m) { return Affine(m); }
inline Matrix3 ToMatrix3(const Affine& m) { return Matrix3(m); }

// Scale, then rotation, then translation.
Affine ComposeTransform(const glm::dvec3& translation, const glm::dquat& rotation, const glm::dvec3& scale);

// The transformation that does `first` and then `second`.
inline Affine Concatenate(const Affine& first, const Affine& second) {
    const auto direction = [&second](const glm::dvec3& v) {
        return v.x * second[0] + v.y * second[1] + v.z * second[2];
    };
    return {direction(first[0]), direction(first[1]), direction(first[2]), direction(first[3]) + second[3]};
}

} // namespace scene
