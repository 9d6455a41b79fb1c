#include "Host/Gltf/Transforms.h"

namespace gltf {

namespace {

// Rotations are meant to be of unit length; one of length 0 is none.
glm::dquat Normalized(const glm::dquat& q) {
    const double length = std::sqrt(q.w * q.w + q.x * q.x + q.y * q.y + q.z * q.z);
    return length > 0.0 ? q / length : glm::dquat(1.0, 0.0, 0.0, 0.0);
}

} // namespace

scene::Affine NodeTransform::ToAffine() const {
    return matrix ? *matrix : scene::ComposeTransform(translation, Normalized(rotation), scale);
}

scene::Affine FromColumns(std::span<const float, 16> columns) {
    scene::Affine matrix;
    size_t first = 0;
    for (int column = 0; column < 4; ++column, first += 4)
        matrix[column] = {columns[first], columns[first + 1], columns[first + 2]};
    return matrix;
}

NodeTransform ReadTransform(const Place& place, const Json& node) {
    NodeTransform transform;
    float m[16];
    if (ReadFloats(place, node, "matrix", m)) {
        transform.matrix = FromColumns(m);
        return transform;
    }
    float t[3] = {0.0f, 0.0f, 0.0f};
    float r[4] = {0.0f, 0.0f, 0.0f, 1.0f};
    float s[3] = {1.0f, 1.0f, 1.0f};
    ReadFloats(place, node, "translation", t);
    ReadFloats(place, node, "rotation", r);
    ReadFloats(place, node, "scale", s);
    transform.translation = {t[0], t[1], t[2]};
    transform.rotation = glm::dquat(r[3], r[0], r[1], r[2]);
    transform.scale = {s[0], s[1], s[2]};
    return transform;
}

scene::Affine ToHostAxes(const scene::Affine& local, AxesChange change) {
    scene::Affine m = local;
    // The host's Y axis is glTF's -Z, its Z axis glTF's Y.
    if (change.ownSide) {
        m[1] = -local[2];
        m[2] = local[1];
    }
    if (change.parentSide)
        for (int row = 0; row < 4; ++row)
            m[row] = ToHostAxes(m[row]);
    return m;
}

} // namespace gltf
