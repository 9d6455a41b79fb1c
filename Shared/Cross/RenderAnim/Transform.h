#pragma once

#include <glm/gtc/quaternion.hpp>
#include <glm/mat3x3.hpp>
#include <glm/mat4x3.hpp>
#include <glm/vec3.hpp>

namespace ra {

// A model's transforms are glm::mat4x3 whose four columns are the three rows of a rotation and a translation, so that
// the twelve floats in memory are those of the files. A point p goes to p.x * m[0] + p.y * m[1] + p.z * m[2] + m[3].

inline glm::vec3 TransformPoint(const glm::vec3& p, const glm::mat4x3& m) {
    return p.x * m[0] + p.y * m[1] + p.z * m[2] + m[3];
}

// First `a`, then `b`.
glm::mat4x3 Multiply(const glm::mat4x3& a, const glm::mat4x3& b);
// Also for rows that are scaled or askew. A matrix without an inverse, which only a damaged file has, gives the
// identity.
glm::mat4x3 Inverse(const glm::mat4x3& m);
glm::mat4x3 MakeTransform(const glm::quat& rotation, const glm::vec3& position);
// The rotation of a matrix whose rows are of length 1 and at right angles; of any other, something near it.
glm::quat GetRotation(const glm::mat4x3& m);

} // namespace ra
