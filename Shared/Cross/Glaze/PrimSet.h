#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "Shared/Cross/Glaze/Object.h"
#include "Shared/Cross/Glaze/VertexSet.h"

namespace gz {

class Shader;

enum PrimKind : uint32_t { PrimKind_TriangleList = 3 };

// What of a vertex set is drawn with one shader: a list of 16-bit indices. It goes before its vertex set does.
class PrimSet : public Object {
public:
    // The vertex range as its id in the vertex set. Indices that were there are dropped; the new ones are 0.
    virtual void SetUp(uint32_t rangeId, uint32_t indexCount, PrimKind kind) = 0;
    // The same with all its indices.
    virtual void SetUp(uint32_t rangeId, std::vector<uint16_t> indices, PrimKind kind) = 0;
    // As many indices as SetUp was told; more are a mistake of the caller and left out.
    virtual void SetIndices(std::span<const uint16_t> indices) = 0;
    // For filling them in place. Good until the next SetUp.
    virtual std::span<uint16_t> LockIndices() = 0;
    virtual std::span<const uint16_t> GetIndices() const = 0;
    // Range, count, kind and indices of the other one; vertex set and shader stay.
    virtual void CopyFrom(const PrimSet& other) = 0;

    virtual VertexSet& GetVertexSet() const = 0;
    virtual Shader* GetShader() const = 0; // null when it was made without one
    virtual uint32_t GetUsage() const = 0;
    virtual uint32_t GetRangeId() const = 0;
    virtual VertexRange GetRange() const = 0;
    virtual PrimKind GetKind() const = 0;

    virtual void Display() = 0;
};

} // namespace gz
