#include "Shared/Cross/Assist/Warehouse.h"

#include "Shared/Cross/Assist/DebugToolDumpInfo.h"
#include "Shared/Cross/Assist/LeakReport.h"
#include "Shared/Cross/Util/Hash.h"

#include <algorithm>

namespace Inv {

namespace {

constexpr char s_RootFrameName[] = "_ROOT_FRAME_";

const char* OrEmpty(const char* pText) { return pText ? pText : ""; }

} // namespace

WarehouseImp::WarehouseImp(bool tracksLeaks) : m_pLeaks(tracksLeaks ? std::make_unique<LeakReport>() : nullptr) {
    m_Frames.push_back({s_RootFrameName, INVALID_FRAME_ID});
}

WarehouseImp::~WarehouseImp() = default;

uint32_t WarehouseImp::MakeKey(std::string_view translatedName, uint32_t frame) {
    constexpr uint32_t s_AllBytes = 0x01010101;
    return HashNoCase(translatedName) ^ (frame & 0xFF) * s_AllBytes;
}

WarehouseImp::Bin* WarehouseImp::FindBin(const ResourceTypeInfo& info) const {
    const auto it = std::ranges::find_if(m_Bins, [&](const auto& pBin) { return &pBin->info == &info; });
    return it != m_Bins.end() ? it->get() : nullptr;
}

WarehouseImp::Bin& WarehouseImp::FindOrMakeBin(ResourceTypeInfo& info) {
    if (Bin* pBin = FindBin(info))
        return *pBin;
    return *m_Bins.emplace_back(new Bin{info, {}});
}

Resource* WarehouseImp::FindIn(const Bin& bin, const std::string& translatedName) const {
    for (uint32_t frame = m_CurrentFrameIndex; frame != INVALID_FRAME_ID; frame = m_Frames[frame].parent) {
        const auto [first, last] = bin.nodes.equal_range(MakeKey(translatedName, frame));
        for (auto it = first; it != last; ++it) {
            Resource& resource = *it->second.pResource;
            if (!resource.m_Dropped && it->second.frame == frame &&
                EqualNoCase(OrEmpty(resource.m_pName), translatedName))
                return &resource;
        }
    }
    return nullptr;
}

Resource* WarehouseImp::Find(const char* pName, const ResourceTypeInfo& info) {
    dbAssertText(pName, "name");
    const Bin* pBin = FindBin(info);
    if (!pName || !pBin)
        return nullptr;
    std::string name;
    info.TranslateName(name, pName);
    return FindIn(*pBin, name);
}

Resource* WarehouseImp::Get(const char* pName, ResourceTypeInfo& info) {
    dbAssertText(pName, "name");
    if (!pName)
        return nullptr;
    std::string name;
    info.TranslateName(name, pName);
    if (const Bin* pBin = FindBin(info))
        if (Resource* pFound = FindIn(*pBin, name))
            return pFound;
    // Files may refer to each other in a ring; the one that closes it finds what it asks for half made.
    const LoadingName loading(&info, name);
    if (std::ranges::find(m_Loading, loading) != m_Loading.end()) {
        dbWarningf("Inventory -- %s resource '%s' refers to itself!", info.GetTypeName(), pName);
        return nullptr;
    }
    std::unique_ptr<NamedResource> pData = LoadGuarded(loading, pName, info);
    if (!pData) {
        pData = info.CreateDefault(pName);
        if (!pData)
            return nullptr;
        dbWarningf("Unable to load '%s' resource '%s', using default!", info.GetTypeName(), pName);
    }
    pData->SetName(name.c_str());
    return Add(std::make_unique<Resource>(std::move(pData)), info);
}

std::unique_ptr<NamedResource> WarehouseImp::LoadGuarded(const LoadingName& loading, const char* pName,
                                                         ResourceTypeInfo& info) {
    // Undone in an exception's way too.
    struct Scope {
        explicit Scope(std::vector<LoadingName>& names, const LoadingName& name) : m_Names(names) {
            m_Names.push_back(name);
        }
        ~Scope() { m_Names.pop_back(); }
        std::vector<LoadingName>& m_Names;
    };
    const Scope scope(m_Loading, loading);
    return info.Load(pName);
}

Resource* WarehouseImp::Add(std::unique_ptr<Resource> pResource, ResourceTypeInfo& info) {
    dbAssert(pResource);
    if (!pResource)
        return nullptr;
    dbAssertText(pResource->GetData() && pResource->GetName(),
                 "static_cast<const Inv::NamedResource*>( pResource->GetData() )->GetName()");
    if (!pResource->GetData())
        return nullptr;
    if (!pResource->GetName()) {
        info.Destroy(std::move(pResource->m_pData));
        return nullptr;
    }

    std::string name;
    info.TranslateName(name, pResource->GetName());
    const uint32_t key = MakeKey(name, m_CurrentFrameIndex);
    Bin& bin = FindOrMakeBin(info);
    if (ReportTwins(bin, key, *pResource)) {
        // The warehouse owns it already.
        static_cast<void>(pResource.release());
        dbBreak();
        return nullptr;
    }
    pResource->m_pData->m_InInventory = true;
    return bin.nodes.emplace(key, Node{m_CurrentFrameIndex, std::move(pResource)})->second.pResource.get();
}

bool WarehouseImp::ReportTwins(const Bin& bin, uint32_t key, const Resource& resource) const {
    const auto [first, last] = bin.nodes.equal_range(key);
    for (auto it = first; it != last; ++it) {
        const Resource& other = *it->second.pResource;
        if (&other == &resource) {
            dbWarningf("Inventory -- '%s': Attempted addition of duplicate resource pointer!", resource.m_pName);
            return true;
        }
        if (EqualNoCase(OrEmpty(other.m_pName), resource.m_pName))
            dbWarningf("Frame '%s': Duplicate %s resource '%s' added to inventory - please check the resource!",
                       GetCurrentFrameName(), bin.info.GetTypeName(), resource.m_pName);
        else
            dbWarningf("Frame '%s': '%s' Key collision with '%s' added to inventory.", GetCurrentFrameName(),
                       resource.m_pName, OrEmpty(other.m_pName));
    }
    return false;
}

void WarehouseImp::Remove(Resource& resource, const ResourceTypeInfo& info) {
    Bin* pBin = FindBin(info);
    if (pBin && resource.m_pName) {
        std::string name;
        info.TranslateName(name, resource.m_pName);
        const auto [first, last] = pBin->nodes.equal_range(MakeKey(name, m_CurrentFrameIndex));
        const auto it =
            std::find_if(first, last, [&](const auto& node) { return node.second.pResource.get() == &resource; });
        if (it != last) {
            if (resource.m_RefCount == 0)
                Destroy(*pBin, it);
            return;
        }
    }
    dbBreak();
}

uint32_t WarehouseImp::AddRef(Resource& resource) {
    ++resource.m_RefCount;
    if (!m_pLeaks)
        return 0;
    Resource::ReferenceStack& stack = resource.m_Stacks.emplace_back();
    stack.reference = ++m_LastReference;
    // Without this frame; the compiler may leave no other between it and the holder's.
    dbCaptureStack(stack.trace, 1);
    return stack.reference;
}

void WarehouseImp::Release(Resource& resource, uint32_t reference) {
    dbAssertText(resource.m_RefCount != 0, "m_RefCount != 0");
    if (resource.m_RefCount == 0)
        return;
    --resource.m_RefCount;
    if (!m_pLeaks)
        return;
    const auto it = std::ranges::find(resource.m_Stacks, reference, &Resource::ReferenceStack::reference);
    dbAssertText(it != resource.m_Stacks.end(), "dbBreak");
    if (it != resource.m_Stacks.end())
        resource.m_Stacks.erase(it);
}

void WarehouseImp::PushFrame(const char* pFrameName) {
    dbAssertText(pFrameName, "frameName");
    dbAssertText(m_CurrentFrameIndex != INVALID_FRAME_ID, "m_pImp->m_CurrentFrameIndex != INVALID_FRAME_ID");
    const std::string_view name = OrEmpty(pFrameName);
    const auto it = std::ranges::find_if(m_Frames, [&](const Frame& frame) {
        return frame.parent == m_CurrentFrameIndex && EqualNoCase(frame.name, name);
    });
    const auto index = static_cast<uint32_t>(it - m_Frames.begin());
    if (it == m_Frames.end())
        m_Frames.push_back({PooledName(name), m_CurrentFrameIndex});
    m_CurrentFrameIndex = index;
}

void WarehouseImp::PopFrame() {
    if (m_Frames[m_CurrentFrameIndex].parent != INVALID_FRAME_ID)
        m_CurrentFrameIndex = m_Frames[m_CurrentFrameIndex].parent;
}

uint32_t WarehouseImp::GetCount(const ResourceTypeInfo& info) const {
    const Bin* pBin = FindBin(info);
    return pBin ? static_cast<uint32_t>(pBin->nodes.size()) : 0;
}

void WarehouseImp::Dump(DebugToolDumpInfo& sink) const {
    for (const auto& pBin : m_Bins)
        for (const auto& [key, node] : pBin->nodes) {
            const Resource& resource = *node.pResource;
            pBin->info.Report(sink, resource, OrEmpty(resource.m_pName), m_Frames[node.frame].name.c_str(),
                              resource.m_RefCount);
        }
}

} // namespace Inv
