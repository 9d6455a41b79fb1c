#pragma once

#include "Shared/Cross/Memory/MMPoolBase.h"

// A heap of its own: blocks of any size, each with a header of 32 bytes. Frees its blocks when it goes.
class MMPoolHeap : public MMPoolBase {
public:
    MMPoolHeap(const char* pName, uint32_t flags);
    ~MMPoolHeap() override;

    void Alloc(AllocRequest& request) override;
    void Realloc(AllocRequest& request, void* pOld) override;
    void Free(void* pBlock, MMCall kind) override;
    size_t GetSize(const void* pBlock) override;
    // Looks at the 8 bytes ahead of the block, which have to be readable.
    bool Owns(const void* pBlock) override;
    void Reset() override;
    void Destroy() override;

private:
    struct Link {
        Link* pNext;
        Link* pPrevious;
    };
    struct Header;

    Header* CheckBlock(const void* pBlock) const;
    uint64_t GetTag() const;
    static void Insert(Link* pNew, Link* pBefore);

    Link m_Blocks; // a ring: itself when there is no block
};
