#include "Shared/PC/Win32Util/NamedPipe.h"

#include "Shared/Cross/Debug/db.h"
#include "Shared/PC/Win32Util/PipeFolder_posix.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <thread>
#include <vector>

#include <linux/sockios.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr milliseconds s_BusyLimit{2000};
constexpr milliseconds s_PollSlice{20};
constexpr int s_NoLimit = -1;
// A packet has to fit the socket's buffer; a longer message goes as a file in memory, whose descriptor is passed.
constexpr uint32_t s_MaxPacket = 0x10000;
constexpr size_t s_DropSize = 1024;
constexpr uint32_t s_RoomLimit = 0x10000; // less than half of what a socket holds by default

short PollFor(int descriptor, short events, int limit) {
    pollfd entry{descriptor, events, 0};
    int count;
    do
        count = poll(&entry, 1, limit);
    while (count < 0 && errno == EINTR && limit == s_NoLimit);
    return count > 0 ? entry.revents : short{0};
}

// The room for one descriptor beside a packet.
struct Control {
    alignas(cmsghdr) char bytes[CMSG_SPACE(sizeof(int))] = {};
};

bool SendPacket(int socket, const void* pData, size_t length, int passed) {
    Control control;
    iovec part{const_cast<void*>(pData), length};
    msghdr packet{};
    packet.msg_iov = &part;
    packet.msg_iovlen = 1;
    if (passed >= 0) {
        packet.msg_control = control.bytes;
        packet.msg_controllen = sizeof control.bytes;
        cmsghdr* pHeader = CMSG_FIRSTHDR(&packet);
        pHeader->cmsg_level = SOL_SOCKET;
        pHeader->cmsg_type = SCM_RIGHTS;
        pHeader->cmsg_len = CMSG_LEN(sizeof passed);
        std::memcpy(CMSG_DATA(pHeader), &passed, sizeof passed);
    }
    for (;;) {
        const ssize_t sent = sendmsg(socket, &packet, MSG_NOSIGNAL | MSG_DONTWAIT);
        if (sent >= 0) {
            const auto nLen = static_cast<ssize_t>(length);
            const ssize_t bytes = sent;
            dbAssert(nLen == bytes);
            return nLen == bytes;
        }
        if (errno == EAGAIN)
            PollFor(socket, POLLOUT, s_NoLimit);
        else if (errno != EINTR)
            return false;
    }
}

// The descriptor that came beside a packet.
Descriptor TakePassed(msghdr& packet) {
    const cmsghdr* pHeader = CMSG_FIRSTHDR(&packet);
    int passed = -1;
    if (pHeader && pHeader->cmsg_level == SOL_SOCKET && pHeader->cmsg_type == SCM_RIGHTS)
        std::memcpy(&passed, CMSG_DATA(pHeader), sizeof passed);
    return Descriptor(passed);
}

Descriptor MakeMemoryFile(const void* pData, uint32_t length) {
    Descriptor file(memfd_create("message", MFD_CLOEXEC));
    const auto* pBytes = static_cast<const char*>(pData);
    for (uint32_t done = 0; file && done < length;) {
        const ssize_t written = write(file.Get(), pBytes + done, length - done);
        if (written > 0)
            done += static_cast<uint32_t>(written);
        else if (errno != EINTR)
            file.Set(-1);
    }
    return file;
}

enum class Arrival { Nothing, Message, End };

Arrival Look(int socket) {
    char first;
    ssize_t size;
    // The first answer may be that the other side went without having read all; what it sent stands behind that.
    do
        size = recv(socket, &first, sizeof first, MSG_PEEK | MSG_DONTWAIT);
    while (size < 0 && (errno == EINTR || errno == ECONNRESET));
    if (size > 0)
        return Arrival::Message;
    return size < 0 && errno == EAGAIN ? Arrival::Nothing : Arrival::End;
}

bool IsNameOfPipe(const std::string& name) {
    return !name.empty() && name.front() != '.' && name.find_first_of("/\\") == std::string::npos;
}

} // namespace

// What of it was taken; its bytes are here or in a file.
struct NamedPipe::Message {
    std::vector<char> bytes;
    Descriptor file;
    uint64_t size = 0;
    uint64_t position = 0;

    // False when a file that was passed turns out to be another.
    bool Take(void* pBuffer, uint32_t count) {
        if (file) {
            const ssize_t taken = pread(file.Get(), pBuffer, count, static_cast<off_t>(position));
            if (taken != static_cast<ssize_t>(count))
                return false;
        } else if (count > 0) {
            std::memcpy(pBuffer, bytes.data() + position, count);
        }
        position += count;
        return true;
    }
};

NamedPipe::NamedPipe(const std::string& name, Role role, const std::string& machine)
    : m_Name(name), m_Machine(role == Role::Client ? machine : ""), m_Role(role) {
    m_Path = "\\\\" + (m_Machine.empty() ? "." : m_Machine) + "\\pipe\\" + name;
}

NamedPipe::~NamedPipe() { Close(); }

bool NamedPipe::Open() {
    if (IsOpen() || !IsNameOfPipe(m_Name) || (!m_Machine.empty() && m_Machine != "."))
        return false;
    return m_Role == Role::Server ? OpenServer() : OpenClient();
}

bool NamedPipe::OpenServer() {
    PipeFolder folder;
    if (!folder.Open())
        return false;
    folder.ClearStale(m_Name);
    Descriptor listener;
    if (!folder.Offer(m_Name, listener, m_Offer)) {
        Withdraw();
        return false;
    }
    m_hPipe = listener.Release();
    return true;
}

bool NamedPipe::OpenClient() {
    PipeFolder folder;
    if (!folder.Open())
        return false;
    for (const auto end = Clock::now() + s_BusyLimit;;) {
        bool busy = false;
        std::vector<std::string> offers = folder.FindOffers(m_Name, getppid());
        if (offers.empty())
            offers = folder.FindOffers(m_Name, getpid());
        for (const std::string& offer : offers) {
            Descriptor socket;
            if (folder.Connect(offer, socket)) {
                folder.Withdraw(offer);
                m_hPipe = socket.Release();
                return true;
            }
            busy |= errno == EAGAIN;
        }
        if (!busy || Clock::now() >= end)
            return false;
        std::this_thread::sleep_for(s_PollSlice);
    }
}

bool NamedPipe::Connect(const std::function<bool()>& keepsWaiting) {
    dbAssert(!m_bConnecting);
    dbAssert(!m_bConnected);
    dbAssertText(IsOpen(), "m_hPipe");
    if (m_bConnecting || m_bConnected || !IsOpen())
        return false;
    if (m_Role == Role::Client) {
        m_bConnected = true;
        return true;
    }
    m_bConnecting = true;
    do {
        if ((PollFor(m_hPipe, POLLIN, static_cast<int>(s_PollSlice.count())) & POLLIN) != 0 && Accept())
            break;
    } while (!keepsWaiting || keepsWaiting());
    m_bConnecting = false;
    return m_bConnected;
}

bool NamedPipe::Accept() {
    const int socket = accept4(m_hPipe, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
    if (socket < 0)
        return false;
    close(m_hPipe);
    m_hPipe = socket;
    m_bConnected = true;
    Withdraw();
    return true;
}

void NamedPipe::Withdraw() {
    PipeFolder folder;
    if (!m_Offer.empty() && folder.Open())
        folder.Withdraw(m_Offer);
    m_Offer.clear();
}

bool NamedPipe::Peek(bool& hasData) {
    hasData = false;
    if (!m_bConnected)
        return false;
    const Arrival arrival = m_pMessage ? Arrival::Message : Look(m_hPipe);
    hasData = arrival == Arrival::Message;
    return arrival != Arrival::End;
}

bool NamedPipe::Wait(milliseconds limit) {
    return m_pMessage || !m_bConnected || PollFor(m_hPipe, POLLIN | POLLRDHUP, static_cast<int>(limit.count())) != 0;
}

bool NamedPipe::Write(const void* pData, uint32_t length) {
    if (!m_bConnected || length == 0) // to the reader an empty message would be the end
        return false;
    if (length <= s_MaxPacket)
        return SendPacket(m_hPipe, pData, length, -1);
    const Descriptor file = MakeMemoryFile(pData, length);
    constexpr char mark = 0; // a packet has to hold something
    return file && SendPacket(m_hPipe, &mark, sizeof mark, file.Get());
}

bool NamedPipe::ReceiveMessage() {
    Arrival arrival;
    while ((arrival = Look(m_hPipe)) == Arrival::Nothing)
        PollFor(m_hPipe, POLLIN | POLLRDHUP, s_NoLimit);
    if (arrival == Arrival::End)
        return false;
    char none;
    const ssize_t size = recv(m_hPipe, &none, 0, MSG_PEEK | MSG_TRUNC | MSG_DONTWAIT);
    if (size < 0)
        return false;
    auto pMessage = std::make_unique<Message>();
    pMessage->bytes.resize(static_cast<size_t>(size));
    Control control;
    iovec part{pMessage->bytes.data(), pMessage->bytes.size()};
    msghdr packet{};
    packet.msg_iov = &part;
    packet.msg_iovlen = 1;
    packet.msg_control = control.bytes;
    packet.msg_controllen = sizeof control.bytes;
    if (recvmsg(m_hPipe, &packet, MSG_DONTWAIT | MSG_CMSG_CLOEXEC) != size)
        return false;
    pMessage->size = pMessage->bytes.size();
    pMessage->file = TakePassed(packet);
    if (pMessage->file) {
        struct stat facts {};
        // Nothing but a plain file is sure not to have a reader wait.
        if (fstat(pMessage->file.Get(), &facts) != 0 || !S_ISREG(facts.st_mode))
            return false;
        pMessage->size = static_cast<uint64_t>(facts.st_size);
    }
    m_pMessage = std::move(pMessage);
    return true;
}

bool NamedPipe::Read(void* pBuffer, uint32_t length, uint32_t& read, bool& more) {
    read = 0;
    more = false;
    if (!m_bConnected || (!m_pMessage && !ReceiveMessage()))
        return false;
    const auto nLen = static_cast<uint32_t>(std::min<uint64_t>(length, m_pMessage->size - m_pMessage->position));
    if (!m_pMessage->Take(pBuffer, nLen)) {
        m_pMessage.reset();
        return false;
    }
    read = nLen;
    more = m_pMessage->position < m_pMessage->size;
    if (!more)
        m_pMessage.reset();
    return true;
}

// In the system's count, which has the bookkeeping of each packet in it.
uint32_t NamedPipe::GetUntaken() const {
    int bytes = 0;
    const bool isThere =
        m_bConnected && ioctl(m_hPipe, SIOCOUTQ, &bytes) == 0 && (PollFor(m_hPipe, 0, 0) & (POLLHUP | POLLERR)) == 0;
    return isThere ? static_cast<uint32_t>(bytes) : 0;
}

bool NamedPipe::IsFlushed() const { return GetUntaken() == 0; }

bool NamedPipe::HasRoom() const { return GetUntaken() < s_RoomLimit; }

void NamedPipe::Flush() const {
    while (!IsFlushed())
        std::this_thread::sleep_for(milliseconds(1));
}

void NamedPipe::Close() {
    if (!IsOpen())
        return;
    m_pMessage.reset();
    if (m_bConnected) {
        if (m_Role == Role::Client)
            Flush();
        // Nothing more can come, so that the other side can't have this go on for ever.
        shutdown(m_hPipe, SHUT_RD);
        char dropped[s_DropSize];
        uint32_t read = 0;
        bool more = false;
        for (bool hasData = false; Peek(hasData) && hasData && Read(dropped, sizeof dropped, read, more);)
            m_pMessage.reset();
    }
    m_bConnected = false;
    close(m_hPipe);
    m_hPipe = -1;
    Withdraw();
}
