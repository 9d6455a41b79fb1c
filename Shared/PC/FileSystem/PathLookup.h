#pragma once

#include "Shared/PC/FileSystem/FolderWatch.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

// Finds the actual spelling of native paths: absolute, with single slashes and without dots. The exact spelling of a
// component wins; otherwise it is any that differs in case only, the first in the order of bytes if there are several.
//
// Few look-ups are done by reading the folders on the way. When there are many, each folder is read once and watched
// from then on, so that a look-up costs one system call, and what is remembered is never older than that call. Folders
// that can't be watched are read each time. Safe to be used by any thread.
class PathLookup {
public:
    // The one of the process.
    static PathLookup& Get();

    // The path in its actual spelling as far as that is known without a look at the disk: what to try first.
    std::string Guess(const std::string& asked);
    // The path in its actual spelling. From the first component that doesn't exist on it is as asked.
    std::string Find(const std::string& asked);

private:
    struct TextHash {
        using is_transparent = void;
        size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
    };
    using Spellings = std::unordered_map<std::string, std::vector<std::string>>; // by folded name

    struct Folder {
        std::string path;                      // without a slash at its end, so that the root is empty
        std::unordered_set<std::string> used;  // folded names of subfolders that m_Folders relies on
        std::unique_ptr<Spellings> pSpellings; // null until asked for
    };
    enum class Outcome { Found, Missing, Unwatched };
    struct FolderResult {
        Outcome outcome = Outcome::Missing;
        Folder* pFolder = nullptr;
    };

    void Synchronise();
    void Apply(const FolderWatch::Event& event);
    void Forget();
    bool StartWatching();
    FolderResult FindFolder(std::string_view asked);
    FolderResult EnterFolder(Folder& parent, const std::string& name);
    FolderResult Watch(const std::string& path);
    std::string FindIn(Folder& folder, std::string_view name);
    static const std::string* Choose(const Spellings& spellings, std::string_view name);
    std::string FindInWatched(std::string_view asked);
    std::string FindByReading(std::string_view asked);
    std::string FindInUnwatched(const std::string& folder, std::string_view name);

    std::mutex m_Mutex;
    FolderWatch m_Watch;
    std::unordered_map<int, std::unique_ptr<Folder>> m_Watched;
    std::unordered_map<std::string, Folder*, TextHash, std::equal_to<>> m_Folders; // by the spelling that was asked for
    // Also set in a copy of the process, made by fork: it shares its parent's queue of events and has to leave it
    // alone.
    bool m_MustForget = false;
    uint32_t m_FoldersRead = 0; // by plain reading
};
