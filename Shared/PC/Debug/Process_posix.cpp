#include "Shared/PC/Debug/Process.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <limits>
#include <memory>

#include <climits>
#include <pwd.h>
#include <sys/stat.h>
#include <sys/utsname.h>
#include <unistd.h>

namespace Process {

namespace {

std::string ReadAll(const char* pPath) {
    std::ifstream file(pPath, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::string FolderOf(const std::string& path) { return path.substr(0, path.find_last_of('/') + 1); }

// A folder that the environment names, with its closing slash; empty when it doesn't.
std::string ReadFolder(const char* pVariable) {
    const char* pFolder = std::getenv(pVariable);
    std::string folder = pFolder ? pFolder : "";
    if (!folder.empty() && folder.back() != '/')
        folder += '/';
    return folder;
}

// Clock ticks after boot, from the field of that place in the process's status line; 0 when it can't be read.
uint64_t ReadStartTicks() {
    const std::string stat = ReadAll("/proc/self/stat");
    // The second field is the program's name in parentheses and may hold anything, so counting starts behind it.
    size_t at = stat.rfind(')');
    constexpr int s_FieldsFromName = 20;
    for (int field = 0; field < s_FieldsFromName && at != std::string::npos; ++field)
        at = stat.find(' ', at + 1);
    return at == std::string::npos ? 0 : std::strtoull(stat.c_str() + at, nullptr, 10);
}

time_t ReadBootTime() {
    const std::string stat = ReadAll("/proc/stat");
    const size_t at = stat.find("btime ");
    return at == std::string::npos ? 0 : static_cast<time_t>(std::strtoll(stat.c_str() + at + 6, nullptr, 10));
}

// Of the machine's own users; empty for others, whom the system has to ask servers for, which takes longer.
std::string FindLocalUser(uid_t id) {
    const std::unique_ptr<FILE, int (*)(FILE*)> pUsers(std::fopen("/etc/passwd", "re"), std::fclose);
    while (pUsers)
        if (const passwd* pEntry = fgetpwent(pUsers.get()); !pEntry)
            break;
        else if (pEntry->pw_uid == id)
            return pEntry->pw_name;
    return {};
}

} // namespace

std::string GetCommandLine() {
    std::string line = ReadAll("/proc/self/cmdline");
    while (!line.empty() && line.back() == '\0')
        line.pop_back();
    std::replace(line.begin(), line.end(), '\0', ' ');
    return line;
}

std::string GetExecutablePath() {
    // Asked anew each time, since the file may have been renamed or deleted in between.
    char path[PATH_MAX];
    const ssize_t size = readlink("/proc/self/exe", path, sizeof path);
    return size > 0 ? std::string(path, static_cast<size_t>(size)) : std::string();
}

std::string GetExecutableFolder() { return FolderOf(GetExecutablePath()); }

std::string GetConfigFolder() {
    const std::string folder = ReadFolder("PVX_CONFIG");
    return folder.empty() ? GetExecutableFolder() : folder;
}

std::string GetLogFolder() {
    if (const std::string folder = ReadFolder("PVX_LOGS"); !folder.empty())
        return folder.front() == '/' ? folder : GetWorkingFolder() + '/' + folder;
    if (const std::string folder = GetExecutableFolder(); access(folder.c_str(), W_OK) == 0)
        return folder + "logs/";
    const std::string temporary = ReadFolder("TMPDIR");
    return (temporary.empty() ? "/tmp/" : temporary) + "pvx-logs-" + std::to_string(getuid()) + '/';
}

std::string GetWorkingFolder() {
    char path[PATH_MAX];
    return getcwd(path, sizeof path) ? path : "";
}

uint32_t GetId() { return static_cast<uint32_t>(getpid()); }

uint32_t GetParentId() { return static_cast<uint32_t>(getppid()); }

bool IsAlive(uint32_t id) {
    // 0 and negative numbers stand for groups of processes.
    if (id == 0 || id > std::numeric_limits<int32_t>::max())
        return false;
    return kill(static_cast<pid_t>(id), 0) == 0 || errno != ESRCH;
}

std::string GetUserName() {
    if (const char* pUser = std::getenv("USER"); pUser && *pUser)
        return pUser;
    if (std::string name = FindLocalUser(getuid()); !name.empty())
        return name;
    if (const passwd* pEntry = getpwuid(getuid()))
        return pEntry->pw_name;
    return "Unknown";
}

time_t GetStartTime() {
    const time_t boot = ReadBootTime();
    const uint64_t ticks = ReadStartTicks();
    const long perSecond = sysconf(_SC_CLK_TCK);
    if (boot == 0 || ticks == 0 || perSecond <= 0)
        return time(nullptr);
    return boot + static_cast<time_t>(ticks / static_cast<uint64_t>(perSecond));
}

System GetSystem() {
    System system;
    utsname names = {};
    if (uname(&names) == 0) {
        system.name = names.sysname;
        std::sscanf(names.release, "%d.%d", &system.major, &system.minor);
    }
    const auto pages = static_cast<uint64_t>(std::max(0L, sysconf(_SC_PHYS_PAGES)));
    const auto pageSize = static_cast<uint64_t>(std::max(0L, sysconf(_SC_PAGESIZE)));
    system.memoryMB = static_cast<uint32_t>(pages * pageSize >> 20);
    system.processors = static_cast<int>(sysconf(_SC_NPROCESSORS_ONLN));
    return system;
}

bool IsDebuggerAttached() {
    constexpr char s_Label[] = "TracerPid:";
    const std::string status = ReadAll("/proc/self/status");
    const size_t at = status.find(s_Label);
    return at != std::string::npos && std::strtol(status.c_str() + at + sizeof s_Label - 1, nullptr, 10) != 0;
}

} // namespace Process
