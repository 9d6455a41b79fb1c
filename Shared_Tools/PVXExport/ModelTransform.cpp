#include "Shared_Tools/PVXExport/ModelTransform.h"

#include <array>
#include <cmath>

namespace {

constexpr float s_SmallestForward = 1e-6f; // squared: a target this near the eye gives no direction

glm::vec3 Normalised(const glm::vec3& v) {
    const float length = glm::length(v);
    return length > 0.0f ? v / length : v;
}

// The up vector must not lie along the view.
glm::vec3 UsableUp(const glm::vec3& forward, const glm::vec3& up) {
    const float along = glm::dot(forward, up);
    if (along != 1.0f && along != -1.0f)
        return Normalised(up);
    return std::fabs(forward.z - 1.0f) <= 1e-6f ? glm::vec3(0, 1, 0) : glm::vec3(0, 0, 1);
}

} // namespace

namespace ModelTransform {

glm::mat4x3 FromHost(const Matrix3& hostMatrix) {
    Matrix3 withoutScale = hostMatrix;
    NoScale(withoutScale);
    return FromHostWithScale(withoutScale);
}

glm::mat4x3 FromHostWithScale(const Matrix3& hostMatrix) {
    glm::mat4x3 m;
    for (int row = 0; row < 4; ++row)
        m[row] = AxesFromHost(hostMatrix[row]);

    std::array<float, 3> lengths;
    for (int row = 0; row < 3; ++row) {
        lengths[static_cast<size_t>(row)] = glm::length(m[row]);
        m[row] = Normalised(m[row]); // a row of length 0, of something scaled flat, stays one
    }
    // Each row goes into the next ones: the change of axes mirrors, and this makes a rotation of it again.
    m[0] = glm::cross(m[1], m[2]);
    m[1] = glm::cross(m[2], m[0]);
    m[2] = glm::cross(m[0], m[1]);
    for (int row = 0; row < 3; ++row)
        m[row] *= lengths[static_cast<size_t>(row)];
    return m;
}

glm::mat4x3 LookAt(const glm::vec3& eye, const glm::vec3& target, const glm::vec3& up) {
    const glm::vec3 toTarget = target - eye;
    const glm::vec3 forward =
        glm::dot(toTarget, toTarget) > s_SmallestForward ? Normalised(toTarget) : glm::vec3(1, 0, 0);
    const glm::vec3 side = Normalised(glm::cross(UsableUp(forward, up), forward));
    return {side, glm::cross(forward, side), forward, eye};
}

} // namespace ModelTransform
