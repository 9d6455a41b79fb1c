#include "Shared/Cross/Memory/MMPoolSmall.h"

#include <cstring>

// The header of a page. Slots begin behind it and are handed out in order the first time; freed ones go first.
struct MMPoolSmall::Page {
    Page* pNext;
    Page* pPrevious;
    uint32_t slotSize;
    uint32_t reciprocal; // of the slot's size, in 2^-32, so that finding a slot takes no division
    uint32_t firstFree;  // offset of a freed slot, 0 for none
    uint32_t unused;     // offset of the first slot that was never handed out
    uint32_t end;        // offset behind the last slot
    uint32_t live;
    MMCall freeKind;

    char* At(uint32_t offset) { return reinterpret_cast<char*>(this) + offset; }
    const char* At(uint32_t offset) const { return reinterpret_cast<const char*>(this) + offset; }
    bool HasRoom() const { return firstFree != 0 || unused != end; }
};

namespace {

constexpr uint32_t s_FirstSlot = 64; // keeps the alignment of slots; the header is smaller
constexpr size_t s_FirstIndexSize = 16;
// A free slot holds this and the next one's offset, which is below 64 KB.
constexpr uint32_t s_LinkTag = 0xF4EE0000;
constexpr uint32_t s_LinkTagMask = 0xFFFF0000;

uint32_t ReadWord(const char* pAt) {
    uint32_t word;
    memcpy(&word, pAt, sizeof(word));
    return word;
}

void WriteWord(char* pAt, uint32_t word) { memcpy(pAt, &word, sizeof(word)); }

size_t HashPage(const void* pAt) {
    return (reinterpret_cast<uintptr_t>(pAt) / OSMemory::s_ChunkSize) * 0x9E3779B97F4A7C15 >> 32;
}

} // namespace

MMPoolSmall::MMPoolSmall(const char* pName, uint32_t flags)
    : MMPoolBase(pName, MMMagic::Small, flags), m_Large(pName, flags) {
    static_assert(sizeof(Page) <= s_FirstSlot);
}

MMPoolSmall::~MMPoolSmall() { FreePages(); }

void MMPoolSmall::Unlink(PageList& list, Page* pPage) {
    (pPage->pPrevious ? pPage->pPrevious->pNext : list.pFirst) = pPage->pNext;
    (pPage->pNext ? pPage->pNext->pPrevious : list.pLast) = pPage->pPrevious;
}

void MMPoolSmall::MoveToFront(PageList& list, Page* pPage) {
    if (list.pFirst == pPage)
        return;
    Unlink(list, pPage);
    pPage->pPrevious = nullptr;
    pPage->pNext = list.pFirst;
    list.pFirst->pPrevious = pPage;
    list.pFirst = pPage;
}

void MMPoolSmall::MoveToBack(PageList& list, Page* pPage) {
    if (list.pLast == pPage)
        return;
    Unlink(list, pPage);
    pPage->pNext = nullptr;
    pPage->pPrevious = list.pLast;
    list.pLast->pNext = pPage;
    list.pLast = pPage;
}

MMPoolSmall::Page* MMPoolSmall::NewPage(PageList& list, size_t sizeClass, MMCall freeKind) {
    void* const pChunk = OSMemory::AllocChunk();
    if (!pChunk)
        MMFatalf("Pool %s, no room for a further page", GetName());
    const auto slotSize = static_cast<uint32_t>((sizeClass + 1) * SlotStep);
    const uint32_t slots = (static_cast<uint32_t>(OSMemory::s_ChunkSize) - s_FirstSlot) / slotSize;
    Page* const pPage = new (pChunk) Page{.pNext = list.pFirst,
                                          .pPrevious = nullptr,
                                          .slotSize = slotSize,
                                          .reciprocal = UINT32_MAX / slotSize + 1,
                                          .firstFree = 0,
                                          .unused = s_FirstSlot,
                                          .end = s_FirstSlot + slots * slotSize,
                                          .live = 0,
                                          .freeKind = freeKind};
    (list.pFirst ? list.pFirst->pPrevious : list.pLast) = pPage;
    list.pFirst = pPage;
    AddToIndex(pPage);
    return pPage;
}

void MMPoolSmall::AddToIndex(Page* pPage) {
    if ((m_PageCount + 1) * 2 > m_Index.size()) {
        const auto old = std::exchange(m_Index, {});
        m_Index.resize(std::max(s_FirstIndexSize, old.size() * 2));
        m_PageCount = 0;
        for (Page* const pOld : old)
            if (pOld)
                AddToIndex(pOld);
    }
    size_t at = HashPage(pPage) & (m_Index.size() - 1);
    while (m_Index[at])
        at = (at + 1) & (m_Index.size() - 1);
    m_Index[at] = pPage;
    ++m_PageCount;
}

MMPoolSmall::Page* MMPoolSmall::FindPage(const void* pBlock) const {
    if (m_Index.empty())
        return nullptr;
    const uintptr_t wanted = reinterpret_cast<uintptr_t>(pBlock) & ~(OSMemory::s_ChunkSize - 1);
    size_t at = HashPage(pBlock) & (m_Index.size() - 1);
    while (m_Index[at] && reinterpret_cast<uintptr_t>(m_Index[at]) != wanted)
        at = (at + 1) & (m_Index.size() - 1);
    return m_Index[at];
}

void MMPoolSmall::Alloc(AllocRequest& request) {
    if (request.size > LargestSlot) {
        m_Large.Alloc(request);
        CountAlloc(request.size);
        return;
    }
    const MMCall freeKind = MMFreeKindOf(request.kind);
    ClassTable& table = m_Tables[MMFreeIndex(freeKind)];
    if (table.empty()) [[unlikely]]
        table.resize(Classes);
    PageList& list = table[GetClass(request.size)];
    Page* pPage = list.pFirst;
    if (!pPage || !pPage->HasRoom())
        pPage = NewPage(list, GetClass(request.size), freeKind);
    char* pSlot;
    if (pPage->firstFree != 0) {
        pSlot = pPage->At(pPage->firstFree);
        const uint32_t link = ReadWord(pSlot);
        if ((link & s_LinkTagMask) != s_LinkTag)
            MMFatalf("Pool %s, block %p was written to after it was freed", GetName(), static_cast<void*>(pSlot));
        pPage->firstFree = link & ~s_LinkTagMask;
        WriteWord(pSlot, 0); // a slot in use must not look like a free one by what we left in it
    } else {
        pSlot = pPage->At(pPage->unused);
        pPage->unused += pPage->slotSize;
    }
    ++pPage->live;
    if (!pPage->HasRoom())
        MoveToBack(list, pPage);
    CountAlloc(pPage->slotSize);
    request.pResult = pSlot;
}

uint32_t MMPoolSmall::CheckSlot(const Page& page, const void* pBlock) const {
    const auto offset = static_cast<uint32_t>(reinterpret_cast<uintptr_t>(pBlock) & (OSMemory::s_ChunkSize - 1));
    const uint32_t slot = static_cast<uint32_t>(uint64_t{offset - s_FirstSlot} * page.reciprocal >> 32);
    if (offset < s_FirstSlot || offset >= page.unused || slot * page.slotSize + s_FirstSlot != offset)
        MMFatalf("Pool %s, no block starts at %p", GetName(), pBlock);
    // What looks like a link may be a user's data: only the list of free slots knows.
    if ((ReadWord(page.At(offset)) & s_LinkTagMask) == s_LinkTag)
        for (uint32_t freeSlot = page.firstFree; freeSlot != 0;) {
            if (freeSlot == offset)
                MMFatalf("Pool %s, block %p is free", GetName(), pBlock);
            const uint32_t link = ReadWord(page.At(freeSlot));
            if ((link & s_LinkTagMask) != s_LinkTag)
                break;
            freeSlot = link & ~s_LinkTagMask;
        }
    return offset;
}

void MMPoolSmall::Free(void* pBlock, MMCall kind) {
    Page* const pPage = FindPage(pBlock);
    if (!pPage) {
        const size_t size = m_Large.GetSize(pBlock);
        m_Large.Free(pBlock, kind);
        CountFree(size);
        return;
    }
    const uint32_t offset = CheckSlot(*pPage, pBlock);
    if (pPage->freeKind != kind)
        MMFatalf("Pool %s, block %p of free kind %u freed by kind %u", GetName(), pBlock,
                 static_cast<uint32_t>(pPage->freeKind), static_cast<uint32_t>(kind));
    WriteWord(pPage->At(offset), s_LinkTag | pPage->firstFree);
    pPage->firstFree = offset;
    --pPage->live;
    MoveToFront(m_Tables[MMFreeIndex(kind)][GetClass(pPage->slotSize)], pPage);
    CountFree(pPage->slotSize);
}

void MMPoolSmall::Realloc(AllocRequest& request, void* pOld) {
    Page* const pPage = FindPage(pOld);
    if (!pPage && request.size > LargestSlot) {
        CountFree(m_Large.GetSize(pOld));
        m_Large.Realloc(request, pOld);
        CountAlloc(request.size);
        return;
    }
    const size_t oldSize = GetSize(pOld);
    if (pPage && request.size <= LargestSlot && GetClass(request.size) == GetClass(oldSize)) {
        if (pPage->freeKind != MMFreeKindOf(request.kind))
            MMFatalf("Pool %s, block %p reallocated by kind %u", GetName(), pOld, static_cast<uint32_t>(request.kind));
        request.pResult = pOld;
        return;
    }
    MoveBlock(request, pOld, oldSize);
}

size_t MMPoolSmall::GetSize(const void* pBlock) {
    const Page* const pPage = FindPage(pBlock);
    if (!pPage)
        return m_Large.GetSize(pBlock);
    CheckSlot(*pPage, pBlock);
    return pPage->slotSize;
}

bool MMPoolSmall::Owns(const void* pBlock) { return FindPage(pBlock) || m_Large.Owns(pBlock); }

void MMPoolSmall::FreePages() {
    for (Page* const pPage : m_Index)
        if (pPage)
            OSMemory::FreeChunk(pPage);
    m_Index.clear();
    m_PageCount = 0;
}

void MMPoolSmall::Reset() {
    FreePages();
    for (ClassTable& table : m_Tables)
        table.clear();
    m_Large.Reset();
    ResetCounts();
}

void MMPoolSmall::Destroy() { MMDeletePool(this); }
