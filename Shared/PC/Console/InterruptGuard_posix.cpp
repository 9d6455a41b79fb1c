#include "Shared/PC/Console/InterruptGuard.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr std::array s_Signals = {SIGINT, SIGTERM, SIGHUP, SIGQUIT};

// What tells one state of a file from another. Fixed storage, because a signal handler reads it.
struct FileState {
    bool there = false;
    ino_t node = 0;
    off_t size = 0;
    timespec written{};
};

struct GuardedFile {
    char path[4096] = {};
    FileState before;
};

struct Guarded {
    GuardedFile file;
    GuardedFile unfinished;
    std::array<struct sigaction, s_Signals.size()> actions{};
    struct sigaction sizeAction {};
};

Guarded s_Guarded;
const InterruptGuard* s_pOwner = nullptr;

FileState Look(const char* pPath) {
    struct stat facts {};
    if (stat(pPath, &facts) != 0)
        return {};
    return {.there = true, .node = facts.st_ino, .size = facts.st_size, .written = facts.st_mtim};
}

void Guard(GuardedFile& file, const std::string& path) {
    std::memcpy(file.path, path.c_str(), path.size() + 1);
    file.before = Look(file.path);
}

bool IsChanged(const GuardedFile& file) {
    const FileState now = Look(file.path);
    const FileState& before = file.before;
    return now.there && (!before.there || now.node != before.node || now.size != before.size ||
                         now.written.tv_sec != before.written.tv_sec || now.written.tv_nsec != before.written.tv_nsec);
}

bool IsReplaced(const GuardedFile& file) { return file.before.there && Look(file.path).node != file.before.node; }

// Only calls that are safe in a signal handler: stat, unlink, signal, raise.
void OnInterrupt(int number) {
    if (IsChanged(s_Guarded.unfinished))
        unlink(s_Guarded.unfinished.path);
    if (IsChanged(s_Guarded.file) && !IsReplaced(s_Guarded.file))
        unlink(s_Guarded.file.path);
    std::signal(number, SIG_DFL);
    std::raise(number);
}

} // namespace

InterruptGuard::InterruptGuard(const std::string& nativePath, const std::string& nativeUnfinished) {
    if (s_pOwner || std::max(nativePath.size(), nativeUnfinished.size()) >= sizeof(GuardedFile::path))
        return;
    s_pOwner = this;
    Guard(s_Guarded.file, nativePath);
    Guard(s_Guarded.unfinished, nativeUnfinished);
    struct sigaction action {};
    action.sa_handler = OnInterrupt;
    for (size_t i = 0; i < s_Signals.size(); ++i) {
        sigaction(s_Signals[i], nullptr, &s_Guarded.actions[i]);
        // What a parent told this process to ignore (nohup) stays ignored.
        if (s_Guarded.actions[i].sa_handler != SIG_IGN)
            sigaction(s_Signals[i], &action, nullptr);
    }
    // A file over the user's limit is a write that fails, like one on a full disk.
    struct sigaction ignore {};
    ignore.sa_handler = SIG_IGN;
    sigaction(SIGXFSZ, &ignore, &s_Guarded.sizeAction);
}

InterruptGuard::~InterruptGuard() {
    if (s_pOwner != this)
        return;
    for (size_t i = 0; i < s_Signals.size(); ++i)
        sigaction(s_Signals[i], &s_Guarded.actions[i], nullptr);
    sigaction(SIGXFSZ, &s_Guarded.sizeAction, nullptr);
    s_pOwner = nullptr;
}

bool InterruptGuard::IsTouched() const { return s_pOwner == this && IsChanged(s_Guarded.file); }
