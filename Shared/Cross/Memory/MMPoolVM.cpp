#include "Shared/Cross/Memory/MMPoolVM.h"

#include "Shared/Cross/Memory/MMSystem.h"

#include <bitset>

namespace {

constexpr size_t s_PageMask = OSMemory::s_PageSize - 1;
constexpr size_t s_SlotSize = 0x2000;
constexpr size_t s_Slots = 256;
constexpr size_t s_ArenaSize = s_Slots * s_SlotSize;
constexpr size_t s_LargestInSlot = 4072;

} // namespace

// At the start of a block's first page.
struct MMPoolVM::Signature {
    uint32_t mark;
    uint32_t state;
    uint32_t size;
    MMCall kind;
    uint32_t number; // the allocation's
};

namespace {

constexpr uint32_t s_Mark = FourCC("VMPH");
constexpr uint32_t s_StateFree = FourCC("VMFR");
constexpr uint32_t s_StateSmall = FourCC("VMSM");
constexpr uint32_t s_StateLarge = FourCC("VMLG");
constexpr size_t s_SignatureSize = 20;

char* GetPage(const void* pAt) {
    return static_cast<char*>(const_cast<void*>(pAt)) - (reinterpret_cast<uintptr_t>(pAt) & s_PageMask);
}

} // namespace

// [signature ... block][guard]
class MMPoolVM::OverWritePoolMode final : public PoolMode {
public:
    size_t GetTotal(size_t size) const override { return (size + 8211) & ~s_PageMask; }
    size_t GetBlockOffset(size_t size) const override { return GetTotal(size) - size - OSMemory::s_PageSize; }
    size_t GetGuardOffset(size_t total) const override { return total - OSMemory::s_PageSize; }
    // The block starts behind the signature, and less than a page further on at most.
    char* GetFirstPage(const void* pBlock) const override {
        return GetPage(static_cast<const char*>(pBlock) - s_SignatureSize);
    }
};

// [guard, with the signature][block ...]
class MMPoolVM::UnderWritePoolMode final : public PoolMode {
public:
    size_t GetTotal(size_t size) const override { return (size + 8191) & ~s_PageMask; }
    size_t GetBlockOffset(size_t) const override { return OSMemory::s_PageSize; }
    size_t GetGuardOffset(size_t) const override { return 0; }
    char* GetFirstPage(const void* pBlock) const override { return GetPage(pBlock) - OSMemory::s_PageSize; }
};

struct MMPoolVM::Arena {
    char* pPages;
    std::bitset<s_Slots> used;
    size_t next = 0; // where the search for a free slot goes on, so that a freed one stays unused for long
    ArenaList::iterator self;
};

const MMPoolVM::PoolMode& MMPoolVM::GetOverWriteMode() {
    static constinit const OverWritePoolMode s_Mode;
    return s_Mode;
}

const MMPoolVM::PoolMode& MMPoolVM::GetUnderWriteMode() {
    static constinit const UnderWritePoolMode s_Mode;
    return s_Mode;
}

MMPoolVM::MMPoolVM(const char* pName, const PoolMode& mode, uint32_t flags)
    : MMPoolBase(pName, MMMagic::VM, flags), m_Mode(mode) {
    static_assert(sizeof(Signature) == s_SignatureSize);
}

MMPoolVM::~MMPoolVM() {
    MMPoolVM::Reset();
    for (const Arena& arena : m_Arenas)
        OSMemory::ReleasePages(arena.pPages, s_ArenaSize);
}

void MMPoolVM::Open(char* pPages, size_t size) const {
    if (!OSMemory::OpenPages(pPages, size))
        MMFatalf("Pool %s, the system refuses to open pages: too many guarded blocks", GetName());
}

void MMPoolVM::CloseAccess(char* pPages, size_t size) const {
    if (!OSMemory::ClosePages(pPages, size))
        MMFatalf("Pool %s, the system refuses to protect pages: too many guarded blocks", GetName());
}

char* MMPoolVM::TakeSlot(Arena*& pArena) {
    if (m_Arenas.empty() || m_Arenas.front().used.all()) {
        char* const pPages = static_cast<char*>(OSMemory::ReservePages(s_ArenaSize));
        if (!pPages)
            MMFatalf("Pool %s, no room for a further arena", GetName());
        m_Arenas.push_front({pPages, {}, 0, {}});
        m_Arenas.front().self = m_Arenas.begin();
    }
    pArena = &m_Arenas.front();
    while (pArena->used[pArena->next])
        pArena->next = (pArena->next + 1) % s_Slots;
    pArena->used.set(pArena->next);
    char* const pSlot = pArena->pPages + pArena->next * s_SlotSize;
    pArena->next = (pArena->next + 1) % s_Slots;
    if (pArena->used.all())
        m_Arenas.splice(m_Arenas.end(), m_Arenas, pArena->self);
    return pSlot;
}

void MMPoolVM::ReturnSlot(Arena& arena, char* pFirstPage) {
    arena.used.reset(static_cast<size_t>(pFirstPage - arena.pPages) / s_SlotSize);
    m_Arenas.splice(m_Arenas.begin(), m_Arenas, arena.self);
}

void MMPoolVM::Alloc(AllocRequest& request) {
    if (request.size == 0 || request.size >= s_MMSizeLimit)
        MMFatalf("Pool %s, allocation of %zu bytes", GetName(), request.size);
    const size_t total = m_Mode.GetTotal(request.size);
    const bool small = request.size <= s_LargestInSlot;
    Arena* pArena = nullptr;
    char* const pPages = small ? TakeSlot(pArena) : static_cast<char*>(OSMemory::ReservePages(total));
    if (!pPages)
        MMFatalf("Pool %s, no room for %zu bytes", GetName(), request.size);
    Open(pPages, total);
    auto& signature = *reinterpret_cast<Signature*>(pPages);
    if (signature.mark != 0 && (signature.mark != s_Mark || signature.state != s_StateFree))
        MMFatalf("Pool %s, the signature of free pages at %p was overwritten", GetName(), static_cast<void*>(pPages));
    signature = {s_Mark, small ? s_StateSmall : s_StateLarge, static_cast<uint32_t>(request.size), request.kind,
                 static_cast<uint32_t>(request.number)};
    CloseAccess(pPages + m_Mode.GetGuardOffset(total), OSMemory::s_PageSize);
    m_Live.emplace(pPages, Owner{pArena, request.size, request.kind});
    CountAlloc(request.size);
    request.pResult = pPages + m_Mode.GetBlockOffset(request.size);
}

MMPoolVM::LiveMap::iterator MMPoolVM::Find(const void* pBlock) {
    char* const pFirstPage = m_Mode.GetFirstPage(pBlock);
    const auto it = m_Live.find(pFirstPage);
    if (it == m_Live.end() || pFirstPage + m_Mode.GetBlockOffset(it->second.size) != pBlock)
        MMFatalf("Pool %s, no live block starts at %p", GetName(), pBlock);
    return it;
}

void MMPoolVM::Free(void* pBlock, MMCall kind) {
    const auto it = Find(pBlock);
    char* const pFirstPage = it->first;
    const Owner owner = it->second;
    MMCheckKind(*this, pBlock, owner.kind, kind);
    Open(pFirstPage, OSMemory::s_PageSize);
    auto& signature = *reinterpret_cast<Signature*>(pFirstPage);
    const uint32_t state = owner.pArena ? s_StateSmall : s_StateLarge;
    if (signature.mark != s_Mark || signature.state != state || signature.size != owner.size)
        MMFatalf("Pool %s, the signature ahead of block %p was overwritten", GetName(), pBlock);
    m_Live.erase(it);
    CountFree(owner.size);
    const size_t total = m_Mode.GetTotal(owner.size);
    if (!owner.pArena) {
        OSMemory::ReleasePages(pFirstPage, total);
        return;
    }
    signature.state = s_StateFree;
    CloseAccess(pFirstPage, total);
    ReturnSlot(*owner.pArena, pFirstPage);
}

void MMPoolVM::Realloc(AllocRequest& request, void* pOld) { MoveBlock(request, pOld, Find(pOld)->second.size); }

size_t MMPoolVM::GetSize(const void* pBlock) { return Find(pBlock)->second.size; }

bool MMPoolVM::Owns(const void* pBlock) {
    char* const pFirstPage = m_Mode.GetFirstPage(pBlock);
    const auto it = m_Live.find(pFirstPage);
    return it != m_Live.end() && pFirstPage + m_Mode.GetBlockOffset(it->second.size) == pBlock;
}

void MMPoolVM::Reset() {
    while (!m_Live.empty()) {
        const auto& [pFirstPage, owner] = *m_Live.begin();
        Free(pFirstPage + m_Mode.GetBlockOffset(owner.size), MMFreeKindOf(owner.kind));
    }
}

void MMPoolVM::Destroy() { MMDeletePool(this); }
