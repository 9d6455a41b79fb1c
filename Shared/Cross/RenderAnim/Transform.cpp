#include "Shared/Cross/RenderAnim/Transform.h"

#include <cmath>

#include <glm/matrix.hpp>

namespace ra {

glm::mat4x3 Multiply(const glm::mat4x3& a, const glm::mat4x3& b) {
    const glm::mat3 rotation(b);
    return {rotation * a[0], rotation * a[1], rotation * a[2], rotation * a[3] + b[3]};
}

glm::mat4x3 Inverse(const glm::mat4x3& m) {
    const glm::mat3 rotation(m);
    const float determinant = glm::determinant(rotation);
    if (determinant == 0.0f || !std::isfinite(determinant))
        return glm::mat4x3(1.0f);
    const glm::mat3 inverse = glm::inverse(rotation);
    return {inverse[0], inverse[1], inverse[2], -(inverse * m[3])};
}

glm::mat4x3 MakeTransform(const glm::quat& rotation, const glm::vec3& position) {
    const glm::mat3 rows = glm::mat3_cast(rotation);
    return {rows[0], rows[1], rows[2], position};
}

glm::quat GetRotation(const glm::mat4x3& m) { return glm::quat_cast(glm::mat3(m)); }

} // namespace ra
