#include "Shared/PC/FileSystem/FolderWatch.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include <linux/magic.h>
#include <sys/inotify.h>
#include <sys/vfs.h>
#include <unistd.h>

namespace {

constexpr size_t s_QueueRead = 0x4000;
constexpr uint32_t s_NameEvents =
    IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR | IN_DONT_FOLLOW;
constexpr uint32_t s_FolderGone = IN_Q_OVERFLOW | IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT | IN_IGNORED;

// File systems that nobody but this machine writes, so that every change passes by its kernel.
bool IsLocal(const std::string& folder) {
    constexpr std::array<int64_t, 8> local{
        EXT4_SUPER_MAGIC,      XFS_SUPER_MAGIC,  BTRFS_SUPER_MAGIC, TMPFS_MAGIC,
        OVERLAYFS_SUPER_MAGIC, F2FS_SUPER_MAGIC, RAMFS_MAGIC,       0x2FC12FC1 /* ZFS */};
    struct statfs facts {};
    return statfs(folder.c_str(), &facts) == 0 && std::ranges::find(local, int64_t{facts.f_type}) != local.end();
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

void FolderWatch::Poll(const std::function<void(const Event&)>& callback) {
    alignas(inotify_event) std::array<char, s_QueueRead> buffer;
    for (;;) {
        const ssize_t size = read(m_Queue, buffer.data(), buffer.size());
        if (size <= 0)
            return;
        for (ssize_t at = 0; at < size;) {
            const auto& event = *reinterpret_cast<const inotify_event*>(buffer.data() + at);
            const bool gone = (event.mask & s_FolderGone) != 0;
            callback({.folder = event.wd,
                      .name = gone || event.len == 0 ? std::string_view() : std::string_view(event.name),
                      .isThere = (event.mask & (IN_CREATE | IN_MOVED_TO)) != 0,
                      .isWritten = (event.mask & IN_CLOSE_WRITE) != 0});
            at += static_cast<ssize_t>(sizeof(inotify_event) + event.len);
        }
    }
}
