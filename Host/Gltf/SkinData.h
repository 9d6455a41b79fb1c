#pragma once

#include "Host/Gltf/MeshBuild.h"
#include "Host/Scene/Modifiers.h"

namespace gltf {

// What was done to the weights of a mesh so that they fit the host.
struct SkinReport {
    uint32_t unbound = 0;  // points without any influence, bound to the first joint
    uint32_t overfull = 0; // points that keep more than four influences
    uint32_t limited = 0;  // points that lost influences beyond the fourth
    float largestLoss = 0; // the largest share of a point's weight that went with them
};

// Weights of one point, made fit: negative ones count as 0, those of one bone are added up, and they are multiples of
// 2^-24 that add up to 1, so that sums in single precision are exact in any order. With `limit` only the four heaviest
// stay. An empty list is bound to bone 0.
void NormalizeInfluences(std::vector<scene::SkinWeights::Influence>& influences, bool limit, SkinReport& report);

// The weights for the points of the mesh that MeshDataSource makes of the same range.
scene::SkinWeights BuildWeights(const MeshData& mesh, const MeshShape& shape, bool limit, SkinReport& report);

class SkinDataSource : public scene::SkinSource {
public:
    SkinDataSource(std::shared_ptr<const MeshData> pMesh, MeshShape shape, bool limit)
        : m_pMesh(std::move(pMesh)), m_Shape(std::move(shape)), m_Limit(limit) {}
    std::shared_ptr<const scene::SkinWeights> Build() const override;

private:
    std::shared_ptr<const MeshData> m_pMesh;
    MeshShape m_Shape;
    bool m_Limit;
};

// Whether a vertex could hang on more than four joints.
bool HasSeveralSkinSets(const MeshData& mesh);
// Whether a vertex of the mesh hangs on no joint at all.
bool HasUnboundVertices(const MeshData& mesh);

} // namespace gltf
