#include "Shared_Tools/PVXExport/ModelTransform.h"

#include <cmath>
#include <cstring>

namespace {

constexpr float s_SmallestForward = 1e-6f; // squared: a target this near the eye gives no direction

glm::vec3 Normalised(const glm::vec3& v) {
    const float length = glm::length(v);
    return length > 0.0f ? v / length : v;
}

// The same number of four matrices, which the processor works on in one step: every bone passes here at every frame.
using Lane [[gnu::vector_size(16)]] = float;

struct Row {
    Lane x, y, z;
};

// Four matrices, number by number as one matrix has them.
struct Four {
    Row rows[3];
    Row translation;
};
static_assert(sizeof(Four) == 4 * sizeof(Matrix3) && sizeof(Matrix3) == 3 * sizeof(Lane));

// What were four numbers of each of four becomes each of four numbers of all, and back again.
inline void Transpose(Lane& a, Lane& b, Lane& c, Lane& d) {
    const Lane lowAB = __builtin_shufflevector(a, b, 0, 4, 1, 5);
    const Lane highAB = __builtin_shufflevector(a, b, 2, 6, 3, 7);
    const Lane lowCD = __builtin_shufflevector(c, d, 0, 4, 1, 5);
    const Lane highCD = __builtin_shufflevector(c, d, 2, 6, 3, 7);
    a = __builtin_shufflevector(lowAB, lowCD, 0, 1, 4, 5);
    b = __builtin_shufflevector(lowAB, lowCD, 2, 3, 6, 7);
    c = __builtin_shufflevector(highAB, highCD, 0, 1, 4, 5);
    d = __builtin_shufflevector(highAB, highCD, 2, 3, 6, 7);
}

inline Four Load(const Matrix3* pMatrices) {
    Lane parts[4][3];
    std::memcpy(parts, pMatrices, sizeof parts);
    for (int part = 0; part < 3; ++part)
        Transpose(parts[0][part], parts[1][part], parts[2][part], parts[3][part]);
    const auto get = [&parts](int number) { return parts[number % 4][number / 4]; };
    return {{{get(0), get(1), get(2)}, {get(3), get(4), get(5)}, {get(6), get(7), get(8)}}, {get(9), get(10), get(11)}};
}

inline void Store(const Four& four, glm::mat4x3* pMatrices) {
    Lane parts[3][4];
    std::memcpy(parts, &four, sizeof parts);
    Lane matrices[4][3];
    for (int part = 0; part < 3; ++part) {
        Transpose(parts[part][0], parts[part][1], parts[part][2], parts[part][3]);
        for (int i = 0; i < 4; ++i)
            matrices[i][part] = parts[part][i];
    }
    std::memcpy(pMatrices, matrices, sizeof matrices);
}

inline Lane GetLength(const Row& row) {
    const Lane squared = row.x * row.x + row.y * row.y + row.z * row.z;
    return Lane{std::sqrt(squared[0]), std::sqrt(squared[1]), std::sqrt(squared[2]), std::sqrt(squared[3])};
}

// To unit length. A row of length 0, of something scaled flat, stays one.
inline Row Normalise(const Row& row, Lane length) {
    const Lane divisor = length > 0.0f ? length : Lane{1.0f, 1.0f, 1.0f, 1.0f};
    return {row.x / divisor, row.y / divisor, row.z / divisor};
}

inline Row AxesFromHost(const Row& row) { return {-row.x, row.z, -row.y}; }

inline Row Cross(const Row& a, const Row& b) {
    return {a.y * b.z - b.y * a.z, a.z * b.x - b.z * a.x, a.x * b.y - b.x * a.y};
}

inline Row Scale(const Row& row, Lane factor) { return {row.x * factor, row.y * factor, row.z * factor}; }

Four FromHost(const Four& host) {
    Row unit[3];
    Lane lengths[3];
    for (int i = 0; i < 3; ++i) {
        const Row axes = AxesFromHost(Normalise(host.rows[i], GetLength(host.rows[i]))); // what the host's NoScale does
        lengths[i] = GetLength(axes);
        unit[i] = Normalise(axes, lengths[i]);
    }
    // Each row goes into the next ones: the change of axes mirrors, and this makes a rotation of it again.
    const Row row0 = Cross(unit[1], unit[2]);
    const Row row1 = Cross(unit[2], row0);
    const Row row2 = Cross(row0, row1);
    return {{Scale(row0, lengths[0]), Scale(row1, lengths[1]), Scale(row2, lengths[2])},
            AxesFromHost(host.translation)};
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
    FourMatrices matrices = {hostMatrix, hostMatrix, hostMatrix, hostMatrix};
    FromHost(matrices);
    return matrices[0];
}

void FromHost(FourMatrices& matrices) { Store(::FromHost(Load(matrices.data())), matrices.data()); }

glm::mat4x3 LookAt(const glm::vec3& eye, const glm::vec3& target, const glm::vec3& up) {
    const glm::vec3 toTarget = target - eye;
    const glm::vec3 forward =
        glm::dot(toTarget, toTarget) > s_SmallestForward ? Normalised(toTarget) : glm::vec3(1, 0, 0);
    const glm::vec3 side = Normalised(glm::cross(UsableUp(forward, up), forward));
    return {side, glm::cross(forward, side), forward, eye};
}

} // namespace ModelTransform
