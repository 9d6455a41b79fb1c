#include "Shared/PC/FileSystem/FolderWatch.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <memory>

#include <dirent.h>
#include <linux/magic.h>
#include <sys/inotify.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

namespace {

constexpr size_t s_QueueRead = 0x4000;
constexpr uint32_t s_NameEvents =
    IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR | IN_DONT_FOLLOW;
constexpr uint32_t s_FolderGone = IN_DELETE_SELF | IN_UNMOUNT | IN_IGNORED;

// File systems that nobody but this machine writes, so that every change passes by its kernel. False with errno set.
bool IsLocal(const std::string& folder) {
    constexpr std::array<int64_t, 8> local{
        EXT4_SUPER_MAGIC,      XFS_SUPER_MAGIC,  BTRFS_SUPER_MAGIC, TMPFS_MAGIC,
        OVERLAYFS_SUPER_MAGIC, F2FS_SUPER_MAGIC, RAMFS_MAGIC,       0x2FC12FC1 /* ZFS */};
    struct statfs facts {};
    if (statfs(folder.c_str(), &facts) != 0)
        return false;
    if (std::ranges::find(local, int64_t{facts.f_type}) != local.end())
        return true;
    errno = ENOTSUP;
    return false;
}

FolderWatch::What ToWhat(uint32_t mask) {
    if (mask & IN_Q_OVERFLOW)
        return FolderWatch::What::Lost;
    if (mask & s_FolderGone)
        return FolderWatch::What::Gone;
    if (mask & IN_MOVE_SELF)
        return FolderWatch::What::Moved;
    if (mask & (IN_CREATE | IN_MOVED_TO))
        return FolderWatch::What::There;
    return mask & IN_CLOSE_WRITE ? FolderWatch::What::Written : FolderWatch::What::Away;
}

bool IsFolder(const dirent& entry, const std::string& folder) {
    if (entry.d_type != DT_UNKNOWN)
        return entry.d_type == DT_DIR;
    struct stat facts {};
    return lstat((folder + "/" + entry.d_name).c_str(), &facts) == 0 && S_ISDIR(facts.st_mode);
}

bool IsLinkToFolder(const dirent& entry, const std::string& folder) {
    struct stat facts {};
    return (entry.d_type == DT_LNK || entry.d_type == DT_UNKNOWN) &&
           stat((folder + "/" + entry.d_name).c_str(), &facts) == 0 && S_ISDIR(facts.st_mode);
}

} // namespace

FolderWatch::~FolderWatch() { Close(); }

bool FolderWatch::Open() {
    if (m_Queue < 0)
        m_Queue = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    return m_Queue >= 0;
}

void FolderWatch::Close() {
    if (m_Queue >= 0)
        close(m_Queue);
    m_Queue = -1;
}

int FolderWatch::Add(const std::string& folder, Scope scope) {
    if (!IsLocal(folder))
        return -1;
    return inotify_add_watch(m_Queue, folder.c_str(), scope == Contents ? s_NameEvents | IN_CLOSE_WRITE : s_NameEvents);
}

void FolderWatch::Remove(int folder) { inotify_rm_watch(m_Queue, folder); }

bool FolderWatch::Poll(const std::function<void(const Event&)>& callback) {
    // What comes while we read is left for the next time, so that a busy folder can't hold us up for good.
    int queued = 0;
    if (ioctl(m_Queue, FIONREAD, &queued) != 0)
        return false;
    alignas(inotify_event) std::array<char, s_QueueRead> buffer;
    while (queued > 0) {
        const ssize_t size = read(m_Queue, buffer.data(), buffer.size());
        if (size < 0 && errno == EINTR)
            continue;
        if (size <= 0)
            return size < 0 && errno == EAGAIN;
        queued -= static_cast<int>(size);
        for (ssize_t at = 0; at < size;) {
            const auto& event = *reinterpret_cast<const inotify_event*>(buffer.data() + at);
            callback({.folder = event.wd,
                      .name = event.len == 0 ? std::string_view() : std::string_view(event.name),
                      .what = ToWhat(event.mask),
                      .isFolder = (event.mask & IN_ISDIR) != 0});
            at += static_cast<ssize_t>(sizeof(inotify_event) + event.len);
        }
    }
    return true;
}

void FolderWatch::List(const std::string& folder, const std::function<void(std::string_view, bool)>& tell) {
    const std::unique_ptr<DIR, int (*)(DIR*)> pFolder(opendir(folder.c_str()), closedir);
    if (!pFolder)
        return;
    while (const dirent* pEntry = readdir(pFolder.get())) {
        const std::string_view name = pEntry->d_name;
        if (name == "." || name == "..")
            continue;
        const bool isFolder = IsFolder(*pEntry, folder);
        if (isFolder || !IsLinkToFolder(*pEntry, folder))
            tell(name, isFolder);
    }
}
