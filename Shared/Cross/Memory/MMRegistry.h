#pragma once

#include "Shared/Cross/Memory/MMOverrides.h"
#include "Shared/Cross/Memory/MMPoolBase.h"

// All named pools of the process. The operations want the lock to be held.
class MMRegistry {
public:
    // For a debugger, which has nothing to call: the pools, as far as there are slots.
    struct Slot {
        MMPoolBase* pPool;
        char name[32]; // cut
    };
    static constexpr size_t s_Slots = 100;

    // Brings the pools up at the first call: reads "memory.ini" and makes the default pools. May be called with or
    // without the lock.
    static MMRegistry& Get();

    // As the overrides have it. A name in use is fatal, and so is a null one.
    MMPoolBase& Create(const char* pName, MMPoolKind kind, uint32_t initialSize, uint32_t flags);
    MMPoolBase* Find(const char* pName) const;
    void Destroy(MMPoolBase& pool);

    MMPoolBase& GetDefault() { return *m_pDefault; }
    MMPoolBase& GetStrings() { return *m_pStrings; }
    const Slot* GetSlots() const { return m_Slots; }

private:
    void BringUp();
    MMPoolBase& MakePool(const char* pName, MMPoolKind kind, uint32_t initialSize, uint32_t flags) const;
    void Add(MMPoolBase& pool);
    void Remove(MMPoolBase& pool);

    MMOverrides m_Overrides;
    MMPoolBase* m_pFirst = nullptr;
    MMPoolBase* m_pDefault = nullptr;
    MMPoolBase* m_pStrings = nullptr;
    Slot m_Slots[s_Slots] = {};
};
