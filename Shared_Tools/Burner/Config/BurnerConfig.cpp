#include "Shared_Tools/Burner/Config/BurnerConfig.h"

#include "Shared/Cross/Debug/db.h"

#include <algorithm>

namespace {

char ToLowerAscii(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

// The place of the first one of that name; -1 for none.
template <class Item>
int32_t FindByName(const std::vector<Item>& items, std::string_view name) {
    const auto it =
        std::ranges::find_if(items, [&](const Item& item) { return BurnerConfig::IsSameText(item.name, name); });
    return it != items.end() ? static_cast<int32_t>(it - items.begin()) : -1;
}

// The same for a name that may be null, which nothing has.
template <class Item>
int32_t FindByName(const std::vector<Item>& items, const char* pName) {
    return pName ? FindByName(items, std::string_view(pName)) : -1;
}

} // namespace

bool BurnerConfig::IsSameText(std::string_view a, std::string_view b) {
    return std::ranges::equal(a, b, {}, ToLowerAscii, ToLowerAscii);
}

void BurnerConfig::Clear() { m_Groups.clear(); }

bool BurnerConfig::AddTargetGroup(const char* pName, const char* pWildcard) {
    if (!pName || !pWildcard || FindGroup(pName) >= 0)
        return false;
    m_Groups.push_back({.name = pName, .wildcard = pWildcard, .targets = {}});
    return true;
}

bool BurnerConfig::AddTarget(const char* pGroup, const char* pTarget, const char* pDestination, const char* pPlugin) {
    const int32_t group = FindGroup(pGroup);
    if (group < 0 || !pTarget || !*pTarget || !pPlugin)
        return false;
    std::vector<Target>& targets = m_Groups[static_cast<size_t>(group)].targets;
    if (FindByName(targets, pTarget) >= 0)
        return false;
    targets.push_back(
        {.name = pTarget, .plugin = pPlugin, .destination = pDestination ? pDestination : "", .params = {}});
    return true;
}

const char* BurnerConfig::GetGroupName(uint32_t group) const {
    if (group < m_Groups.size())
        return m_Groups[group].name.c_str();
    dbBreak();
    return nullptr;
}

const char* BurnerConfig::GetGroupWildcard(uint32_t group) const {
    if (group < m_Groups.size())
        return m_Groups[group].wildcard.c_str();
    dbBreak();
    return nullptr;
}

uint32_t BurnerConfig::GetTargetCount(const char* pGroup) const {
    const Group* pFound = GetGroup(pGroup);
    return pFound ? static_cast<uint32_t>(pFound->targets.size()) : 0;
}

BurnerConfig::TargetID BurnerConfig::GetTargetID(uint32_t index, const char* pGroup) const {
    if (index >= GetTargetCount(pGroup))
        return TargetID::InvalidID;
    return {FindGroup(pGroup), static_cast<int32_t>(index)};
}

BurnerConfig::TargetID BurnerConfig::GetTargetID(const char* pTarget, const char* pGroup) const {
    const Group* pFound = GetGroup(pGroup);
    const int32_t target = pFound ? FindByName(pFound->targets, pTarget) : -1;
    return target < 0 ? TargetID::InvalidID : TargetID{FindGroup(pGroup), target};
}

const char* BurnerConfig::GetTargetName(TargetID id) const {
    const Target* pTarget = GetTarget(id);
    return pTarget ? pTarget->name.c_str() : nullptr;
}

const char* BurnerConfig::GetTargetPlugin(TargetID id) const {
    const Target* pTarget = GetTarget(id);
    return pTarget ? pTarget->plugin.c_str() : nullptr;
}

const char* BurnerConfig::GetTargetDestination(TargetID id) const {
    const Target* pTarget = GetTarget(id);
    return pTarget ? pTarget->destination.c_str() : nullptr;
}

uint32_t BurnerConfig::GetParamCount(TargetID id) const {
    const Target* pTarget = GetTarget(id);
    return pTarget ? static_cast<uint32_t>(pTarget->params.size()) : 0;
}

bool BurnerConfig::GetParam(uint32_t index, TargetID id, Param& out) const {
    const Target* pTarget = GetTarget(id);
    if (!pTarget || index >= pTarget->params.size())
        return false;
    out = pTarget->params[index];
    return true;
}

bool BurnerConfig::GetParam(const char* pName, TargetID id, Param& out) const {
    const Target* pTarget = GetTarget(id);
    const int32_t index = pTarget ? FindByName(pTarget->params, pName) : -1;
    return index >= 0 && GetParam(static_cast<uint32_t>(index), id, out);
}

bool BurnerConfig::SetParam(const Param& param, TargetID id) {
    Target* pTarget = GetTarget(id);
    if (!pTarget)
        return false;
    const int32_t index = FindByName(pTarget->params, std::string_view(param.name));
    if (index < 0) {
        pTarget->params.push_back(param);
        return true;
    }
    Param& present = pTarget->params[static_cast<size_t>(index)];
    const bool isSame = IsSameText(present.value, param.value);
    if (!isSame)
        present.value = param.value;
    present.inherited = isSame && param.inherited;
    return true;
}

bool BurnerConfig::RemoveParam(const char* pName, TargetID id) {
    Target* pTarget = GetTarget(id);
    const int32_t index = pTarget ? FindByName(pTarget->params, pName) : -1;
    if (index < 0)
        return false;
    pTarget->params.erase(pTarget->params.begin() + index);
    return true;
}

bool BurnerConfig::IsGroupInherited(const char* pGroup) const {
    const uint32_t count = GetTargetCount(pGroup);
    for (uint32_t i = 0; i < count; ++i) {
        const TargetID targetId = GetTargetID(i, pGroup);
        dbAssert(targetId != TargetID::InvalidID);
        if (!IsTargetInherited(targetId))
            return false;
    }
    return count > 0;
}

bool BurnerConfig::IsTargetInherited(TargetID id) const {
    const Target* pTarget = GetTarget(id);
    return pTarget && std::ranges::all_of(pTarget->params, &Param::inherited);
}

int32_t BurnerConfig::FindGroup(const char* pName) const { return FindByName(m_Groups, pName); }

const BurnerConfig::Group* BurnerConfig::GetGroup(const char* pName) const {
    const int32_t group = FindGroup(pName);
    return group >= 0 ? &m_Groups[static_cast<size_t>(group)] : nullptr;
}

const BurnerConfig::Target* BurnerConfig::GetTarget(TargetID id) const {
    if (id.group < 0 || static_cast<size_t>(id.group) >= m_Groups.size())
        return nullptr;
    const std::vector<Target>& targets = m_Groups[static_cast<size_t>(id.group)].targets;
    return id.target >= 0 && static_cast<size_t>(id.target) < targets.size() ? &targets[static_cast<size_t>(id.target)]
                                                                             : nullptr;
}

BurnerConfig::Target* BurnerConfig::GetTarget(TargetID id) {
    return const_cast<Target*>(static_cast<const BurnerConfig*>(this)->GetTarget(id));
}
