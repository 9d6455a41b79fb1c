#pragma once

#include "Shared/Cross/Memory/MMPoolHeap.h"
#include "Shared/Cross/Memory/MMRawAllocator.h"

#include <vector>

// Size classes for small blocks: one for each 4 bytes up to 128, on pages of 64 KB that hold slots of one class and
// nothing else. So a block costs no more than its slot, and a free slot holds the link to the next one. A larger
// request goes to a heap of the same name. Pages stay with the pool until it goes or is reset.
class MMPoolSmall : public MMPoolBase {
public:
    static constexpr size_t LargestSlot = 128;
    static constexpr size_t SlotStep = 4;
    static constexpr size_t Classes = LargestSlot / SlotStep;

    MMPoolSmall(const char* pName, uint32_t flags);
    ~MMPoolSmall() override;

    void Alloc(AllocRequest& request) override;
    void Realloc(AllocRequest& request, void* pOld) override;
    void Free(void* pBlock, MMCall kind) override;
    // The slot's size, which may exceed what was asked for by 3 bytes.
    size_t GetSize(const void* pBlock) override;
    bool Owns(const void* pBlock) override;
    void Reset() override;
    void Destroy() override;

    static constexpr size_t GetClass(size_t size) { return (size + SlotStep - 1) / SlotStep - 1; }

private:
    struct Page;
    // Pages with room stand ahead of full ones.
    struct PageList {
        Page* pFirst = nullptr;
        Page* pLast = nullptr;
    };
    // Blocks bear no kind, so each kind of freeing has pages of its own, which know it.
    using ClassTable = std::vector<PageList, MMRawAllocator<PageList>>;

    Page* NewPage(PageList& list, size_t sizeClass, MMCall freeKind);
    Page* FindPage(const void* pBlock) const;
    void AddToIndex(Page* pPage);
    void FreePages();
    static void MoveToFront(PageList& list, Page* pPage);
    static void MoveToBack(PageList& list, Page* pPage);
    static void Unlink(PageList& list, Page* pPage);
    // Its offset in the page; fatal unless a slot that is in use starts there.
    uint32_t CheckSlot(const Page& page, const void* pBlock) const;

    MMPoolHeap m_Large;
    ClassTable m_Tables[s_MMFreeKinds]; // each empty until its kind comes up
    // All pages by address: an open table whose size is a power of two, at most half full.
    std::vector<Page*, MMRawAllocator<Page*>> m_Index;
    size_t m_PageCount = 0;
};
