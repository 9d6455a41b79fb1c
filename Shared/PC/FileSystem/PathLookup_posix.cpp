#include "Shared/PC/FileSystem/PathLookup.h"

#include "Shared/Cross/FileSystem/Wildcard.h"
#include "Shared/Cross/Util/Hash.h"
#include "Shared/PC/FileSystem/NativePath.h"

#include <algorithm>
#include <cstddef>
#include <new>

#include <dirent.h>
#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// A program that looks for a few files never pays for the watch.
constexpr uint32_t s_ReadsBeforeWatching = 16;
// More spellings of folders than any project has; a bound on memory.
constexpr size_t s_MostFolders = 100'000;

struct Split {
    std::string_view folder; // without the slash, so that the root is empty
    std::string_view name;
};

Split SplitLast(std::string_view path) {
    const size_t slash = path.rfind('/');
    return {path.substr(0, slash), path.substr(slash + 1)};
}

std::string Join(std::string_view folder, std::string_view name) {
    std::string path;
    path.reserve(folder.size() + 1 + name.size());
    return path.append(folder).append(1, '/').append(name);
}

bool IsThere(const std::string& path) { return access(path.empty() ? "/" : path.c_str(), F_OK) == 0; }

template <typename Callback>
void ForEachName(const std::string& folder, Callback callback) {
    const std::unique_ptr<DIR, int (*)(DIR*)> pFolder(opendir(folder.empty() ? "/" : folder.c_str()), closedir);
    if (!pFolder)
        return;
    while (const dirent* pEntry = readdir(pFolder.get()))
        callback(std::string_view(pEntry->d_name));
}

} // namespace

PathLookup& PathLookup::Get() {
    // The object is never destroyed, since other static objects may look for files until the very end. What it holds
    // is given back with the program, or with the module that has it.
    struct Emptier {
        ~Emptier() { Get().Forget(); }
    };
    alignas(PathLookup) static std::byte s_Memory[sizeof(PathLookup)];
    static PathLookup* const s_pInstance = [] {
        pthread_atfork(nullptr, nullptr, [] { Get().m_MustForget = true; });
        return new (s_Memory) PathLookup;
    }();
    static const Emptier s_Emptier;
    return *s_pInstance;
}

std::string PathLookup::Guess(const std::string& asked) {
    const std::lock_guard lock(m_Mutex);
    Synchronise();
    if (m_Folders.empty())
        return asked;
    const Split split = SplitLast(asked);
    const auto it = m_Folders.find(split.folder);
    if (it == m_Folders.end())
        return asked;
    const std::string* pName = it->second->pSpellings ? Choose(*it->second->pSpellings, split.name) : nullptr;
    return Join(it->second->path, pName ? *pName : split.name);
}

std::string PathLookup::Find(const std::string& asked) {
    const std::lock_guard lock(m_Mutex);
    Synchronise();
    return StartWatching() ? FindInWatched(asked) : FindByReading(asked);
}

std::string PathLookup::FindInWatched(std::string_view asked) {
    const Split split = SplitLast(asked);
    if (split.name.empty())
        return "/";
    const FolderResult result = FindFolder(split.folder);
    if (result.outcome == Outcome::Unwatched)
        return FindByReading(asked);
    if (result.outcome == Outcome::Missing)
        return Join(FindInWatched(split.folder), split.name);
    const std::string name = FindIn(*result.pFolder, split.name);
    return Join(result.pFolder->path, name.empty() ? split.name : name);
}

bool PathLookup::StartWatching() {
    if (m_Watch.IsOpen())
        return true;
    return m_FoldersRead >= s_ReadsBeforeWatching && m_Watch.Open();
}

// Takes in what has happened on disk since the last look.
void PathLookup::Synchronise() {
    if (m_Watch.IsOpen() && !m_MustForget)
        m_Watch.Poll([this](const FolderWatch::Event& event) { Apply(event); });
    if (m_MustForget || m_Folders.size() > s_MostFolders)
        Forget();
}

void PathLookup::Apply(const FolderWatch::Event& event) {
    const auto it = m_Watched.find(event.folder);
    if (event.name.empty() || it == m_Watched.end()) {
        m_MustForget = true;
        return;
    }
    Folder& folder = *it->second;
    const std::string folded = FoldCase(event.name);
    // Rare enough to start anew: a folder on the way to others has come, gone or got a rival of another spelling.
    if (folder.used.contains(folded)) {
        m_MustForget = true;
        return;
    }
    if (!folder.pSpellings)
        return;
    std::vector<std::string>& spellings = (*folder.pSpellings)[folded];
    std::erase(spellings, event.name);
    if (event.what == FolderWatch::What::There)
        spellings.emplace_back(event.name);
    if (spellings.empty())
        folder.pSpellings->erase(folded);
}

void PathLookup::Forget() {
    m_MustForget = false;
    m_Folders = decltype(m_Folders)();
    m_Watched = decltype(m_Watched)();
    m_Watch.Close(); // the next Find opens it again
}

PathLookup::FolderResult PathLookup::FindFolder(std::string_view asked) {
    if (const auto it = m_Folders.find(asked); it != m_Folders.end())
        return {Outcome::Found, it->second};
    FolderResult result;
    if (asked.empty()) {
        result = Watch("");
    } else {
        const Split split = SplitLast(asked);
        const FolderResult parent = FindFolder(split.folder);
        if (parent.outcome != Outcome::Found)
            return parent;
        const std::string name = FindIn(*parent.pFolder, split.name);
        if (name.empty())
            return {};
        result = EnterFolder(*parent.pFolder, name);
    }
    if (result.outcome == Outcome::Found)
        m_Folders[std::string(asked)] = result.pFolder;
    return result;
}

PathLookup::FolderResult PathLookup::EnterFolder(Folder& parent, const std::string& name) {
    const std::string path = Join(parent.path, name);
    struct stat facts {};
    if (lstat(path.c_str(), &facts) != 0)
        return {};
    parent.used.insert(FoldCase(name));
    if (S_ISDIR(facts.st_mode))
        return Watch(path);
    if (!S_ISLNK(facts.st_mode))
        return {};
    // A link is left for where it leads to, since all folders on the way have to be watched.
    const std::string real = GetRealPath(path);
    return real.empty() ? FolderResult{} : FindFolder(real == "/" ? "" : real);
}

PathLookup::FolderResult PathLookup::Watch(const std::string& path) {
    const int watch = m_Watch.Add(path.empty() ? "/" : path, FolderWatch::Names);
    if (watch < 0)
        return {Outcome::Unwatched, nullptr};
    auto& pFolder = m_Watched[watch];
    if (!pFolder)
        pFolder = std::make_unique<Folder>(Folder{.path = path, .used = {}, .pSpellings = nullptr});
    // The same folder mounted at two places has one number for both.
    if (pFolder->path != path)
        return {Outcome::Unwatched, nullptr};
    return {Outcome::Found, pFolder.get()};
}

// Empty when the folder has no such name.
std::string PathLookup::FindIn(Folder& folder, std::string_view name) {
    if (!folder.pSpellings) {
        struct stat facts {};
        if (lstat(Join(folder.path, name).c_str(), &facts) == 0)
            return std::string(name);
        folder.pSpellings = std::make_unique<Spellings>();
        ForEachName(folder.path,
                    [&](std::string_view found) { (*folder.pSpellings)[FoldCase(found)].emplace_back(found); });
    }
    const std::string* pName = Choose(*folder.pSpellings, name);
    return pName ? *pName : "";
}

// Null when there is no such name.
const std::string* PathLookup::Choose(const Spellings& spellings, std::string_view name) {
    const auto it = spellings.find(FoldCase(name));
    if (it == spellings.end())
        return nullptr;
    const auto exact = std::ranges::find(it->second, name);
    return exact != it->second.end() ? &*exact : &*std::ranges::min_element(it->second);
}

std::string PathLookup::FindByReading(std::string_view asked) {
    const Split last = SplitLast(asked);
    std::string folder(last.folder);
    std::string_view rest = asked.substr(folder.size());
    if (!IsThere(folder)) {
        folder.clear();
        rest = asked;
    }
    while (!rest.empty()) {
        const size_t end = rest.find('/', 1);
        const std::string_view name = rest.substr(1, end == std::string_view::npos ? end : end - 1);
        std::string exact = Join(folder, name);
        if (IsThere(exact)) {
            folder = std::move(exact);
        } else {
            const std::string found = FindInUnwatched(folder, name);
            if (found.empty())
                return folder.append(rest);
            folder = Join(folder, found);
        }
        rest.remove_prefix(std::min(end, rest.size()));
    }
    return folder.empty() ? "/" : folder;
}

std::string PathLookup::FindInUnwatched(const std::string& folder, std::string_view name) {
    ++m_FoldersRead;
    std::string best;
    ForEachName(folder, [&](std::string_view found) {
        if (EqualNoCase(found, name) && (best.empty() || found < best))
            best = found;
    });
    return best;
}
