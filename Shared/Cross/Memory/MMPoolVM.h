#pragma once

#include "Shared/Cross/Memory/MMPoolBase.h"
#include "Shared/Cross/Memory/MMRawAllocator.h"

#include <list>
#include <unordered_map>

// A debugging allocator: each block has pages of its own and a protected page at one of its ends, so that an access
// beyond that end faults where it happens. Freed pages fault as well, until they are used again. A block takes 8 KB at
// least and two mappings of the system, which has some 65,000 to give.
class MMPoolVM : public MMPoolBase {
public:
    // At which end of a block the protected page lies.
    class PoolMode {
    public:
        // Bytes of all pages of a block of `size` bytes.
        virtual size_t GetTotal(size_t size) const = 0;
        // From the first page on.
        virtual size_t GetBlockOffset(size_t size) const = 0;
        virtual size_t GetGuardOffset(size_t total) const = 0;
        virtual char* GetFirstPage(const void* pBlock) const = 0;

    protected:
        ~PoolMode() = default;
    };
    // The first byte behind a block lies in a protected page. A block is as little aligned as its size is.
    class OverWritePoolMode;
    // The last byte ahead of a block lies in a protected page.
    class UnderWritePoolMode;

    static const PoolMode& GetOverWriteMode();
    static const PoolMode& GetUnderWriteMode();

    // The mode outlives the pool.
    MMPoolVM(const char* pName, const PoolMode& mode, uint32_t flags);
    ~MMPoolVM() override;

    void Alloc(AllocRequest& request) override;
    void Realloc(AllocRequest& request, void* pOld) override;
    void Free(void* pBlock, MMCall kind) override;
    size_t GetSize(const void* pBlock) override;
    bool Owns(const void* pBlock) override;
    void Reset() override;
    void Destroy() override;

private:
    struct Arena;
    struct Signature;
    using ArenaList = std::list<Arena, MMRawAllocator<Arena>>;
    // What a first page belongs to: an arena, or none for a block with pages of its own.
    struct Owner {
        Arena* pArena;
        size_t size; // of the block
        MMCall kind;
    };
    using LiveMap = std::unordered_map<char*, Owner, std::hash<char*>, std::equal_to<char*>,
                                       MMRawAllocator<std::pair<char* const, Owner>>>;

    char* TakeSlot(Arena*& pArena);
    void ReturnSlot(Arena& arena, char* pFirstPage);
    LiveMap::iterator Find(const void* pBlock);
    void Open(char* pPages, size_t size) const;
    void CloseAccess(char* pPages, size_t size) const;

    const PoolMode& m_Mode;
    ArenaList m_Arenas; // those with a free slot stand ahead of full ones
    LiveMap m_Live;     // by the first page
};
