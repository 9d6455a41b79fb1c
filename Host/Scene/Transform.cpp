#include "Host/Scene/Transform.h"

#include <glm/mat3x3.hpp>

namespace scene {

Affine ComposeTransform(const glm::dvec3& translation, const glm::dquat& rotation, const glm::dvec3& scale) {
    // The columns of GLM's rotation are what the axes become, which are the rows here.
    const glm::dmat3x3 axes = glm::mat3_cast(rotation);
    return {axes[0] * scale.x, axes[1] * scale.y, axes[2] * scale.z, translation};
}

} // namespace scene
