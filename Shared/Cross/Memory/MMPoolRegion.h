#pragma once

#include "Shared/Cross/Memory/MMPoolBase.h"

// A bump allocator over blocks of 64 KB. A block of memory bigger than a quarter of that is "Default"'s. Freeing only
// counts: the memory comes back when everything is freed, or at a reset, and is used again for the same region.
class MMPoolRegion : public MMPoolBase {
public:
    static constexpr size_t LargestBump = 16384;

    MMPoolRegion(const char* pName, uint32_t blocks, uint32_t flags);
    ~MMPoolRegion() override;

    void Alloc(AllocRequest& request) override;
    void Realloc(AllocRequest& request, void* pOld) override;
    void Free(void* pBlock, MMCall kind) override;
    size_t GetSize(const void*) override { return 0; }
    bool Owns(const void*) override { return false; }
    void Reset() override;
    void Destroy() override;

private:
    struct Block;
    struct Large;

    static Block* NewBlock(const char* pName);
    void AllocLarge(AllocRequest& request);
    void FreeLarge();
    void MakeCurrent(Block* pBlock);
    const char* GetEndOfBlock(const void* pAt) const;

    Block* m_pFirst;
    Block* m_pCurrent;
    Large* m_pLarge = nullptr;
    char* m_pPosition = nullptr;
    char* m_pEnd = nullptr; // of the current block
    // By the kind that frees them, so that a mismatch shows although no block bears its kind.
    size_t m_Live[s_MMFreeKinds] = {};
};
