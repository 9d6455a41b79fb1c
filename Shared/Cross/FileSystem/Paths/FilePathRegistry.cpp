#include "Shared/Cross/FileSystem/Paths/FilePathRegistry.h"

#include "Shared/Cross/FileSystem/Paths/FilePathUtil.h"
#include "Shared/Cross/FileSystem/Wildcard.h"

#include <algorithm>
#include <unordered_map>

void FilePath::Registry::Sort() {
    if (!m_IsDirty)
        return;
    std::ranges::sort(m_Aliases, {}, &Alias::name);
    m_IsDirty = false;
}

std::vector<FilePath::Registry::Alias>::iterator FilePath::Registry::FindAlias(std::string_view name) {
    Sort();
    const auto it =
        std::ranges::lower_bound(m_Aliases, name, {}, [](const Alias& a) { return std::string_view(a.name); });
    return it != m_Aliases.end() && it->name == name ? it : m_Aliases.end();
}

FilePath::Paths* FilePath::Registry::Find(std::string_view name) {
    const auto it = FindAlias(name);
    return it != m_Aliases.end() ? &it->paths : nullptr;
}

const std::vector<FilePath::Registry::Alias>& FilePath::Registry::GetAliases() {
    Sort();
    return m_Aliases;
}

bool FilePath::Registry::Add(const char* pAlias, Path path) {
    const std::string name = FoldCase(pAlias);
    Paths* pPaths = Find(name);
    if (!pPaths) {
        pPaths = &m_Aliases.emplace_back(Alias{.name = name, .paths = {}}).paths;
        m_IsDirty = true;
    }
    if (std::ranges::find(*pPaths, path.id, &Path::id) != pPaths->end()) {
        dbBreak();
        return false;
    }
    path.sourceID = ++m_LastSourceID;
    const auto at = std::ranges::partition_point(*pPaths, [&](const Path& p) { return p.priority > path.priority; });
    pPaths->insert(at, std::move(path));
    return true;
}

bool FilePath::Registry::Remove(const char* pAlias, const std::function<bool(const Path&)>& isWanted) {
    const auto alias = FindAlias(FoldCase(pAlias));
    if (alias == m_Aliases.end()) {
        dbWarningf("FILESYSTEM -- filepath failed to remove alias, missing alias '%s'", pAlias);
        return false;
    }
    const auto path = std::ranges::find_if(alias->paths, isWanted);
    if (path == alias->paths.end())
        return false;
    alias->paths.erase(path);
    // An alias without a source is no alias.
    if (alias->paths.empty())
        m_Aliases.erase(alias);
    return true;
}

bool FilePath::Registry::HasWatcher(std::string_view name) const {
    return std::ranges::find(m_Watchers, name, &Watcher::name) != m_Watchers.end();
}

bool FilePath::Registry::AddWatcher(const char* pName, WatchCallback callback) {
    const bool isUsable = pName && callback && !HasWatcher(pName);
    dbAssertText(isUsable, "pName && callback && !HasWatcher( pName )");
    if (isUsable)
        m_Watchers.push_back({.name = pName, .callback = std::move(callback)});
    return isUsable;
}

bool FilePath::Registry::RemoveWatcher(const char* pName) {
    return std::erase_if(m_Watchers, [&](const Watcher& watcher) { return watcher.name == pName; }) > 0;
}

void FilePath::Registry::PollChanges() {
    // Gathered first: a callback may add and remove sources and watchers. A source under several aliases tells once.
    std::vector<std::string> changed;
    std::unordered_map<Source*, std::vector<std::string>> told;
    for (const Alias& alias : GetAliases()) {
        for (const Path& path : alias.paths) {
            const auto [it, isNew] = told.try_emplace(path.pSource.get());
            if (isNew && !path.pSource->GetChanges(it->second))
                it->second.clear();
            for (const std::string& name : it->second)
                changed.push_back(alias.name + ":" + name);
        }
    }
    const std::vector<Watcher> watchers = changed.empty() ? std::vector<Watcher>() : m_Watchers;
    for (const std::string& name : changed)
        for (const Watcher& watcher : watchers)
            if (MatchesWildcard(watcher.name, name) && HasWatcher(watcher.name))
                watcher.callback(name.c_str());
}

void FilePath::Registry::AddListener(OpenListener& listener) { m_Listeners.push_back(&listener); }

void FilePath::Registry::RemoveListener(OpenListener& listener) { std::erase(m_Listeners, &listener); }

void FilePath::Registry::TellListeners(const char* pName, const char* pSourceId) {
    if (m_Listeners.empty())
        return;
    std::string alias;
    std::string path;
    FilePathUtil::SplitAlias(pName, alias, path);
    const std::vector<OpenListener*> listeners = m_Listeners; // one may remove itself, or another
    for (OpenListener* pListener : listeners)
        if (std::ranges::find(m_Listeners, pListener) != m_Listeners.end())
            pListener->OnOpen(pName, alias.c_str(), pSourceId);
}
