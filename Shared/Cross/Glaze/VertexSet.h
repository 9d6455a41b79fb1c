#pragma once

#include <array>
#include <cstdint>

#include "Shared/Cross/Glaze/Object.h"
#include "Shared/Cross/Glaze/VertexFormat.h"

namespace gz {

// A stretch of a vertex set's vertices. Primitive sets name theirs by its id in the vertex set.
struct VertexRange {
    uint16_t start = 0;
    uint16_t count = 0;
    bool operator==(const VertexRange&) const = default;
};

// The vertices of a mesh in one format, all components of a vertex side by side. At most 65,535 of them, since indices
// have 16 bits.
class VertexSet : public Object {
public:
    static constexpr uint32_t MaxSize = 65535;
    static constexpr uint32_t WholeSet = 0xFFFF; // as a count: all vertices of the set
    static constexpr uint32_t DefaultUsage = 3;
    static constexpr uint32_t NotGiven = 0xFFFFFFFF;

    // By component, an array without gaps.
    using Arrays = std::array<const void*, VC_Count>;

    // Takes the memory for that many vertices, which hold nothing until the caller writes each component of every one;
    // range 0 then covers the set. False, with a line in the log, when count is above MaxSize. What the set held before
    // is gone.
    virtual bool Create(uint32_t format, uint32_t count, uint32_t usage = DefaultUsage) = 0;
    // The same with vertices: of each component of the format that many, or null for zeros. What the format hasn't is
    // not looked at.
    virtual bool CreateFrom(uint32_t format, uint32_t count, const Arrays& arrays, uint32_t usage = DefaultUsage) = 0;

    // The component of the vertex `start`; that of each further one lies `stride` bytes behind. Good until Create or
    // the end of the set. Null when the format hasn't the component, or, with a line in the log, when the stretch goes
    // beyond the set. A component that is locked already is only logged. Throws std::out_of_range above the last
    // component, as do the three operations below.
    virtual void* Lock(VertexComponent component, uint32_t start, uint32_t count, uint32_t& stride) = 0;
    // Unlocking what isn't locked is only logged.
    virtual void Unlock(VertexComponent component) = 0;
    virtual bool HasComponent(VertexComponent component) const = 0;

    // Returns the new range's id. A range that starts beyond the set, is empty or larger than the set is a mistake of
    // the caller, who gets range 0, the whole set, if the assertion is stepped over.
    virtual uint32_t AddRange(uint16_t start, uint16_t count) = 0;

    virtual uint16_t GetSize() const = 0;
    virtual uint32_t GetFormat() const = 0;
    virtual uint32_t GetStride() const = 0;
    virtual uint32_t GetUsage() const = 0;
    virtual uint32_t GetRangeCount() const = 0;
    // An id that AddRange gave, or 0.
    virtual VertexRange GetRange(uint32_t id) const = 0;
    // The component of vertex 0 for reading, without a lock, which is for one writer at a time. Null when the format
    // hasn't the component.
    virtual const void* GetData(VertexComponent component) const = 0;

    // Copies one component from an array without gaps, to the whole set or to the stretch that start and range give; a
    // range of WholeSet counts as in Lock. False, with a line in the log, when the format hasn't the component, when
    // one of start and range is given without the other, or when the stretch goes beyond the set.
    bool WriteArray(VertexComponent component, const void* pSource, uint32_t start = NotGiven,
                    uint32_t range = NotGiven);
};

} // namespace gz
