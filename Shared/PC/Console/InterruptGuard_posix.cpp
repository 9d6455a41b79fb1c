#include "Shared/PC/Console/InterruptGuard.h"

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

struct Guarded {
    char path[4096] = {};
    FileState before;
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

bool IsChanged() {
    const FileState now = Look(s_Guarded.path);
    const FileState& before = s_Guarded.before;
    return now.there && (!before.there || now.node != before.node || now.size != before.size ||
                         now.written.tv_sec != before.written.tv_sec || now.written.tv_nsec != before.written.tv_nsec);
}

// Only calls that are safe in a signal handler: stat, unlink, signal, raise.
void OnInterrupt(int number) {
    if (IsChanged())
        unlink(s_Guarded.path);
    std::signal(number, SIG_DFL);
    std::raise(number);
}

} // namespace

InterruptGuard::InterruptGuard(const std::string& nativePath) {
    if (s_pOwner || nativePath.size() >= sizeof(s_Guarded.path))
        return;
    s_pOwner = this;
    std::memcpy(s_Guarded.path, nativePath.c_str(), nativePath.size() + 1);
    s_Guarded.before = Look(s_Guarded.path);
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

bool InterruptGuard::IsTouched() const { return s_pOwner == this && IsChanged(); }
