#include "Shared/PC/Win32Util/ChildPipes_posix.h"

#include <cerrno>
#include <csignal>
#include <ctime>

#include <fcntl.h>
#include <unistd.h>

namespace {

// As long as one lives, writing to a pipe that nobody reads is an error of the call and not the end of the process.
class NoPipeSignal {
public:
    NoPipeSignal() {
        sigemptyset(&m_Signal);
        sigaddset(&m_Signal, SIGPIPE);
        sigset_t pending;
        sigemptyset(&pending);
        sigpending(&pending);
        m_WasPending = sigismember(&pending, SIGPIPE) == 1;
        pthread_sigmask(SIG_BLOCK, &m_Signal, &m_Before);
    }
    ~NoPipeSignal() {
        // Taken out, so that it doesn't arrive once it is let through again.
        const timespec atOnce{};
        if (!m_WasPending)
            while (sigtimedwait(&m_Signal, nullptr, &atOnce) < 0 && errno == EINTR) {
            }
        pthread_sigmask(SIG_SETMASK, &m_Before, nullptr);
    }
    NoPipeSignal(const NoPipeSignal&) = delete;
    NoPipeSignal& operator=(const NoPipeSignal&) = delete;

private:
    sigset_t m_Signal{};
    sigset_t m_Before{};
    bool m_WasPending = false;
};

bool IsForLater(int error) { return error == EAGAIN || error == EWOULDBLOCK; }

} // namespace

bool ChildPipe::Make(ChildPipe& readEnd, ChildPipe& writeEnd) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        return false;
    for (int& end : ends) {
        if (end > STDERR_FILENO)
            continue;
        const int moved = fcntl(end, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
        close(end);
        end = moved;
    }
    readEnd.m_Descriptor = ends[0];
    writeEnd.m_Descriptor = ends[1];
    return readEnd.IsOpen() && writeEnd.IsOpen();
}

void ChildPipe::Close() {
    if (IsOpen())
        close(m_Descriptor);
    m_Descriptor = -1;
}

void ChildPipe::DontBlock() const {
    if (IsOpen())
        fcntl(m_Descriptor, F_SETFL, fcntl(m_Descriptor, F_GETFL) | O_NONBLOCK);
}

size_t ChildPipe::Read(char* pRoom, size_t size) {
    ssize_t got;
    do
        got = read(m_Descriptor, pRoom, size);
    while (got < 0 && errno == EINTR);
    if (got > 0)
        return static_cast<size_t>(got);
    if (got == 0 || !IsForLater(errno))
        Close();
    return 0;
}

size_t ChildPipe::Write(std::string_view bytes) {
    if (bytes.empty())
        return 0;
    const NoPipeSignal guard;
    ssize_t written;
    do
        written = write(m_Descriptor, bytes.data(), bytes.size());
    while (written < 0 && errno == EINTR);
    if (written >= 0)
        return static_cast<size_t>(written);
    if (!IsForLater(errno))
        Close();
    return 0;
}
