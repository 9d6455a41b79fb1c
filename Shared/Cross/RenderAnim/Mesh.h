#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "Shared/Cross/Assist/Inventory.h"
#include "Shared/Cross/Glaze/PrimSet.h"
#include "Shared/Cross/Glaze/VertexSet.h"
#include "Shared/Cross/RenderAnim/BoundVolume.h"
#include "Shared/Cross/RenderAnim/RenderAnimName.h"
#include "Shared/Cross/RenderAnim/ResourceRefs.h"

namespace ra {

// One resource of geometry: vertices of up to two levels of detail, a list of triangles for each shader and level, the
// bones that bend it, and what it lies in. Indices out of range are a mistake of the caller: getters then give nothing
// and setters do nothing.
class Mesh : public Inv::NamedResource {
public:
    enum Poly : uint32_t {
        Poly_Low = 0, // in final files only
        Poly_High = 1,
        Poly_Count = 2
    };
    // The bone of a skeleton that the vertices' weights know by its index there.
    struct SkinnedTransform {
        Name bone;
        int32_t index = -1;
    };

    static Inv::ResourceTypeInfo& GetTypeInfo();

    void SetName(const char* pName) override;
    const Name& GetNameKey() const { return m_Name; }

    // The least detail at which the mesh is drawn: 0 default, 1 medium, 2 high.
    int32_t GetMinDetail() const { return m_minDetail; }
    void SetMinDetail(int32_t minDetail) { m_minDetail = minDetail; }
    bool GetChildSelection() const { return m_childSelection; }
    void SetChildSelection(bool childSelection) { m_childSelection = childSelection; }

    uint32_t GetSkinnedTransformCount() const { return static_cast<uint32_t>(m_skinnedTransforms.size()); }
    void SetSkinnedTransformCount(uint32_t count) { m_skinnedTransforms.resize(count); }
    const SkinnedTransform& GetSkinnedTransform(uint32_t index) const;
    void SetSkinnedTransform(uint32_t index, const Name& bone, int32_t skeletonIndex);
    bool IsSkinned() const { return !m_skinnedTransforms.empty(); }

    // Null when the mesh hasn't the level.
    gz::VertexSet* GetVertexSet(uint32_t level) const;
    // The primitive sets of that level point at the old one: they are to be replaced before it is.
    void SetVertexSet(uint32_t level, std::unique_ptr<gz::VertexSet> pVertexSet);
    uint32_t GetPolyCount(uint32_t level) const;
    void SetPolyCount(uint32_t level, uint32_t count);

    // One place for each shader of the mesh, with a primitive set for each level or none.
    uint32_t GetShaderCount() const { return static_cast<uint32_t>(m_PrimSets.size()); }
    void SetShaderCount(uint32_t count) { m_PrimSets.resize(count); }
    const ShaderRef& GetShader(uint32_t index) const;
    void SetShader(uint32_t index, const ShaderRef& shader);
    // Null when no triangle of the level has the shader.
    gz::PrimSet* GetPrimSet(uint32_t shaderIndex, uint32_t level) const;
    void SetPrimSet(uint32_t shaderIndex, uint32_t level, std::unique_ptr<gz::PrimSet> pPrimSet);

    const BoundVolume& GetBoundVolume() const { return m_bv; }
    void SetBoundVolume(const BoundVolume& bv) { m_bv = bv; }

    // Draws all of a level's primitive sets.
    void Display(uint32_t level) const;

private:
    struct PrimSetEntry {
        ShaderRef shader;
        std::array<std::unique_ptr<gz::PrimSet>, Poly_Count> pPrimSets;
    };

    Name m_Name;
    int32_t m_minDetail = 0;
    bool m_childSelection = true;
    std::vector<SkinnedTransform> m_skinnedTransforms;
    std::array<std::unique_ptr<gz::VertexSet>, Poly_Count> m_pVertexSets; // outlive the primitive sets
    std::array<uint32_t, Poly_Count> m_polyCount = {};
    std::vector<PrimSetEntry> m_PrimSets;
    BoundVolume m_bv;
};

} // namespace ra
