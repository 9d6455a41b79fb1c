#pragma once

#include "Shared/Cross/Memory/MMPoolBase.h"

// Counters over memory that belongs to "Default". What is live when the pool goes stays allocated there.
class MMPoolTracking : public MMPoolBase {
public:
    MMPoolTracking(const char* pName, uint32_t flags);

    void Alloc(AllocRequest& request) override;
    void Realloc(AllocRequest& request, void* pOld) override;
    void Free(void* pBlock, MMCall kind) override;
    size_t GetSize(const void* pBlock) override;
    bool Owns(const void*) override { return false; }
    // Fatal while a block is live: the pool doesn't know where its blocks are.
    void Reset() override;
    void Destroy() override;
};
