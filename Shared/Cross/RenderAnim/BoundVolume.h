#pragma once

#include <span>

#include <glm/mat3x3.hpp>
#include <glm/vec3.hpp>

// A box of any direction. Its three axes are the rows of the rotation, which are the matrix's columns here and lie in
// memory as in files.
struct OrientedBox {
    glm::vec3 centre = glm::vec3(0.0f);
    glm::vec3 halfExtents = glm::vec3(0.0f);
    glm::mat3 rotation = glm::mat3(1.0f);
};

struct BoundSphere {
    glm::vec3 centre = glm::vec3(0.0f);
    float radius = 0.0f;
};

// What a mesh or a model lies in: a box and a sphere, or nothing as long as it isn't valid.
class BoundVolume {
public:
    bool IsValid() const { return m_Valid; }
    const OrientedBox& GetBox() const { return m_Box; }
    const BoundSphere& GetSphere() const { return m_Sphere; }

    // Back to not valid.
    void Clear() { *this = BoundVolume(); }
    // The sphere becomes the one around the box.
    void SetBox(const OrientedBox& box);
    // An upright box that holds the points; without points the volume isn't valid.
    void SetFromPoints(std::span<const glm::vec3> points);
    // Grows to hold the other as well. The box is upright afterwards, unless one of the two wasn't valid.
    void Merge(const BoundVolume& other);

private:
    OrientedBox m_Box;
    BoundSphere m_Sphere;
    bool m_Valid = false;
};
