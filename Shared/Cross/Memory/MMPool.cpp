#include "Shared/Cross/Memory/MMPool.h"

#include "Shared/Cross/Memory/MMRegistry.h"
#include "Shared/Cross/Memory/MMSystem.h"

MMPoolBase* MMPoolCreate(const char* pName, MMPoolKind kind, uint32_t initialSize, uint32_t flags) {
    MMRegistry& registry = MMRegistry::Get();
    const MMLockScope lock;
    return &registry.Create(pName, kind, initialSize, flags);
}

MMPoolBase* MMPoolFind(const char* pName) {
    MMRegistry& registry = MMRegistry::Get();
    const MMLockScope lock;
    return registry.Find(pName);
}

MMPoolBase& MMPoolGet(const char* pName, MMPoolKind kind, uint32_t initialSize, uint32_t flags) {
    MMRegistry& registry = MMRegistry::Get();
    const MMLockScope lock;
    MMPoolBase* const pPool = registry.Find(pName);
    return pPool ? *pPool : registry.Create(pName, kind, initialSize, flags);
}

void MMPoolDestroy(MMPoolBase* pPool) {
    MMRegistry& registry = MMRegistry::Get();
    MMCheckPool(*pPool);
    const MMLockScope lock;
    registry.Destroy(*pPool);
}

MMPoolBase& MMPoolDefault() { return MMRegistry::Get().GetDefault(); }

MMPoolBase& MMPoolStrings() { return MMRegistry::Get().GetStrings(); }
