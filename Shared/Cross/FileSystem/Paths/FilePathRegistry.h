#pragma once

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/FileSystem/Paths/FilePath.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

// All aliases of the process, their watchers and listeners. Every open passes through Find, so it is a binary search;
// adding only appends, and the sort is paid once at the next look-up.
class FilePath::Registry {
public:
    struct Alias {
        std::string name; // upper case
        Paths paths;
    };

    // Null for an unknown alias; the name is in upper case. Good until the registry changes.
    Paths* Find(std::string_view name);
    const std::vector<Alias>& GetAliases();
    // The name may be in any case. Fills in the source's number.
    bool Add(const char* pAlias, Path path);
    bool Remove(const char* pAlias, const std::function<bool(const Path&)>& isWanted);

    bool AddWatcher(const char* pName, WatchCallback callback);
    bool RemoveWatcher(const char* pName);
    void PollChanges();

    void AddListener(OpenListener& listener);
    void RemoveListener(OpenListener& listener);
    void TellListeners(const char* pName, const char* pSourceId);

private:
    struct Watcher {
        std::string name;
        WatchCallback callback;
    };

    bool HasWatcher(std::string_view name) const;
    std::vector<Alias>::iterator FindAlias(std::string_view name);
    void Sort();

    std::vector<Alias> m_Aliases;
    bool m_IsDirty = false; // m_Aliases isn't in order
    uint32_t m_LastSourceID = SourceID::InvalidID;
    std::vector<Watcher> m_Watchers;
    std::vector<OpenListener*> m_Listeners; // borrowed
};
