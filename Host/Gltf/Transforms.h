#pragma once

#include "Host/Gltf/Json.h"
#include "Host/Scene/Transform.h"

namespace gltf {

// A node's local transformation as glTF says it.
struct NodeTransform {
    glm::dvec3 translation{0.0};
    glm::dquat rotation{1.0, 0.0, 0.0, 0.0};
    glm::dvec3 scale{1.0};
    // Set: the four columns of a matrix, in place of the above.
    std::optional<scene::Affine> matrix;

    // Rows of glTF's own axes, points multiplying from the left.
    scene::Affine ToAffine() const { return matrix ? *matrix : scene::ComposeTransform(translation, rotation, scale); }
};

// The rows that a matrix of glTF, sixteen numbers column by column, is in points multiplying from the left.
scene::Affine FromColumns(std::span<const float, 16> columns);

NodeTransform ReadTransform(const Place& place, const Json& node);

// glTF is Y up, the host Z up: a glTF point (x, y, z) is the host's (x, -z, y).
inline glm::dvec3 ToHostAxes(const glm::dvec3& p) { return {p.x, -p.z, p.y}; }

// Which sides of a node's local transformation change axes: all, but for cameras and lights, whose own frame stays as
// it is; so what hangs on one of them finds its parent in glTF's axes.
struct AxesChange {
    bool parentSide = true;
    bool ownSide = true;
};

// A transformation in glTF's axes as one in the host's.
inline scene::Affine ToHostAxes(const scene::Affine& local, AxesChange change) {
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
