#include "Host/Sdk/Matrix3.h"

#include <glm/mat3x3.hpp>
#include <glm/matrix.hpp>

#include <cmath>

void NoScale(Matrix3& m) {
    for (int row = 0; row < 3; ++row) {
        const float length = Length(m[row]);
        if (length > 0.0f)
            m[row] /= length;
    }
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
