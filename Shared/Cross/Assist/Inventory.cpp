#include "Shared/Cross/Assist/Inventory.h"

#include "Shared/Cross/Assist/LeakReport.h"
#include "Shared/Cross/Assist/Warehouse.h"
#include "Shared/Cross/Debug/RunOptions.h"

namespace Inv {

namespace {

// Plain, since what a failed command leaves standing must not be torn down at the process's exit, among statics that
// are half gone.
WarehouseImp* s_pWarehouse = nullptr;

WarehouseImp* GetWarehouse() {
    dbAssertText(s_pWarehouse, "s_pWarehouse");
    return s_pWarehouse;
}

} // namespace

void Initialize() {
    dbAssertText(!s_pWarehouse, "!s_pWarehouse");
    if (s_pWarehouse)
        return;
    const bool tracksLeaks = RunOptions::IsSet("invleaks");
    s_pWarehouse = new WarehouseImp(tracksLeaks);
    if (tracksLeaks)
        dbPrintf("--- Inventory Leak Tracking Enabled ---");
}

void Shutdown() {
    WarehouseImp* pWarehouse = GetWarehouse();
    if (!pWarehouse)
        return;
    pWarehouse->PurgeUnreferenced(nullptr);
    pWarehouse->PurgeAll();
    delete pWarehouse;
    s_pWarehouse = nullptr;
}

bool IsInitialized() { return s_pWarehouse; }

Resource* Get(const char* pName, ResourceTypeInfo& info) {
    WarehouseImp* pWarehouse = GetWarehouse();
    return pWarehouse ? pWarehouse->Get(pName, info) : nullptr;
}

Resource* Find(const char* pName, const ResourceTypeInfo& info) {
    WarehouseImp* pWarehouse = GetWarehouse();
    return pWarehouse ? pWarehouse->Find(pName, info) : nullptr;
}

Resource* Add(std::unique_ptr<Resource> pResource, ResourceTypeInfo& info) {
    WarehouseImp* pWarehouse = GetWarehouse();
    return pWarehouse ? pWarehouse->Add(std::move(pResource), info) : nullptr;
}

void Remove(Resource* pResource, const ResourceTypeInfo& info) {
    WarehouseImp* pWarehouse = GetWarehouse();
    dbAssert(pResource);
    if (pWarehouse && pResource)
        pWarehouse->Remove(*pResource, info);
}

uint32_t AddRef(Resource& resource) {
    WarehouseImp* pWarehouse = GetWarehouse();
    return pWarehouse ? pWarehouse->AddRef(resource) : 0;
}

void Release(Resource& resource, uint32_t reference) {
    if (WarehouseImp* pWarehouse = GetWarehouse())
        pWarehouse->Release(resource, reference);
}

void PushFrame(const char* pFrameName) {
    if (WarehouseImp* pWarehouse = GetWarehouse())
        pWarehouse->PushFrame(pFrameName);
}

void PopFrame() {
    if (WarehouseImp* pWarehouse = GetWarehouse())
        pWarehouse->PopFrame();
}

const char* GetCurrentFrameName() {
    WarehouseImp* pWarehouse = GetWarehouse();
    return pWarehouse ? pWarehouse->GetCurrentFrameName() : "";
}

RootFrameScope::RootFrameScope() : m_FrameBefore(0) {
    if (WarehouseImp* pWarehouse = GetWarehouse()) {
        m_FrameBefore = pWarehouse->GetCurrentFrame();
        pWarehouse->SetCurrentFrame(0);
    }
}

RootFrameScope::~RootFrameScope() {
    if (s_pWarehouse)
        s_pWarehouse->SetCurrentFrame(m_FrameBefore);
}

void PurgeUnreferenced() {
    if (WarehouseImp* pWarehouse = GetWarehouse())
        pWarehouse->PurgeUnreferenced(nullptr);
}

void PurgeUnreferenced(const ResourceTypeInfo& info) {
    if (WarehouseImp* pWarehouse = GetWarehouse())
        pWarehouse->PurgeUnreferenced(&info);
}

void PurgeAll() {
    if (WarehouseImp* pWarehouse = GetWarehouse())
        pWarehouse->PurgeAll();
}

void Reload(const char* pName, ResourceTypeInfo& info) {
    if (WarehouseImp* pWarehouse = GetWarehouse())
        pWarehouse->Reload(pName, info);
}

void ReloadAll(ResourceTypeInfo& info) {
    if (WarehouseImp* pWarehouse = GetWarehouse())
        pWarehouse->ReloadAll(info);
}

void Preload(const char* pName, ResourceTypeInfo& info) {
    if (WarehouseImp* pWarehouse = GetWarehouse())
        pWarehouse->Preload(pName, info);
}

void PreloadAll(ResourceTypeInfo& info) {
    if (WarehouseImp* pWarehouse = GetWarehouse())
        pWarehouse->PreloadAll(info);
}

uint32_t GetCount(const ResourceTypeInfo& info) {
    WarehouseImp* pWarehouse = GetWarehouse();
    return pWarehouse ? pWarehouse->GetCount(info) : 0;
}

void Dump(DebugToolDumpInfo& sink) {
    if (WarehouseImp* pWarehouse = GetWarehouse())
        pWarehouse->Dump(sink);
}

// Here, since the warehouse's own state is what tells whether leaks are tracked.
void WarehouseImp::ReportEnd(const Resource& resource) {
    LeakReport* pLeaks = s_pWarehouse ? s_pWarehouse->m_pLeaks.get() : nullptr;
    if (!pLeaks) {
        dbAssertText(resource.m_RefCount == 0, "m_RefCount == 0");
        return;
    }
    for (const Resource::ReferenceStack& stack : resource.m_Stacks)
        pLeaks->Write(resource.m_pName, stack.trace);
}

} // namespace Inv
