#pragma once

#include "Host/Gltf/Triangles.h"

#include <memory>
#include <span>
#include <vector>

namespace gltf {

// The triangles of one primitive as they lie in the file, checked: all attributes have `vertexCount` elements, and no
// index reaches beyond them.
struct PrimitiveData {
    PrimitiveMode mode = PrimitiveMode::Triangles;
    uint16_t materialId = 0;
    uint32_t faceCount = 0;
    uint32_t vertexCount = 0;
    AccessorView indices = {}; // empty: the vertices are taken as they come
    AccessorView positions = {};
    AccessorView normals = {};   // empty: flat faces
    AccessorView texCoords = {}; // empty: none
    struct SkinSet {
        AccessorView joints;
        AccessorView weights;
        bool operator==(const SkinSet&) const = default;
    };
    std::vector<SkinSet> skinSets = {};
    struct MorphTarget {
        AccessorView positions; // empty: it leaves them alone
        AccessorView normals;
    };
    std::vector<MorphTarget> morphTargets = {};
};

// All triangles of a glTF mesh. Shared by the nodes that show it.
struct MeshData {
    std::shared_ptr<const BufferStore> pBuffers; // what the views look into
    std::vector<PrimitiveData> primitives;
    std::vector<int32_t> materials; // by material id: the glTF material, -1 for none
    std::vector<float> morphWeights;
    uint32_t faceCount = 0;
    bool hasTexCoords = false;  // any primitive has
    bool hasNormals = false;    // any primitive has
    bool allNormals = false;    // every primitive has
    bool hasOtherModes = false; // points or lines were left out
    size_t skinSetCount = 0;    // the most of any primitive
};

// A run of a mesh's faces, in the file's order.
struct FaceRange {
    uint32_t first = 0;
    uint32_t count = 0;
};

// What one exported mesh can hold: its corners are counted in 16 bits. So many faces can't have more than 65,535
// distinct corners either.
inline constexpr uint32_t s_MostFacesOfMesh = 21845;

// Deals a mesh's faces to as many host meshes as it takes; at least one range.
std::vector<FaceRange> SplitFaces(uint32_t faceCount);

// Which set of texture coordinates a glTF material's primitives take, by the material's index; -1 is no material.
using TexCoordSetOf = std::span<const uint32_t>;

// Reads mesh `index` of the file. `texCoordSets` has an entry for each material. Faults when anything of it doesn't
// hold.
std::shared_ptr<const MeshData> ReadMesh(const SceneFile& file, const std::shared_ptr<BufferStore>& pBuffers,
                                         size_t index, TexCoordSetOf texCoordSets);

// Faults when a vertex hangs on a joint that the skin, which has `jointCount`, doesn't have.
void CheckJoints(const Place& place, const MeshData& mesh, size_t jointCount);

} // namespace gltf
