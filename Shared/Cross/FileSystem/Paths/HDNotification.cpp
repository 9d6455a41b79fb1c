#include "Shared/Cross/FileSystem/Paths/HDNotification.h"

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/PC/FileSystem/OSFile.h"

#include <algorithm>
#include <cerrno>
#include <unordered_set>

namespace {

// Whether alias paths can express a name, and open what it stands for.
bool IsUsable(std::string_view folder, std::string_view name) {
    return name.find_first_of("\\:") == std::string_view::npos && folder.size() + name.size() < FilePath::MAXPATH;
}

} // namespace

// The names of one GetChanges.
class HDNotification::Changes {
public:
    explicit Changes(std::vector<std::string>& names) : m_Names(names) {}

    // False when there are too many.
    bool Add(std::string name) {
        if (m_Known.size() >= s_MostChanges)
            return m_Known.contains(name);
        if (m_Known.insert(name).second)
            m_Names.push_back(std::move(name));
        return true;
    }

    bool IsEmpty() const { return m_Known.empty(); }

private:
    std::vector<std::string>& m_Names;
    std::unordered_set<std::string> m_Known;
};

HDNotification::HDNotification(const std::string& root) : m_Root(root.ends_with('\\') ? root : root + '\\') {
    Start(nullptr);
}

bool HDNotification::GetChanges(std::vector<std::string>& names) {
    Changes changes(names);
    if (!m_Watch.IsOpen())
        return Start(&changes);
    if (!m_Watch.Poll([&](const FolderWatch::Event& event) { Apply(event, changes); })) {
        ReportRequest("", errno);
        m_IsRootGone = true;
    }
    return (!m_IsRootGone && !m_IsLost) || Restart(changes);
}

// Watches all anew, after changes that weren't seen one by one.
bool HDNotification::Restart(Changes& changes) {
    const bool wasGone = m_IsRootGone;
    if (!wasGone)
        dbWarningf("NOTIFIER - Data discarded by system due to overflow - files have been modified but which ones are "
                   "unknown");
    Stop();
    return Start(wasGone ? &changes : nullptr) || !changes.IsEmpty();
}

bool HDNotification::Start(Changes* pChanges) {
    // Each time, since a root that comes back may be spelled otherwise.
    m_NativeRoot = OSFile::ToNative(m_Root);
    if (!m_NativeRoot.empty() && !m_NativeRoot.ends_with('/'))
        m_NativeRoot += '/';
    if (m_Watch.Open())
        WatchTree("", pChanges);
    if (!m_Folders.empty()) {
        dbWarningf("NOTIFIER - Handle created for directory %s - %#x", m_Root.c_str(),
                   static_cast<unsigned>(m_Watch.GetHandle()));
        m_IsStartReported = false;
        return true;
    }
    if (!m_IsStartReported)
        dbWarningf("NOTIFIER - Unable to create handle for directory %s, error code: %#x.", m_Root.c_str(),
                   static_cast<unsigned>(errno));
    m_IsStartReported = true;
    Stop();
    return false;
}

void HDNotification::Stop() {
    m_Watch.Close();
    m_ByNumber.clear();
    m_Folders.clear();
    m_IsRootGone = false;
    m_IsLost = false;
    m_IsRequestReported = false;
}

void HDNotification::Apply(const FolderWatch::Event& event, Changes& changes) {
    using enum FolderWatch::What;
    if (event.what == Lost) {
        m_IsLost = true;
        return;
    }
    // What is left in the queue of a folder that we have given up.
    const auto known = m_ByNumber.find(event.folder);
    if (known == m_ByNumber.end())
        return;
    const Folders::iterator folder = known->second;
    if (event.what == Gone || event.what == Moved) {
        // A move below the root has been told by the folders that it was between.
        if (folder->first.empty())
            ApplyToRoot(event.what);
        else if (event.what == Gone)
            Forget(folder);
        return;
    }
    if (!IsUsable(folder->first, event.name))
        return;
    const std::string name = folder->first + std::string(event.name);
    if (!event.isFolder)
        m_IsLost = !changes.Add(name) || m_IsLost;
    else if (event.what == There)
        WatchTree(name + '\\', &changes);
    else if (event.what == Away)
        ForgetTree(name + '\\');
}

void HDNotification::ApplyToRoot(FolderWatch::What what) {
    if (!m_IsRootGone)
        ReportRequest("", what == FolderWatch::What::Gone ? ENOENT : ESTALE);
    m_IsRootGone = true;
}

// The folder and all below it. It is watched before it is read, so that no file is missed in between; one that is told
// twice counts once.
void HDNotification::WatchTree(const std::string& folder, Changes* pChanges) {
    if (!WatchFolder(folder))
        return;
    std::vector<std::string> folders;
    std::vector<std::string> files;
    FolderWatch::List(ToNative(folder), [&](std::string_view name, bool isFolder) {
        const bool fits = isFolder ? folders.size() <= s_MostFolders : pChanges && files.size() <= s_MostChanges;
        if (fits && IsUsable(folder, name))
            (isFolder ? folders : files).push_back(folder + std::string(name));
    });
    std::ranges::sort(files);
    for (std::string& file : files)
        m_IsLost = !pChanges->Add(std::move(file)) || m_IsLost;
    std::ranges::sort(folders);
    for (const std::string& below : folders)
        WatchTree(below + '\\', pChanges);
}

// False for a folder that is watched already, can't be watched or has gone meanwhile.
bool HDNotification::WatchFolder(const std::string& folder) {
    const bool isRoot = folder.empty();
    std::string native = ToNative(folder);
    // With a slash at its end, the root may be a link.
    if (!isRoot)
        native.pop_back();
    errno = ENOSPC;
    const int number = m_Folders.size() < s_MostFolders ? m_Watch.Add(native, FolderWatch::Contents) : -1;
    if (number < 0) {
        if (!isRoot && errno != ENOENT && errno != ENOTDIR && !m_IsRequestReported) {
            ReportRequest(folder, errno);
            m_IsRequestReported = true;
        }
        return false;
    }
    const auto known = m_ByNumber.find(number);
    if (known != m_ByNumber.end() && known->second->first == folder)
        return false;
    Register(folder, number);
    return true;
}

void HDNotification::Register(const std::string& folder, int number) {
    // The same folder under the path that it had before, and another one that had this path.
    if (const auto it = m_ByNumber.find(number); it != m_ByNumber.end())
        m_Folders.erase(it->second);
    const auto [it, isNew] = m_Folders.try_emplace(folder, number);
    if (!isNew) {
        m_ByNumber.erase(it->second);
        it->second = number;
    }
    m_ByNumber[number] = it;
}

void HDNotification::Forget(Folders::iterator folder) {
    m_ByNumber.erase(folder->second);
    m_Folders.erase(folder);
}

void HDNotification::ForgetTree(const std::string& folder) {
    for (auto it = m_Folders.lower_bound(folder); it != m_Folders.end() && it->first.starts_with(folder);) {
        m_Watch.Remove(it->second);
        Forget(it++);
    }
}

std::string HDNotification::ToNative(const std::string& folder) const {
    std::string native = m_NativeRoot + folder;
    std::replace(native.begin() + static_cast<ptrdiff_t>(m_NativeRoot.size()), native.end(), '\\', '/');
    return native;
}

void HDNotification::ReportRequest(const std::string& folder, int error) {
    dbWarningf("NOTIFIER - Error requesting notifications for %s, error code: %#x.", (m_Root + folder).c_str(),
               static_cast<unsigned>(error));
}
