#pragma once

#include "Host/Gltf/MeshData.h"
#include "Host/Scene/Objects.h"

#include <memory>
#include <vector>

namespace gltf {

// The vertices that a run of faces uses, welded: what a mesh and its skin are both made from, so that their points are
// the same.
struct WeldedVertices {
    // The vertices of one primitive among those of the run.
    struct Part {
        const PrimitiveData* pPrimitive = nullptr;
        uint32_t firstFace = 0; // within the run
        uint32_t faceCount = 0;
        uint32_t firstVertex = 0; // within the run
        uint32_t vertexCount = 0;
        std::vector<uint32_t> sources = {}; // the vertices in the file; empty: all of them, in order

        uint32_t GetSource(uint32_t i) const { return sources.empty() ? i : sources[i]; }
    };
    static constexpr size_t WordsOfSkinSet = 8; // four joints, four weights

    std::vector<Part> parts;
    std::vector<uint32_t> corners; // three vertices a face
    uint32_t vertexCount = 0;
    std::vector<uint32_t> words;     // of each vertex: its position's bits, then what the skin says of it
    size_t width = 3;                // words a vertex
    std::vector<uint32_t> positions; // of each vertex: its welded position
    std::vector<uint32_t> firsts;    // of each welded position: the first of its vertices

    bool IsAnyWelded() const { return firsts.size() < vertexCount; }
};

// Vertices are the same position when their positions, and with `skinned` their joints and weights too, are equal to
// the bit. Unused vertices are left out.
WeldedVertices WeldVertices(const MeshData& mesh, FaceRange range, std::span<const float> morphWeights, bool skinned);

// What of a mesh a node shows, and how.
struct MeshShape {
    FaceRange range;
    std::vector<float> morphWeights;
    bool skinned = false; // vertices of different bones stay apart
    // A mask for each face of the whole mesh, in place of what the normals say; null for none.
    std::shared_ptr<const std::vector<uint32_t>> pSmoothing;
};

// A run of faces of a glTF mesh as a mesh of the host.
class MeshDataSource : public scene::MeshSource {
public:
    MeshDataSource(std::shared_ptr<const MeshData> pMesh, MeshShape shape);
    std::unique_ptr<Mesh> Build(TimeValue t) const override;

private:
    std::shared_ptr<const MeshData> m_pMesh;
    MeshShape m_Shape;
};

} // namespace gltf
