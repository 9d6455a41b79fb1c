#pragma once

#include "Shared/PC/FileSystem/FolderWatch.h"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

// Knows which files below a folder on disk have changed. The system gathers the changes; what is kept here is the list
// of folders, whatever happens between two calls.
//
// A file has changed when it was created, written and closed, deleted, or renamed, which changes the old name and the
// new one. Folders aren't told of. When one comes in, the files in it have changed; when one goes as a whole by a move,
// the files in it aren't told of. Links to folders aren't followed.
class HDNotification {
public:
    // The most files of one GetChanges; beyond them it isn't known which.
    static constexpr uint32_t s_MostChanges = 0x4000;
    static constexpr uint32_t s_MostFolders = 0x10000;

    // The root in the system's form. Whether it can be watched is logged.
    explicit HDNotification(const std::string& root);

    // Puts the files that have changed since the last call behind the names: relative to the root, with backslashes and
    // in their actual spelling, each once, in the order in which they changed. False when nothing is known, since the
    // root is gone or can't be watched. It is looked for again in each call, and all its files have changed then.
    bool GetChanges(std::vector<std::string>& names);

private:
    class Changes;
    // Relative to the root, with a backslash at its end, and empty for the root; with the number of its watch. In
    // order, so that all that lies below a folder follows it.
    using Folders = std::map<std::string, int, std::less<>>;

    bool Start(Changes* pChanges);
    void Stop();
    bool Restart(Changes& changes);
    void Apply(const FolderWatch::Event& event, Changes& changes);
    void ApplyToRoot(FolderWatch::What what);
    void WatchTree(const std::string& folder, Changes* pChanges);
    bool WatchFolder(const std::string& folder);
    void Register(const std::string& folder, int number);
    void Forget(Folders::iterator folder);
    void ForgetTree(const std::string& folder);
    std::string ToNative(const std::string& folder) const;
    void ReportRequest(const std::string& folder, int error);

    std::string m_Root;       // with a backslash at its end
    std::string m_NativeRoot; // with a slash at its end
    FolderWatch m_Watch;      // closed while the root can't be watched
    Folders m_Folders;
    std::unordered_map<int, Folders::iterator> m_ByNumber;
    bool m_IsRootGone = false;
    bool m_IsLost = false;            // some changes are unknown
    bool m_IsStartReported = false;   // that the root can't be watched
    bool m_IsRequestReported = false; // that folders below it can't
};
