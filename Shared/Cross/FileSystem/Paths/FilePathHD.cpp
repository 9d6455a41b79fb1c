#include "Shared/Cross/FileSystem/Paths/FilePathHD.h"

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/FileSystem/Paths/HDNotification.h"
#include "Shared/Cross/FileSystem/Wildcard.h"
#include "Shared/PC/FileSystem/OSFile.h"

#include <string_view>

namespace {

// A name that can't lead out of the root.
bool IsInside(const char* pName) {
    if (!pName || *pName == '\0' || *pName == '\\')
        return false;
    const std::string_view name(pName);
    return name.find_first_of(":/") == std::string_view::npos && name.find("..\\") == std::string_view::npos &&
           name != ".." && !name.ends_with("\\..");
}

// The same, with a name that isn't as a mistake.
bool CheckInside(const char* pName) {
    if (IsInside(pName))
        return true;
    dbBreak();
    return false;
}

bool HasDrive(std::string_view path) { return path.size() >= 2 && path[1] == ':'; }

bool IsFolder(const std::string& path) { return (OSFile::FileAttr(path.c_str()) & OSFile::F_ATTRIBUTE_DIRECTORY) != 0; }

} // namespace

std::shared_ptr<FilePathHD> FilePathHD::Create(const char* pRoot, FilePath::Mode mode) {
    return Create(pRoot, mode, mode == ByteStream::Mode_Read, false);
}

std::shared_ptr<FilePathHD> FilePathHD::Create(const char* pRoot, FilePath::Mode mode, bool share, bool notify) {
    using enum ByteStream::Mode;
    std::string folder(pRoot ? pRoot : "");
    const bool isMode = mode == Mode_Read || mode == Mode_Write || mode == Mode_Both;
    if (!isMode || folder.empty() || folder.size() >= FilePath::MAXPATH || folder.find('/') != std::string::npos) {
        dbBreak();
        return nullptr;
    }
    if (folder.back() != '\\')
        folder += '\\';
    if (mode == Mode_Read && !IsFolder(folder)) {
        dbWarningf("FILESYSTEM -- filepath failure, path does not exist '%s'", folder.c_str());
        return nullptr;
    }
    if (mode != Mode_Read && !OSFile::MakeFolders(folder.c_str())) {
        dbWarningf("FILESYSTEM -- filepath failure, failed to create path '%s'", folder.c_str());
        return nullptr;
    }
    return std::shared_ptr<FilePathHD>(new FilePathHD(mode, FoldCase(folder), folder, share, notify));
}

FilePathHD::FilePathHD(FilePath::Mode mode, std::string root, std::string folder, bool share, bool notify)
    : m_Mode(mode), m_Root(std::move(root)), m_Folder(std::move(folder)), m_Disk(share),
      m_pNotification(notify ? std::make_unique<HDNotification>(m_Folder) : nullptr) {}

FilePathHD::~FilePathHD() = default;

bool FilePathHD::Allows(FilePath::Mode mode) const { return (mode & ~m_Mode) == 0; }

bool FilePathHD::GetFullName(std::string& out, const char* pName, FilePath::Mode mode) {
    if (!CheckInside(pName) || !Allows(mode))
        return false;
    const std::string path = m_Folder + pName;
    if ((mode & ByteStream::Mode_Write) && !OSFile::MakeFolders(path.c_str()))
        return false;
    if (mode == ByteStream::Mode_Read && !m_Disk.IsAccessible(path.c_str(), mode))
        return false;
    out = m_Root + pName;
    return true;
}

bool FilePathHD::GetAliasName(std::string& out, const char* pFull) {
    if (!pFull)
        return false;
    const std::string root = HasDrive(m_Root) ? m_Root : FoldCase(OSFile::GetCurrentFolder() + m_Root);
    const std::string_view full(pFull);
    if (full.size() < root.size() || FoldCase(full.substr(0, root.size())) != root)
        return false;
    out = full.substr(root.size());
    return true;
}

std::unique_ptr<ByteStream> FilePathHD::Open(const char* pName, FilePath::Mode mode) {
    if (!IsInside(pName)) {
        dbWarningf("file %s is missing.", pName ? pName : "");
        dbBreak();
        return nullptr;
    }
    if (!Allows(mode))
        return nullptr;
    const std::string path = m_Folder + pName;
    if ((mode & ByteStream::Mode_Write) && !OSFile::MakeFolders(path.c_str()))
        return nullptr;
    return m_Disk.Open(path.c_str(), mode);
}

std::unique_ptr<FileReplacement> FilePathHD::Replace(const char* pName) {
    if (!CheckInside(pName) || !Allows(ByteStream::Mode_Write))
        return nullptr;
    const std::string path = m_Folder + pName;
    return OSFile::MakeFolders(path.c_str()) ? m_Disk.Replace(path.c_str()) : nullptr;
}

bool FilePathHD::Delete(const char* pName) {
    return CheckInside(pName) && Allows(ByteStream::Mode_Write) && m_Disk.Delete((m_Folder + pName).c_str());
}

bool FilePathHD::IsAccessible(const char* pName, FilePath::Mode mode) {
    return CheckInside(pName) && Allows(mode) && m_Disk.IsAccessible((m_Folder + pName).c_str(), mode);
}

FilePath::Type FilePathHD::GetType(const char* pName) {
    if (!CheckInside(pName))
        return FilePath::Type_None;
    std::string path = m_Folder + pName;
    if (path.back() == '\\')
        path.pop_back();
    if (HasWildcard(pName)) {
        const std::vector<std::string> found = OSFile::List(path.c_str());
        if (found.empty())
            return FilePath::Type_None;
        path.replace(path.rfind('\\') + 1, std::string::npos, found.front());
    }
    return m_Disk.GetType(path.c_str());
}

void FilePathHD::Enumerate(const char* pSpec, FilePath::FileListObj& list) {
    if (CheckInside(pSpec))
        m_Disk.Enumerate((m_Folder + pSpec).c_str(), list);
}

bool FilePathHD::GetChanges(std::vector<std::string>& names) {
    return m_pNotification && m_pNotification->GetChanges(names);
}
