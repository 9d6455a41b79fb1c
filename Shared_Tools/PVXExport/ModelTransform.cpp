#include "Shared_Tools/PVXExport/ModelTransform.h"

#include <array>
#include <cmath>

namespace {

constexpr float s_SmallestForward = 1e-6f; // squared: a target this near the eye gives no direction

glm::vec3 Normalised(const glm::vec3& v) {
    const float length = glm::length(v);
    return length > 0.0f ? v / length : v;
}

// Four numbers that the processor takes in one step.
using Lane [[gnu::vector_size(16)]] = float;

// The three rows of a matrix side by side, for every bone passes here at every frame. The fourth place idles.
struct Rows {
    Lane x;
    Lane y;
    Lane z;

    glm::vec3 Get(int row) const { return {x[row], y[row], z[row]}; }
};

inline Lane GetLengths(const Rows& rows) {
    const Lane squares = rows.x * rows.x + rows.y * rows.y + rows.z * rows.z;
    return Lane{std::sqrt(squares[0]), std::sqrt(squares[1]), std::sqrt(squares[2]), std::sqrt(squares[3])};
}

// To unit length. A row of length 0, of something scaled flat, stays one.
inline Rows Normalise(const Rows& rows, const Lane& lengths) {
    const Lane divisors = lengths > 0.0f ? lengths : Lane{1.0f, 1.0f, 1.0f, 1.0f};
    return {rows.x / divisors, rows.y / divisors, rows.z / divisors};
}

Rows AxesFromHost(const Rows& rows) { return {-rows.x, rows.z, -rows.y}; }

// The up vector must not lie along the view.
glm::vec3 UsableUp(const glm::vec3& forward, const glm::vec3& up) {
    const float along = glm::dot(forward, up);
    if (along != 1.0f && along != -1.0f)
        return Normalised(up);
    return std::fabs(forward.z - 1.0f) <= 1e-6f ? glm::vec3(0, 1, 0) : glm::vec3(0, 0, 1);
}

} // namespace

namespace ModelTransform {

glm::mat4x3 FromHost(const Matrix3& m) {
    const Rows rows = {{m[0].x, m[1].x, m[2].x, 0.0f}, {m[0].y, m[1].y, m[2].y, 0.0f}, {m[0].z, m[1].z, m[2].z, 0.0f}};
    const Rows axes = AxesFromHost(Normalise(rows, GetLengths(rows))); // what the host's NoScale does
    const Lane lengths = GetLengths(axes);
    const Rows unit = Normalise(axes, lengths);
    // Each row goes into the next ones: the change of axes mirrors, and this makes a rotation of it again.
    const glm::vec3 row0 = glm::cross(unit.Get(1), unit.Get(2));
    const glm::vec3 row1 = glm::cross(unit.Get(2), row0);
    const glm::vec3 row2 = glm::cross(row0, row1);
    return {row0 * lengths[0], row1 * lengths[1], row2 * lengths[2], ModelTransform::AxesFromHost(m[3])};
}

glm::mat4x3 LookAt(const glm::vec3& eye, const glm::vec3& target, const glm::vec3& up) {
    const glm::vec3 toTarget = target - eye;
    const glm::vec3 forward =
        glm::dot(toTarget, toTarget) > s_SmallestForward ? Normalised(toTarget) : glm::vec3(1, 0, 0);
    const glm::vec3 side = Normalised(glm::cross(UsableUp(forward, up), forward));
    return {side, glm::cross(forward, side), forward, eye};
}

} // namespace ModelTransform
