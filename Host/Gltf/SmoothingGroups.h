#pragma once

#include <glm/vec3.hpp>

#include <cstdint>
#include <span>
#include <vector>

namespace gltf {

// Whether two normals count as the same: they are within half a degree, or equal. One that holds something that is no
// number is the same as none.
bool AreNormalsEqual(const glm::vec3& a, const glm::vec3& b);

// A surface of triangles whose corners are vertices, several of which may lie on one position.
struct SmoothingInput {
    std::span<const uint32_t> corners;   // three vertices a face
    std::span<const uint32_t> positions; // the position of each vertex
    uint32_t positionCount = 0;
    std::span<const glm::vec3> normals; // of each vertex; (0, 0, 0) is none, the corner is flat
};

// Smoothing groups, a mask for each face, that say what the normals say: faces with the same normal at a position share
// a group, faces with different normals there share none. A face that is smooth with nobody has 0.
//
// Where masks of whole faces can't say it, the fault is kept small: two faces that the normals call smooth at one end
// of their edge and hard at the other are kept apart as long as other faces carry on the smooth surface around them
// (a crease that fades out), and together when they have only each other (the tip of a cone). More than 32 parts that
// meet each other reuse the group that does the least harm.
std::vector<uint32_t> MakeSmoothingGroups(const SmoothingInput& input);

} // namespace gltf
