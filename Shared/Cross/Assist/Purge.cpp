// How resources leave the warehouse, and how a new object takes an old one's place.
#include "Shared/Cross/Assist/Warehouse.h"

#include "Shared/Cross/Assist/LeakReport.h"

namespace Inv {

WarehouseImp::NodeMap::iterator WarehouseImp::Destroy(Bin& bin, NodeMap::iterator it) {
    // In the bin until the end, but not to be found any more: a destructor may ask for other resources.
    Resource& resource = *it->second.pResource;
    resource.m_Dropped = true;
    resource.m_pData->m_InInventory = false;
    resource.m_pName = nullptr;
    bin.info.Destroy(std::move(resource.m_pData));
    return bin.nodes.erase(it);
}

bool WarehouseImp::PurgeUnreferenced(Bin& bin) {
    bool removed = false;
    for (auto it = bin.nodes.begin(); it != bin.nodes.end();) {
        if (it->second.pResource->m_RefCount == 0) {
            it = Destroy(bin, it);
            removed = true;
        } else {
            ++it;
        }
    }
    return removed;
}

void WarehouseImp::PurgeUnreferenced(const ResourceTypeInfo* pInfo) {
    bool removed = true;
    while (removed) {
        removed = false;
        // By index: destroying may bring in a kind that wasn't there.
        for (size_t i = 0; i < m_Bins.size(); ++i)
            if (!pInfo || &m_Bins[i]->info == pInfo)
                removed |= PurgeUnreferenced(*m_Bins[i]);
    }
}

void WarehouseImp::PurgeAll(Bin& bin, std::vector<std::unique_ptr<Resource>>& orphans) {
    for (auto it = bin.nodes.begin(); it != bin.nodes.end();) {
        Resource& resource = *it->second.pResource;
        if (resource.m_RefCount == 0) {
            it = Destroy(bin, it);
            continue;
        }
        dbWarningf("Purging: Resource [%s]-[%s] still referenced!", bin.info.GetTypeName(), resource.m_pName);
        resource.m_pData->m_InInventory = false;
        // Somebody still works with it, so it is let go and not destroyed.
        static_cast<void>(resource.m_pData.release());
        orphans.push_back(std::move(it->second.pResource));
        it = bin.nodes.erase(it);
    }
}

void WarehouseImp::PurgeAll() {
    // Kept to the end of the pass: the one that refers to it may be destroyed behind it, and gives its reference back.
    std::vector<std::unique_ptr<Resource>> orphans;
    for (size_t i = 0; i < m_Bins.size(); ++i)
        PurgeAll(*m_Bins[i], orphans);
    orphans.clear();
    m_Bins.clear();
    m_Frames.resize(1);
    m_CurrentFrameIndex = 0;
}

void WarehouseImp::Replace(Resource& resource, std::unique_ptr<NamedResource> pData, ResourceTypeInfo& info) {
    pData->SetName(resource.m_pName);
    pData->m_InInventory = true;
    resource.m_pName = pData->GetName();
    std::swap(resource.m_pData, pData);
    pData->m_InInventory = false;
    info.Destroy(std::move(pData));
}

void WarehouseImp::Reload(const char* pName, ResourceTypeInfo& info) {
    if (!info.SupportsReload()) {
        dbWarningf("Resource group %s does not support reloads!", info.GetTypeName());
        return;
    }
    if (Resource* pResource = Find(pName, info))
        Reload(*pResource, pName, info);
    else
        dbWarningf("Unable to find resource %s -- cannot reload!", pName ? pName : "");
}

void WarehouseImp::Reload(Resource& resource, const char* pName, ResourceTypeInfo& info) {
    std::unique_ptr<NamedResource> pData = info.Load(pName);
    if (!pData) {
        dbWarningf("Unable to reload resource %s, using original copy!", pName);
        return;
    }
    info.OnReload(resource);
    Replace(resource, std::move(pData), info);
}

void WarehouseImp::Preload(const char* pName, ResourceTypeInfo& info) {
    if (Resource* pResource = Find(pName, info))
        Preload(*pResource, pName, info);
    else
        dbWarningf("Unable to find resource %s -- cannot preload!", pName ? pName : "");
}

void WarehouseImp::Preload(Resource& resource, const char* pName, ResourceTypeInfo& info) {
    std::unique_ptr<NamedResource> pData = info.Load(pName);
    if (!pData) {
        pData = info.CreateDefault(pName);
        dbWarningf("Unable to preload resource %s, using default!", pName);
    }
    dbAssertText(pData, "dbBreak");
    if (pData)
        Replace(resource, std::move(pData), info);
}

void WarehouseImp::ReloadAll(ResourceTypeInfo& info) {
    if (!info.SupportsReload()) {
        dbWarningf("Resource group %s does not support reloads!", info.GetTypeName());
        return;
    }
    ForEach(info, [&](Resource& resource) { Reload(resource, std::string(resource.m_pName).c_str(), info); });
}

void WarehouseImp::PreloadAll(ResourceTypeInfo& info) {
    ForEach(info, [&](Resource& resource) { Preload(resource, std::string(resource.m_pName).c_str(), info); });
}

void WarehouseImp::ForEach(const ResourceTypeInfo& info, const std::function<void(Resource&)>& visit) {
    const Bin* pBin = FindBin(info);
    if (!pBin)
        return;
    // Gathered first, since a load may add others to the bin.
    std::vector<Resource*> resources;
    for (const auto& [key, node] : pBin->nodes)
        resources.push_back(node.pResource.get());
    for (Resource* pResource : resources)
        visit(*pResource);
}

} // namespace Inv
