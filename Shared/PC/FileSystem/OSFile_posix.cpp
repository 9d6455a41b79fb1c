#include "Shared/PC/FileSystem/OSFile.h"

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/FileSystem/Wildcard.h"
#include "Shared/PC/FileSystem/NativePath.h"
#include "Shared/PC/FileSystem/PathLookup.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <limits>
#include <memory>
#include <system_error>

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace OSFile {

namespace {

// A read-only file has none of these.
constexpr mode_t s_AnyWrite = S_IWUSR | S_IWGRP | S_IWOTH;
constexpr mode_t s_NewFile = 0666; // the user's mask takes its part away
constexpr mode_t s_NewFolder = 0777;
constexpr off_t s_WorthAHint = 0x20000; // what the system reads ahead anyway
// A pipe that nobody has opened at its other end must not hold us up.
constexpr int s_OpenFlags = O_CLOEXEC | O_NOCTTY | O_NONBLOCK;

thread_local int s_LastError = 0;

// For a failed call: keeps the reason and answers false.
bool Fail(int error = errno) {
    s_LastError = error;
    return false;
}

bool IsNothingThere(int error) { return error == ENOENT || error == ENOTDIR; }

// Calls an operation, which answers below 0 with errno for a failure, with the path as asked and, if nothing is there,
// with the path in its actual spelling. Leaves the latter in `path`.
template <typename Operation>
int WithSpelling(std::string& path, Operation operation) {
    std::string asked = path;
    path = PathLookup::Get().Guess(asked);
    const int result = operation(path.c_str());
    if (result >= 0 || !IsNothingThere(errno))
        return result;
    const int error = errno;
    std::string found = PathLookup::Get().Find(asked);
    if (found == path) {
        errno = error;
        return -1;
    }
    path = std::move(found);
    return operation(path.c_str());
}

bool GetFacts(std::string& path, struct stat& facts) {
    return WithSpelling(path, [&](const char* pNative) { return stat(pNative, &facts); }) == 0;
}

bool IsWritable(const struct stat& facts) { return (facts.st_mode & s_AnyWrite) != 0; }

// Only what has an end or a place to put bytes: no folder, and nothing that waits for somebody.
bool CheckKind(const struct stat& facts) {
    if (S_ISREG(facts.st_mode) || S_ISCHR(facts.st_mode) || S_ISBLK(facts.st_mode))
        return true;
    errno = S_ISDIR(facts.st_mode) ? EISDIR : EINVAL;
    return false;
}

bool PrepareReading(int file, bool random, struct stat& facts) {
    if (fstat(file, &facts) != 0 || !CheckKind(facts))
        return false;
    // In a small file there is nothing to read ahead.
    if (facts.st_size > s_WorthAHint)
        posix_fadvise(file, 0, 0, random ? POSIX_FADV_RANDOM : POSIX_FADV_SEQUENTIAL);
    return true;
}

// Some file systems write a file out to the medium while it is closed for the first time after it was emptied, which
// takes longer than all else that is done to a small one. Emptied and closed by a handle of its own, it holds nothing
// then.
bool Empty(int file) {
    const int other = open(("/proc/self/fd/" + std::to_string(file)).c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC);
    return other >= 0 ? close(other) == 0 : ftruncate(file, 0) == 0;
}

bool PrepareWriting(int file, OpenMode mode, struct stat& facts) {
    if (fstat(file, &facts) != 0 || !CheckKind(facts))
        return false;
    if (!S_ISREG(facts.st_mode))
        return true;
    if (!IsWritable(facts)) {
        errno = EACCES;
        return false;
    }
    // A file system without locks has none to respect.
    if (flock(file, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
        errno = EBUSY;
        return false;
    }
    if (mode == Open_ReadWrite)
        return lseek(file, 0, SEEK_END) >= 0;
    const bool isEmpty = facts.st_size == 0;
    facts.st_size = 0;
    return isEmpty || Empty(file);
}

// A new file must not be made beside one of another spelling, so a look without making one comes first.
int OpenForWriting(std::string& path, OpenMode mode) {
    const int flags = s_OpenFlags | (mode == Open_ReadWrite ? O_RDWR : O_WRONLY);
    const int file = WithSpelling(path, [&](const char* pNative) { return open(pNative, flags); });
    if (file >= 0 || errno != ENOENT)
        return file;
    return open(path.c_str(), flags | O_CREAT, s_NewFile);
}

// All of it, over interruptions and short counts; `transfer` moves what it can and answers as read and write do.
template <typename Transfer>
uint32_t MoveAll(uint32_t size, Transfer transfer) {
    uint32_t done = 0;
    while (done < size) {
        const ssize_t moved = transfer(done, size - done);
        if (moved < 0 && errno == EINTR)
            continue;
        if (moved < 0)
            Fail();
        if (moved <= 0)
            break;
        done += static_cast<uint32_t>(moved);
    }
    return done;
}

bool IsOpen(Handle handle) {
    if (!handle) {
        dbBreak();
        return Fail(EBADF);
    }
    return true;
}

// The spelling that was asked for, when only that is to change.
std::string FindRenameTarget(const std::string& from, const std::string& asked) {
    std::string found = PathLookup::Get().Find(asked);
    if (found == from)
        found.replace(found.rfind('/') + 1, std::string::npos, asked, asked.rfind('/') + 1);
    return found;
}

bool IsFile(const std::string& native, struct stat& facts) {
    return lstat(native.c_str(), &facts) == 0 && S_ISREG(facts.st_mode);
}

// A file that is moved over another is written out first by some file systems, which takes as long as its size asks
// for. Two that change places aren't, and there is a whole file of the name at every moment too.
bool Replace(const std::string& from, const std::string& to) {
    if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_EXCHANGE) == 0)
        return unlink(from.c_str()) == 0;
    return rename(from.c_str(), to.c_str()) == 0; // a file system that knows no exchange
}

bool IsFolder(const std::string& native) {
    struct stat facts {};
    return stat(native.c_str(), &facts) == 0 && S_ISDIR(facts.st_mode);
}

// A link to a folder above it would make the tree endless.
bool LeadsUp(const std::string& folder, const dirent& entry) {
    if (entry.d_type != DT_LNK)
        return false;
    const std::string target = GetRealPath(folder + '/' + entry.d_name);
    return !target.empty() && (target == "/" || (GetRealPath(folder) + '/').starts_with(target + '/'));
}

// Calls back with each name in the folder that matches; stops when told false. Links that lead up are left out.
template <typename Callback>
void ForEachMatch(const char* pSpec, Callback callback) {
    const std::string_view spec(pSpec);
    const size_t split = spec.find_last_of("\\/:") + 1;
    const std::string_view pattern = spec.substr(split);
    std::string folder;
    if (!ToNativeText(split > 0 ? spec.substr(0, split) : ".", folder)) {
        Fail();
        return;
    }
    DIR* pOpened = nullptr;
    WithSpelling(folder, [&](const char* pNative) { return (pOpened = opendir(pNative)) ? 0 : -1; });
    const std::unique_ptr<DIR, int (*)(DIR*)> pFolder(pOpened, closedir);
    if (!pFolder) {
        Fail();
        return;
    }
    while (const dirent* pEntry = readdir(pFolder.get())) {
        const std::string_view name(pEntry->d_name);
        if (name == "." || name == ".." || !MatchesWildcard(pattern, name) || LeadsUp(folder, *pEntry))
            continue;
        if (!callback(name))
            return;
    }
}

} // namespace

Handle Open(const char* pName, OpenMode mode, bool /*share*/, bool random, uint64_t* pSize) {
    std::string path;
    if (!ToNativeText(pName, path)) {
        Fail();
        return {};
    }
    const int file = mode == Open_Read
                         ? WithSpelling(path, [](const char* pNative) { return open(pNative, s_OpenFlags | O_RDONLY); })
                         : OpenForWriting(path, mode);
    if (file < 0) {
        Fail();
        return {};
    }
    struct stat facts {};
    if (!(mode == Open_Read ? PrepareReading(file, random, facts) : PrepareWriting(file, mode, facts))) {
        Fail();
        close(file);
        return {};
    }
    if (pSize)
        *pSize = static_cast<uint64_t>(facts.st_size);
    return {file};
}

bool Close(Handle handle) { return IsOpen(handle) && (close(handle.value) == 0 || Fail()); }

uint32_t GetPos(Handle handle) {
    if (!IsOpen(handle))
        return 0;
    const off_t pos = lseek(handle.value, 0, SEEK_CUR);
    return pos < 0 ? Fail() : static_cast<uint32_t>(pos);
}

bool Seek(Handle handle, uint32_t pos) {
    return IsOpen(handle) && (lseek(handle.value, static_cast<off_t>(pos), SEEK_SET) >= 0 || Fail());
}

uint32_t Read(Handle handle, void* pDest, uint32_t size) {
    if (!IsOpen(handle))
        return 0;
    return MoveAll(
        size, [&](uint32_t done, uint32_t left) { return read(handle.value, static_cast<char*>(pDest) + done, left); });
}

uint32_t Write(Handle handle, const void* pSource, uint32_t size) {
    if (!IsOpen(handle))
        return 0;
    return MoveAll(size, [&](uint32_t done, uint32_t left) {
        return write(handle.value, static_cast<const char*>(pSource) + done, left);
    });
}

uint32_t ReadAt(Handle handle, uint32_t pos, void* pDest, uint32_t size) {
    if (!IsOpen(handle))
        return 0;
    return MoveAll(size, [&](uint32_t done, uint32_t left) {
        return pread(handle.value, static_cast<char*>(pDest) + done, left, static_cast<off_t>(pos) + done);
    });
}

uint32_t WriteAt(Handle handle, uint32_t pos, const void* pSource, uint32_t size) {
    if (!IsOpen(handle))
        return 0;
    return MoveAll(size, [&](uint32_t done, uint32_t left) {
        return pwrite(handle.value, static_cast<const char*>(pSource) + done, left, static_cast<off_t>(pos) + done);
    });
}

bool Flush(Handle handle) { return IsOpen(handle) && (fdatasync(handle.value) == 0 || Fail()); }

Handle Duplicate(Handle handle) {
    if (!IsOpen(handle))
        return {};
    const int other = fcntl(handle.value, F_DUPFD_CLOEXEC, 0);
    if (other < 0)
        Fail();
    return {other};
}

uint64_t GetSize(Handle handle) {
    if (!IsOpen(handle))
        return 0;
    struct stat facts {};
    return fstat(handle.value, &facts) == 0 ? static_cast<uint64_t>(facts.st_size) : Fail();
}

uint32_t FileAttr(const char* pPath) {
    std::string path;
    struct stat facts {};
    if (!ToNativeText(pPath, path) || !GetFacts(path, facts))
        return Fail();
    uint32_t attributes = F_ATTRIBUTE_READABLE;
    attributes |= S_ISDIR(facts.st_mode) ? F_ATTRIBUTE_DIRECTORY : F_ATTRIBUTE_FILE;
    if (IsWritable(facts))
        attributes |= F_ATTRIBUTE_WRITABLE;
    return attributes;
}

int64_t GetWriteTime(const char* pPath) {
    std::string path;
    struct stat facts {};
    if (!ToNativeText(pPath, path) || !GetFacts(path, facts))
        return Fail();
    return int64_t{facts.st_mtim.tv_sec} * 1'000'000'000 + facts.st_mtim.tv_nsec;
}

bool SetWritable(const char* pPath, bool writable) {
    std::string path;
    struct stat facts {};
    if (!ToNativeText(pPath, path) || !GetFacts(path, facts))
        return Fail();
    const mode_t mode = writable ? facts.st_mode | S_IWUSR : facts.st_mode & ~s_AnyWrite;
    return chmod(path.c_str(), mode & ALLPERMS) == 0 || Fail();
}

bool Delete(const char* pPath) {
    std::string path;
    struct stat facts {};
    if (!ToNativeText(pPath, path) || !GetFacts(path, facts))
        return Fail();
    if (S_ISDIR(facts.st_mode))
        return Fail(EISDIR);
    if (!IsWritable(facts))
        return Fail(EACCES);
    return unlink(path.c_str()) == 0 || Fail();
}

bool Rename(const char* pFrom, const char* pTo) {
    std::string from;
    std::string to;
    struct stat facts {};
    if (!ToNativeText(pFrom, from) || !ToNativeText(pTo, to) || !GetFacts(from, facts))
        return Fail();
    const std::string target = FindRenameTarget(from, to);
    struct stat replaced {};
    if (target == from || !S_ISREG(facts.st_mode) || !IsFile(target, replaced))
        return rename(from.c_str(), target.c_str()) == 0 || Fail();
    // What replaces a file is as open to others as it was.
    chmod(from.c_str(), replaced.st_mode & ALLPERMS); // its file system may have none
    return Replace(from, target) || Fail();
}

bool IsReplaceable(const char* pPath) {
    std::string path;
    if (!ToNativeText(pPath, path))
        return Fail();
    struct stat facts {};
    const bool isThere = WithSpelling(path, [&](const char* pNative) { return lstat(pNative, &facts); }) == 0;
    if (!isThere && errno != ENOENT)
        return Fail();
    if (isThere && (!S_ISREG(facts.st_mode) || facts.st_nlink > 1 || !IsWritable(facts) || facts.st_uid != geteuid() ||
                    facts.st_gid != getegid()))
        return false;
    const size_t slash = path.rfind('/');
    const std::string folder = slash == std::string::npos ? "." : path.substr(0, slash + 1);
    return access(folder.c_str(), W_OK | X_OK) == 0 || Fail();
}

bool MakeFolder(const char* pPath) {
    std::string asked;
    if (!ToNativeText(pPath, asked))
        return Fail();
    if (IsFolder(asked))
        return true;
    const std::string path = PathLookup::Get().Find(asked);
    return mkdir(path.c_str(), s_NewFolder) == 0 || (errno == EEXIST && IsFolder(path)) || Fail();
}

bool MakeFolders(const char* pFilePath) {
    std::string path(pFilePath);
    std::ranges::replace(path, '/', '\\');
    const size_t last = path.rfind('\\');
    if (last == std::string::npos)
        return true;
    // Mostly all of them are there.
    if (FileAttr(path.substr(0, last + 1).c_str()) & F_ATTRIBUTE_DIRECTORY)
        return true;
    size_t begin = 0;
    if (path.starts_with("\\\\")) { // the machine and what it shares are no folders
        begin = path.find('\\', 2);
        begin = begin == std::string::npos ? begin : path.find('\\', begin + 1);
    }
    for (size_t at = begin; at != std::string::npos; at = path.find('\\', at + 1)) {
        const std::string prefix = path.substr(0, at + 1);
        if (path[at] == '\\' && !(FileAttr(prefix.c_str()) & F_ATTRIBUTE_DIRECTORY) && !MakeFolder(prefix.c_str()))
            return false;
    }
    return true;
}

std::vector<std::string> List(const char* pSpec) {
    std::vector<std::string> names;
    ForEachMatch(pSpec, [&](std::string_view name) {
        names.emplace_back(name);
        return true;
    });
    std::ranges::sort(names, IsBeforeNoCase);
    return names;
}

bool Exists(const char* pSpec) {
    if (!HasWildcard(pSpec))
        return FileAttr(pSpec) != 0;
    bool found = false;
    ForEachMatch(pSpec, [&](std::string_view) {
        found = true;
        return false;
    });
    return found;
}

std::string GetCurrentFolder() {
    std::string folder = FromNative(GetNativeCurrentFolder());
    if (!folder.empty() && folder.back() != '\\')
        folder += '\\';
    return folder;
}

std::string ToNative(std::string_view path) {
    std::string native;
    if (!ToNativeText(path, native)) {
        Fail();
        return {};
    }
    return PathLookup::Get().Find(native);
}

std::string FromNative(std::string_view nativePath) {
    if (nativePath.find_first_of("\\:") != std::string_view::npos) {
        Fail(EINVAL);
        return {};
    }
    std::string path = "Z:";
    if (!nativePath.starts_with('/')) {
        const std::string folder = GetNativeCurrentFolder();
        if (folder.empty() || folder.find_first_of("\\:") != std::string::npos) {
            Fail(folder.empty() ? errno : EINVAL);
            return {};
        }
        path += folder;
        if (path.back() != '/')
            path += '/';
    }
    path += nativePath;
    std::ranges::replace(path, '/', '\\');
    return path;
}

int LastError() { return s_LastError; }

std::string LastErrorText() { return std::generic_category().message(s_LastError); }

bool WasInUse() { return s_LastError == EBUSY; }

} // namespace OSFile
