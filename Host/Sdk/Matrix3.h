#pragma once

#include <glm/geometric.hpp>
#include <glm/mat4x3.hpp>
#include <glm/vec2.hpp>
#include <glm/vec3.hpp>
#include <glm/vec4.hpp>

using Point2 = glm::vec2;
using Point3 = glm::vec3;
using Point4 = glm::vec4;

// Red, green, blue in 0..1.
using Color = glm::vec3;

// Four rows of three floats, the fourth row the translation; points multiply it from the left. The rows are the columns
// of the GLM type, whose own product operators therefore mean something else: use the operations below.
using Matrix3 = glm::mat4x3;

inline Matrix3 IdentityMatrix() { return Matrix3(1.0f); }

inline Point3 GetRow(const Matrix3& m, int row) { return m[row]; }
inline void SetRow(Matrix3& m, int row, const Point3& value) { m[row] = value; }

// The component `column` (0..2) of the four rows.
inline Point4 GetColumn(const Matrix3& m, int column) {
    return {m[0][column], m[1][column], m[2][column], m[3][column]};
}
inline void SetColumn(Matrix3& m, int column, const Point4& value) {
    for (int row = 0; row < 4; ++row)
        m[row][column] = value[row];
}

// Brings the first three rows to unit length. A row of length 0 stays.
void NoScale(Matrix3& m);

// The point times the matrix, and the same for a direction, which isn't translated.
inline Point3 TransformPoint(const Point3& p, const Matrix3& m) { return p.x * m[0] + p.y * m[1] + p.z * m[2] + m[3]; }
inline Point3 TransformVector(const Point3& v, const Matrix3& m) { return v.x * m[0] + v.y * m[1] + v.z * m[2]; }

// Worked out in double. A matrix that can't be inverted gives the identity.
Matrix3 Inverse(const Matrix3& m);

inline Point3 CrossProd(const Point3& a, const Point3& b) { return glm::cross(a, b); }
inline float DotProd(const Point3& a, const Point3& b) { return glm::dot(a, b); }
inline float Length(const Point3& v) { return glm::length(v); }
