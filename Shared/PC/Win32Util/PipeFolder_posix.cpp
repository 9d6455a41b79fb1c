#include "Shared/PC/Win32Util/PipeFolder_posix.h"

#include "Shared/PC/Debug/Process.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr mode_t s_OwnerOnly = 0700;
constexpr mode_t s_Others = 0077;

std::string GetFolderName() {
    if (const char* pFolder = std::getenv("PVX_PIPES"); pFolder && *pFolder)
        return pFolder;
    const char* pTemporary = std::getenv("TMPDIR");
    return std::string(pTemporary && *pTemporary ? pTemporary : "/tmp") + "/pvx-" + std::to_string(geteuid());
}

Descriptor MakeSocket() { return Descriptor(socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)); }

// The process that offers it, 0 for a name that isn't of this form.
int GetProcess(const std::string& offer, const std::string& pipeName) {
    if (!offer.starts_with(pipeName + "."))
        return 0;
    int process = 0;
    const char* pEnd = offer.data() + offer.size();
    const auto [pRest, error] = std::from_chars(offer.data() + pipeName.size() + 1, pEnd, process);
    return error == std::errc() && pRest != pEnd && *pRest == '.' ? process : 0;
}

} // namespace

int Descriptor::Release() {
    const int value = m_Value;
    m_Value = -1;
    return value;
}

void Descriptor::Set(int value) {
    if (m_Value >= 0)
        close(m_Value);
    m_Value = value;
}

bool PipeFolder::Open() {
    const std::string name = GetFolderName();
    // Both sides have to find it, and each has a working folder of its own.
    if (!name.starts_with('/')) {
        errno = EINVAL;
        return false;
    }
    if (mkdir(name.c_str(), s_OwnerOnly) != 0 && errno != EEXIST)
        return false;
    m_Folder.Set(open(name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    struct stat facts {};
    if (!m_Folder || fstat(m_Folder.Get(), &facts) != 0)
        return false;
    if (facts.st_uid == geteuid() && (facts.st_mode & s_Others) == 0)
        return true;
    m_Folder.Set(-1);
    errno = EPERM;
    return false;
}

// By the open folder, since the address has no room for a long path.
sockaddr_un PipeFolder::GetAddress(const std::string& offer) const {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::snprintf(address.sun_path, sizeof address.sun_path, "/proc/self/fd/%d/%s", m_Folder.Get(), offer.c_str());
    return address;
}

bool PipeFolder::Offer(const std::string& pipeName, Descriptor& listener, std::string& offer) const {
    static std::atomic<unsigned> s_Number{0};
    offer = pipeName + "." + std::to_string(getpid()) + "." + std::to_string(s_Number++);
    // Found by clients once it listens, and not before.
    const std::string unready = "." + offer;
    const sockaddr_un address = GetAddress(unready);
    listener = MakeSocket();
    Withdraw(unready); // of another process that had this one's number
    return listener && bind(listener.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 &&
           listen(listener.Get(), 0) == 0 &&
           renameat(m_Folder.Get(), unready.c_str(), m_Folder.Get(), offer.c_str()) == 0;
}

void PipeFolder::Withdraw(const std::string& offer) const { unlinkat(m_Folder.Get(), offer.c_str(), 0); }

std::vector<std::string> PipeFolder::List(const std::string& pipeName) const {
    std::vector<std::string> offers;
    const std::unique_ptr<DIR, int (*)(DIR*)> pList(
        fdopendir(openat(m_Folder.Get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC)), closedir);
    while (const dirent* pEntry = pList ? readdir(pList.get()) : nullptr)
        if (GetProcess(pEntry->d_name, pipeName) != 0)
            offers.emplace_back(pEntry->d_name);
    std::ranges::sort(offers);
    return offers;
}

void PipeFolder::ClearStale(const std::string& pipeName) const {
    for (const std::string& offer : List(pipeName))
        if (!Process::IsAlive(static_cast<uint32_t>(GetProcess(offer, pipeName))))
            Withdraw(offer);
}

std::vector<std::string> PipeFolder::FindOffers(const std::string& pipeName, int process) const {
    std::vector<std::string> offers = List(pipeName);
    std::erase_if(offers, [&](const std::string& offer) { return GetProcess(offer, pipeName) != process; });
    return offers;
}

bool PipeFolder::Connect(const std::string& offer, Descriptor& socket) const {
    const sockaddr_un address = GetAddress(offer);
    socket = MakeSocket();
    return socket && connect(socket.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
}
