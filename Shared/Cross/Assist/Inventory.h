#pragma once

#include "Shared/Cross/Debug/StackTrace.h"
#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/Memory/MMAllocator.h"

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

// The process-wide warehouse of named, loaded resources. Asking for one by name yields a record that all who ask
// share; it is loaded at the first request, and a failed load falls back on the kind's default object. Records live in
// frames: a search goes from the current frame up to the root, so that an inner frame shadows the outer ones. Main
// thread alone; nothing is locked.
namespace Inv {

class DebugToolDumpInfo;

using NamesPool = MMNamedPool<"InvNames">;
using NodesPool = MMNamedPool<"InvNodes", MMPoolKind::Small>;
using ResourcesPool = MMNamedPool<"InvResources", MMPoolKind::Small>;
using PooledName = std::basic_string<char, std::char_traits<char>, MMAllocator<char, NamesPool>>;

// The base of what is stored. Its name is fixed as long as it is in the warehouse, and so is its life.
class NamedResource {
public:
    NamedResource() = default;
    NamedResource(const NamedResource&) = delete;
    NamedResource& operator=(const NamedResource&) = delete;
    virtual ~NamedResource();

    // Null takes the name away.
    virtual void SetName(const char* pName);
    // Null when it has none. Good until the next SetName.
    const char* GetName() const { return m_HasName ? m_Name.c_str() : nullptr; }
    bool IsInInventory() const { return m_InInventory; }

private:
    friend class WarehouseImp;

    PooledName m_Name;
    bool m_HasName = false;
    bool m_InInventory = false;
};

class Resource;

// What gives a kind of resource its behaviour; one object for each kind, which lives as long as the warehouse.
class ResourceTypeInfo {
public:
    virtual ~ResourceTypeInfo() = default;

    // Text for people, such as "Mesh".
    virtual const char* GetTypeName() const = 0;
    // The form of a name that is looked up by. This one drops an alias (all up to the last colon), turns backslashes
    // into slashes, drops the extension and lower-cases.
    virtual void TranslateName(std::string& outName, const char* pName) const;
    virtual bool SupportsReload() const { return false; }
    // What to use when a load failed; null when the kind has no such thing.
    virtual std::unique_ptr<NamedResource> CreateDefault(const char* pName) = 0;
    virtual void Destroy(std::unique_ptr<NamedResource> pData);
    // A new object, or null. The name is as it was asked for.
    virtual std::unique_ptr<NamedResource> Load(const char* pName) = 0;
    // Its object is about to be replaced.
    virtual void OnReload(Resource&) {}
    // Adds one item to a dump.
    virtual void Report(DebugToolDumpInfo& sink, const Resource& resource, const char* pName, const char* pFrameName,
                        uint32_t refCount) const = 0;
};

// The warehouse's record of one object. Its holders keep the record and not the object, since a reload replaces that.
class Resource : public MMPooled<ResourcesPool> {
public:
    explicit Resource(std::unique_ptr<NamedResource> pData);
    ~Resource();
    Resource(const Resource&) = delete;
    Resource& operator=(const Resource&) = delete;

    // Of the object; null without one.
    const char* GetName() const { return m_pName; }
    // Null only while the record is on its way out.
    NamedResource* GetData() const { return m_pData.get(); }
    uint32_t GetRefCount() const { return m_RefCount; }

private:
    friend class WarehouseImp;

    struct ReferenceStack {
        uint32_t reference;
        StackTrace trace;
    };

    const char* m_pName = nullptr;
    std::vector<ReferenceStack> m_Stacks; // of the live references, oldest first; only with leak tracking
    bool m_Dropped = false;               // from its bin; a search skips it
    uint32_t m_RefCount = 0;
    std::unique_ptr<NamedResource> m_pData;
};

// The warehouse lives between these two. Whoever still holds a record at the end holds a dead pointer; such a record
// is logged, and its object is let go without being destroyed.
void Initialize();
void Shutdown();
bool IsInitialized();

// Finds, or loads and adds to the current frame. Null when neither the load nor the kind's default gives an object.
// The caller adds a reference of its own.
Resource* Get(const char* pName, ResourceTypeInfo& info);
// Null when it isn't there; never loads.
Resource* Find(const char* pName, const ResourceTypeInfo& info);

// Enters a record, whose object has a name, in the current frame; the warehouse owns it then. Another of the same name
// is logged, but goes in beside it. Null when the object has no name, with the record gone.
Resource* Add(std::unique_ptr<Resource> pResource, ResourceTypeInfo& info);
// Takes an unreferenced record of the current frame out and destroys it; with references nothing happens.
void Remove(Resource* pResource, const ResourceTypeInfo& info);

// What AddRef answers belongs to that one reference, and Release wants it back. No count destroys anything: a purge
// does.
uint32_t AddRef(Resource& resource);
void Release(Resource& resource, uint32_t reference);

// A frame of this name within the current one; made at need.
void PushFrame(const char* pFrameName);
// Back to the frame around it; the root stays.
void PopFrame();
const char* GetCurrentFrameName();

// Makes the root the current frame for as long as it lives.
class RootFrameScope {
public:
    RootFrameScope();
    ~RootFrameScope();
    RootFrameScope(const RootFrameScope&) = delete;
    RootFrameScope& operator=(const RootFrameScope&) = delete;

private:
    uint32_t m_FrameBefore;
};

// Destroys what nobody refers to, and what thereby loses its last reference.
void PurgeUnreferenced();
void PurgeUnreferenced(const ResourceTypeInfo& info);
// Empties the warehouse and drops all frames but the root.
void PurgeAll();

// A failure is logged and leaves the object that is there.
void Reload(const char* pName, ResourceTypeInfo& info);
void ReloadAll(ResourceTypeInfo& info);
void Preload(const char* pName, ResourceTypeInfo& info);
void PreloadAll(ResourceTypeInfo& info);

uint32_t GetCount(const ResourceTypeInfo& info);
void Dump(DebugToolDumpInfo& sink);

// Holds one resource of the kind T by a reference. T derives from NamedResource and has
//     static Inv::ResourceTypeInfo& GetTypeInfo();
template <class T>
class Handle {
public:
    Handle() = default;
    // Null gives an empty handle.
    explicit Handle(Resource* pResource) : m_pResource(pResource) {
        if (m_pResource)
            m_Reference = AddRef(*m_pResource);
    }
    Handle(const Handle& other) : Handle(other.m_pResource) {}
    Handle(Handle&& other) noexcept
        : m_pResource(std::exchange(other.m_pResource, nullptr)), m_Reference(std::exchange(other.m_Reference, 0)) {}
    Handle& operator=(Handle other) noexcept {
        std::swap(m_pResource, other.m_pResource);
        std::swap(m_Reference, other.m_Reference);
        return *this;
    }
    ~Handle() {
        if (m_pResource) {
            const dbNoThrowScope noThrow;
            Reset();
        }
    }

    // Each of these lets go of what was held, and answers whether there is something now.
    bool Get(const char* pName) { return Hold(Inv::Get(pName, T::GetTypeInfo())); }
    bool Find(const char* pName) { return Hold(Inv::Find(pName, T::GetTypeInfo())); }
    // Puts an object, which has a name, into the current frame.
    bool Set(std::unique_ptr<T> pData) {
        dbAssertText(pData, "pData");
        dbAssertText(!pData || pData->GetName(), "pData->GetName()");
        Reset();
        return pData && pData->GetName() &&
               Hold(Inv::Add(std::make_unique<Resource>(std::move(pData)), T::GetTypeInfo()));
    }

    void Reset() {
        if (m_pResource)
            Release(*std::exchange(m_pResource, nullptr), std::exchange(m_Reference, 0));
    }

    bool IsValid() const { return m_pResource; }
    explicit operator bool() const { return IsValid(); }
    Resource* GetResource() const { return m_pResource; }
    // Null when empty, which is no mistake here.
    T* GetData() const { return m_pResource ? static_cast<T*>(m_pResource->GetData()) : nullptr; }
    // Using an empty handle is a mistake.
    T* operator->() const {
        dbAssertText(m_pResource, "dbBreak");
        return GetData();
    }

    // Whether both hold the same record.
    friend bool operator==(const Handle& left, const Handle& right) { return left.m_pResource == right.m_pResource; }

private:
    bool Hold(Resource* pResource) {
        *this = Handle(pResource);
        return IsValid();
    }

    Resource* m_pResource = nullptr;
    uint32_t m_Reference = 0;
};

} // namespace Inv
