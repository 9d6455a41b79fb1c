#pragma once

#include <bitset>
#include <cstddef>
#include <memory>
#include <vector>

#include "Shared/Cross/Glaze/VertexSet.h"
#include "Shared/Cross/Memory/MMAllocator.h"

namespace gz {

// A vertex set in plain memory: one block, vertex after vertex.
class MemoryVertexSet : public VertexSet {
public:
    bool Create(uint32_t format, uint32_t count, uint32_t usage = DefaultUsage) override;
    bool CreateFrom(uint32_t format, uint32_t count, const Arrays& arrays, uint32_t usage = DefaultUsage) override;
    void* Lock(VertexComponent component, uint32_t start, uint32_t count, uint32_t& stride) override;
    void Unlock(VertexComponent component) override;
    bool HasComponent(VertexComponent component) const override;
    uint32_t AddRange(uint16_t start, uint16_t count) override;

    uint16_t GetSize() const override { return m_Size; }
    uint32_t GetFormat() const override { return static_cast<uint32_t>(m_Format.to_ulong()); }
    uint32_t GetStride() const override { return m_Stride; }
    uint32_t GetUsage() const override { return m_Usage; }
    uint32_t GetRangeCount() const override { return static_cast<uint32_t>(m_cRange.size()); }
    VertexRange GetRange(uint32_t id) const override;
    const void* GetData(VertexComponent component) const override;

private:
    using DataPool = MMNamedPool<"gz::MemoryVertexSet">;
    struct FreeData {
        void operator()(std::byte* pData) const { MMFree(DataPool::Get(), pData); }
    };

    size_t GetDataSize() const { return size_t{m_Stride} * m_Size; }
    // A component of a stretch of vertices from the array of all, or with zeros for null.
    void Fill(VertexComponent component, const void* pArray, uint32_t start, uint32_t count);

    uint16_t m_Size = 0;
    uint32_t m_Stride = 0;
    uint32_t m_Usage = DefaultUsage;
    std::bitset<VC_Count> m_Format;
    std::bitset<VC_Count> m_Locked;
    std::unique_ptr<std::byte, FreeData> m_pData;
    std::vector<VertexRange> m_cRange = {VertexRange()};
};

} // namespace gz
