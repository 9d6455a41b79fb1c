#include "Host/Gltf/Transforms.h"

namespace gltf {

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

} // namespace gltf
