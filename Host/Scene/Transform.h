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

// Scale, then rotation, then translation. A rotation may have any length; one of length 0 is none.
inline Affine ComposeTransform(const glm::dvec3& translation, const glm::dquat& rotation, const glm::dvec3& scale) {
    const glm::dquat& q = rotation;
    const double squared = q.x * q.x + q.y * q.y + q.z * q.z + q.w * q.w;
    const double s = squared > 0.0 ? 2.0 / squared : 0.0;
    const double xx = s * q.x * q.x, yy = s * q.y * q.y, zz = s * q.z * q.z;
    const double xy = s * q.x * q.y, yz = s * q.y * q.z, zx = s * q.z * q.x;
    const double wx = s * q.w * q.x, wy = s * q.w * q.y, wz = s * q.w * q.z;
    // What the axes become.
    return {glm::dvec3(1.0 - yy - zz, xy + wz, zx - wy) * scale.x,
            glm::dvec3(xy - wz, 1.0 - zz - xx, yz + wx) * scale.y,
            glm::dvec3(zx + wy, yz - wx, 1.0 - xx - yy) * scale.z, translation};
}

// The transformation that does `first` and then `second`.
inline Affine Concatenate(const Affine& first, const Affine& second) {
    const auto direction = [&second](const glm::dvec3& v) {
        return v.x * second[0] + v.y * second[1] + v.z * second[2];
    };
    return {direction(first[0]), direction(first[1]), direction(first[2]), direction(first[3]) + second[3]};
}

} // namespace scene
