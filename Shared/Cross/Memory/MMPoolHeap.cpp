#include "Shared/Cross/Memory/MMPoolHeap.h"

#include "Shared/Cross/Memory/MMSystem.h"
#include "Shared/PC/Memory/OSMemory.h"

namespace {

constexpr uint64_t s_LiveTag = 0xB10C4EAD00000000; // unlike any address or size, whatever pool is added
constexpr uint64_t s_FreeTag = 0xF4EEF4EEF4EEF4EE;

} // namespace

// The tag comes last, next to the block: what runs over the start of a block hits it first, and whether a block is of
// this pool can be seen without reaching further back.
struct MMPoolHeap::Header {
    Link link;
    uint32_t size;
    MMCall kind;
    uint64_t tag;
};

MMPoolHeap::MMPoolHeap(const char* pName, uint32_t flags)
    : MMPoolBase(pName, MMMagic::Heap, flags), m_Blocks{&m_Blocks, &m_Blocks} {
    static_assert(sizeof(Header) == 32);
}

MMPoolHeap::~MMPoolHeap() { MMPoolHeap::Reset(); }

void MMPoolHeap::Insert(Link* pNew, Link* pBefore) {
    pNew->pNext = pBefore->pNext;
    pNew->pPrevious = pBefore;
    pBefore->pNext->pPrevious = pNew;
    pBefore->pNext = pNew;
}

uint64_t MMPoolHeap::GetTag() const { return s_LiveTag ^ reinterpret_cast<uint64_t>(this); }

void MMPoolHeap::Alloc(AllocRequest& request) {
    if (request.size == 0 || request.size >= s_MMSizeLimit)
        MMFatalf("Pool %s, allocation of %zu bytes", GetName(), request.size);
    void* const pRaw = OSMemory::HeapAlloc(sizeof(Header) + request.size);
    if (!pRaw)
        MMFatalf("Pool %s, no room for %zu bytes", GetName(), request.size);
    Header* const pHeader = new (pRaw) Header{{}, static_cast<uint32_t>(request.size), request.kind, GetTag()};
    Insert(&pHeader->link, &m_Blocks);
    CountAlloc(request.size);
    request.pResult = pHeader + 1;
}

MMPoolHeap::Header* MMPoolHeap::CheckBlock(const void* pBlock) const {
    Header* const pHeader = static_cast<Header*>(const_cast<void*>(pBlock)) - 1;
    if (pHeader->tag == s_FreeTag)
        MMFatalf("Pool %s, block %p is free", GetName(), pBlock);
    if (pHeader->tag != GetTag())
        MMFatalf("Pool %s, block %p isn't its own, or its start was overwritten", GetName(), pBlock);
    return pHeader;
}

void MMPoolHeap::Realloc(AllocRequest& request, void* pOld) {
    if (request.size >= s_MMSizeLimit)
        MMFatalf("Pool %s, reallocation to %zu bytes", GetName(), request.size);
    Header* pHeader = CheckBlock(pOld);
    MMCheckKind(*this, pOld, pHeader->kind, MMFreeKindOf(request.kind));
    Link* const pBefore = pHeader->link.pPrevious;
    pBefore->pNext = pHeader->link.pNext;
    pHeader->link.pNext->pPrevious = pBefore;
    CountFree(pHeader->size);
    pHeader = static_cast<Header*>(OSMemory::HeapRealloc(pHeader, sizeof(Header) + request.size));
    if (!pHeader)
        MMFatalf("Pool %s, no room for %zu bytes", GetName(), request.size);
    pHeader->size = static_cast<uint32_t>(request.size);
    pHeader->kind = request.kind;
    Insert(&pHeader->link, pBefore);
    CountAlloc(request.size);
    request.pResult = pHeader + 1;
}

void MMPoolHeap::Free(void* pBlock, MMCall kind) {
    Header* const pHeader = CheckBlock(pBlock);
    MMCheckKind(*this, pBlock, pHeader->kind, kind);
    pHeader->link.pPrevious->pNext = pHeader->link.pNext;
    pHeader->link.pNext->pPrevious = pHeader->link.pPrevious;
    CountFree(pHeader->size);
    // Through a volatile, or the store ahead of the release would be dropped.
    *const_cast<volatile uint64_t*>(&pHeader->tag) = s_FreeTag;
    OSMemory::HeapFree(pHeader);
}

size_t MMPoolHeap::GetSize(const void* pBlock) { return CheckBlock(pBlock)->size; }

bool MMPoolHeap::Owns(const void* pBlock) { return static_cast<const uint64_t*>(pBlock)[-1] == GetTag(); }

void MMPoolHeap::Reset() {
    for (Link* pLink = m_Blocks.pNext; pLink != &m_Blocks;) {
        Link* const pNext = pLink->pNext;
        reinterpret_cast<Header*>(pLink)->tag = s_FreeTag;
        OSMemory::HeapFree(pLink);
        pLink = pNext;
    }
    m_Blocks = {&m_Blocks, &m_Blocks};
    ResetCounts();
}

void MMPoolHeap::Destroy() { MMDeletePool(this); }
