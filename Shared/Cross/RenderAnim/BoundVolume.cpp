#include "Shared/Cross/RenderAnim/BoundVolume.h"

#include <glm/common.hpp>
#include <glm/geometric.hpp>

namespace {

// Half the sides of the upright box around it.
glm::vec3 GetReach(const OrientedBox& box) {
    return glm::abs(box.rotation[0]) * box.halfExtents.x + glm::abs(box.rotation[1]) * box.halfExtents.y +
           glm::abs(box.rotation[2]) * box.halfExtents.z;
}

OrientedBox MakeUpright(const glm::vec3& lowest, const glm::vec3& highest) {
    // Halved one by one, so that two far ends don't overflow.
    return {.centre = lowest * 0.5f + highest * 0.5f, .halfExtents = highest * 0.5f - lowest * 0.5f};
}

} // namespace

void BoundVolume::SetBox(const OrientedBox& box) {
    m_Box = box;
    m_Sphere = {.centre = box.centre, .radius = glm::length(box.halfExtents)};
    m_Valid = true;
}

void BoundVolume::SetFromPoints(std::span<const glm::vec3> points) {
    Clear();
    if (points.empty())
        return;
    glm::vec3 lowest = points.front();
    glm::vec3 highest = points.front();
    for (const glm::vec3& point : points) {
        lowest = glm::min(lowest, point);
        highest = glm::max(highest, point);
    }
    SetBox(MakeUpright(lowest, highest));
}

void BoundVolume::Merge(const BoundVolume& other) {
    if (!other.m_Valid)
        return;
    if (!m_Valid) {
        *this = other;
        return;
    }
    const glm::vec3 reach = GetReach(m_Box);
    const glm::vec3 otherReach = GetReach(other.m_Box);
    SetBox(MakeUpright(glm::min(m_Box.centre - reach, other.m_Box.centre - otherReach),
                       glm::max(m_Box.centre + reach, other.m_Box.centre + otherReach)));
}
