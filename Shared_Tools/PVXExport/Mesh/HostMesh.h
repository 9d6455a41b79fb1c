// From the host's mesh to the working form.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include <glm/mat4x4.hpp>

#include "Host/Sdk/Mesh.h"
#include "Shared_Tools/PVXExport/Mesh/MeshForm.h"
#include "Shared_Tools/PVXExport/Mesh/Uniquer.h"

using CornerOrder = std::array<uint8_t, 3>;

// How the coordinates of a material slot's faces come about.
struct SlotMapping {
    glm::mat4 matrix{1.0f};  // a row (u, v, 0, 1) multiplies it from the left
    bool faceMapped = false; // the picture lies on each face by itself, whatever the mesh says

    bool operator==(const SlotMapping&) const = default;
};

namespace HostMesh {

// The game's axes have the other handedness, so that the export turns the corners around, but for a mirrored node.
CornerOrder GetCornerOrder(const Matrix3& tm);

// Positions in the game's axes.
void ReadPositions(const Mesh& mesh, const Matrix3& tm, MeshForm& form);

// Faces with the material slot in iShader and without texture coordinates; usedSlots, one entry a slot, has those that
// occur. A material id beyond the slots is the last slot's. False for a mesh whose faces ask for positions that it
// hasn't.
bool ReadFaces(const Mesh& mesh, const CornerOrder& order, std::vector<uint8_t>& usedSlots, MeshForm& form);

// The texture coordinates of the corners of a face-mapped face: the picture's half on which the face's hidden edge is
// the diagonal.
std::array<glm::vec2, 3> GetFaceMapping(const Face& face);

} // namespace HostMesh

// Fills cTexVertex, unique and in the order of its bytes, and each face's t. Keeps its working memory from mesh to
// mesh.
class TexCoordReader {
public:
    // Mappings by slot; those of slots that don't occur count for nothing. The faces are as ReadFaces left them. False
    // for a mesh whose faces ask for texture vertices that it hasn't. A mesh without texture vertices gets none.
    bool Read(const Mesh& mesh, const CornerOrder& order, std::span<const SlotMapping> mappings,
              std::span<const uint8_t> usedSlots, MeshForm& form);

private:
    void ReadByTextureVertex(const Mesh& mesh, const CornerOrder& order, const glm::mat4& matrix, MeshForm& form);
    void ReadByCorner(const Mesh& mesh, const CornerOrder& order, std::span<const SlotMapping> mappings,
                      MeshForm& form);

    Uniquer m_Uniquer;
    std::vector<uint32_t> m_Remap;
    std::vector<uint32_t> m_IndexOfVertex; // by the host's texture vertex
};
