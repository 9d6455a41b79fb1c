#include "Host/Sdk/Matrix3.h"

#include <glm/mat3x3.hpp>
#include <glm/matrix.hpp>

#include <cmath>

namespace {

glm::dvec3 Direction(const glm::dvec3& v, const glm::dmat4x3& m) { return v.x * m[0] + v.y * m[1] + v.z * m[2]; }

} // namespace

void NoScale(Matrix3& m) {
    for (int row = 0; row < 3; ++row) {
        const float length = Length(m[row]);
        if (length > 0.0f)
            m[row] /= length;
    }
}

Matrix3 Multiply(const Matrix3& first, const Matrix3& second) {
    const glm::dmat4x3 a(first);
    const glm::dmat4x3 b(second);
    return Matrix3(glm::dmat4x3(Direction(a[0], b), Direction(a[1], b), Direction(a[2], b), Direction(a[3], b) + b[3]));
}

Matrix3 Inverse(const Matrix3& m) {
    const glm::dmat4x3 a(m);
    const glm::dmat3x3 linear(a[0], a[1], a[2]);
    const double determinant = glm::determinant(linear);
    if (determinant == 0.0 || !std::isfinite(determinant))
        return IdentityMatrix();
    const glm::dmat3x3 inverse = glm::inverse(linear);
    return Matrix3(glm::dmat4x3(inverse[0], inverse[1], inverse[2], -(inverse * a[3])));
}
