#pragma once

#include "Shared/Cross/Memory/MMPoolBase.h"
#include "Shared/Cross/Memory/MMRawAllocator.h"

#include <vector>

// A wrapper that records each live block of another pool, with its number and the stack that asked for it.
class MMPoolInfo : public MMPoolBase {
public:
    struct Record {
        const void* pBlock;
        uint32_t number; // the allocation's
        uint32_t stack;  // id in the stack table
        // A block is below 2^29 bytes and the kinds of allocation end at 7.
        uint32_t size : 29;
        uint32_t kind : 3;
        uint32_t next; // record in the same bucket, or the next unused one; its index + 1
    };

    // The number of records that the table grows through. One more than the last is fatal.
    static constexpr uint32_t s_Sizes[] = {97151, 180503, 360007, 720007, 1290013, 2000003};

    // Owns the inner pool from here on.
    explicit MMPoolInfo(MMPoolBase& inner);
    ~MMPoolInfo() override;

    void Alloc(AllocRequest& request) override;
    void Realloc(AllocRequest& request, void* pOld) override;
    void Free(void* pBlock, MMCall kind) override;
    size_t GetSize(const void* pBlock) override;
    bool Owns(const void* pBlock) override { return FindRecord(pBlock) != nullptr; }
    void Reset() override;
    // Prints the peaks.
    void Destroy() override;

    // Null for what is no live block. Good until the next operation.
    const Record* FindRecord(const void* pBlock) const;

private:
    using IndexList = std::vector<uint32_t, MMRawAllocator<uint32_t>>;

    uint32_t& GetBucket(const void* pBlock);
    const Record& GetRecord(const void* pBlock) const;
    void AddRecord(const AllocRequest& request);
    void RemoveRecord(const void* pBlock);
    void Grow();
    void Clear();

    MMPoolBase& m_Inner;
    std::vector<Record, MMRawAllocator<Record>> m_Records;
    IndexList m_Buckets;        // index + 1 of the first record, 0 for none; as many as there is room for records
    uint32_t m_FirstUnused = 0; // index + 1
};
