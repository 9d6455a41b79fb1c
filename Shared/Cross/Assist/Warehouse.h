#pragma once

#include "Shared/Cross/Assist/Inventory.h"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// What stands behind the operations of the inventory; of no interest outside this folder.
namespace Inv {

constexpr uint32_t INVALID_FRAME_ID = 65355;

class LeakReport;

class WarehouseImp {
public:
    explicit WarehouseImp(bool tracksLeaks);
    ~WarehouseImp();

    Resource* Get(const char* pName, ResourceTypeInfo& info);
    Resource* Find(const char* pName, const ResourceTypeInfo& info);
    Resource* Add(std::unique_ptr<Resource> pResource, ResourceTypeInfo& info);
    void Remove(Resource& resource, const ResourceTypeInfo& info);
    uint32_t AddRef(Resource& resource);
    void Release(Resource& resource, uint32_t reference);

    void PushFrame(const char* pFrameName);
    void PopFrame();
    const char* GetCurrentFrameName() const { return m_Frames[m_CurrentFrameIndex].name.c_str(); }
    uint32_t GetCurrentFrame() const { return m_CurrentFrameIndex; }
    // A frame that is gone gives the root.
    void SetCurrentFrame(uint32_t frame) { m_CurrentFrameIndex = frame < m_Frames.size() ? frame : 0; }

    void PurgeUnreferenced(const ResourceTypeInfo* pInfo);
    void PurgeAll();

    void Reload(const char* pName, ResourceTypeInfo& info);
    void ReloadAll(ResourceTypeInfo& info);
    void Preload(const char* pName, ResourceTypeInfo& info);
    void PreloadAll(ResourceTypeInfo& info);

    uint32_t GetCount(const ResourceTypeInfo& info) const;
    void Dump(DebugToolDumpInfo& sink) const;

private:
    friend class Resource;

    struct Frame {
        PooledName name;
        uint32_t parent = INVALID_FRAME_ID;
    };
    struct Node {
        uint32_t frame;
        std::unique_ptr<Resource> pResource;
    };
    // Equal keys keep the order in which they came.
    using NodeMap = std::multimap<uint32_t, Node, std::less<>, MMAllocator<std::pair<const uint32_t, Node>, NodesPool>>;
    using LoadingName = std::pair<const ResourceTypeInfo*, std::string>;
    struct Bin {
        ResourceTypeInfo& info;
        NodeMap nodes;
    };

    static uint32_t MakeKey(std::string_view translatedName, uint32_t frame);
    Bin* FindBin(const ResourceTypeInfo& info) const;
    Bin& FindOrMakeBin(ResourceTypeInfo& info);
    Resource* FindIn(const Bin& bin, const std::string& translatedName) const;
    std::unique_ptr<NamedResource> LoadGuarded(const LoadingName& loading, const char* pName, ResourceTypeInfo& info);
    // True when the very same record is there already.
    bool ReportTwins(const Bin& bin, uint32_t key, const Resource& resource) const;

    // Takes the node out and destroys its object; answers the node after it.
    NodeMap::iterator Destroy(Bin& bin, NodeMap::iterator it);
    bool PurgeUnreferenced(Bin& bin);
    void PurgeAll(Bin& bin, std::vector<std::unique_ptr<Resource>>& orphans);
    void Replace(Resource& resource, std::unique_ptr<NamedResource> pData, ResourceTypeInfo& info);
    void Reload(Resource& resource, const char* pName, ResourceTypeInfo& info);
    void Preload(Resource& resource, const char* pName, ResourceTypeInfo& info);
    void ForEach(const ResourceTypeInfo& info, const std::function<void(Resource&)>& visit);

    static void ReportEnd(const Resource& resource);

    std::vector<Frame> m_Frames;
    uint32_t m_CurrentFrameIndex = 0;
    // In the order of first use. Each by itself, since a load inside a load may add one.
    std::vector<std::unique_ptr<Bin>> m_Bins;
    // What is being loaded right now, outermost first.
    std::vector<LoadingName> m_Loading;
    std::unique_ptr<LeakReport> m_pLeaks; // null without leak tracking
    uint32_t m_LastReference = 0;
};

} // namespace Inv
