#include "Shared/Cross/FileSystem/Paths/FilePathHDRaw.h"

#include "Shared/PC/FileSystem/DiskFileReplacement.h"
#include "Shared/PC/FileSystem/DiskFileStream.h"
#include "Shared/PC/FileSystem/OSFile.h"

bool FilePathHDRaw::GetFullName(std::string& out, const char* pName, FilePath::Mode) {
    out = pName;
    return true;
}

bool FilePathHDRaw::GetAliasName(std::string&, const char*) { return false; }

std::unique_ptr<ByteStream> FilePathHDRaw::Open(const char* pName, FilePath::Mode mode) {
    return OpenFile(pName, mode, m_Share);
}

std::unique_ptr<FileReplacement> FilePathHDRaw::Replace(const char* pName) { return ReplaceFile(pName, m_Share); }

bool FilePathHDRaw::Delete(const char* pName) { return OSFile::Delete(pName); }

bool FilePathHDRaw::IsAccessible(const char* pName, FilePath::Mode mode) {
    const uint32_t attributes = OSFile::FileAttr(pName);
    return (attributes & OSFile::F_ATTRIBUTE_FILE) &&
           (!(mode & ByteStream::Mode_Write) || (attributes & OSFile::F_ATTRIBUTE_WRITABLE));
}

FilePath::Type FilePathHDRaw::GetType(const char* pName) {
    const uint32_t attributes = OSFile::FileAttr(pName);
    if (attributes & OSFile::F_ATTRIBUTE_DIRECTORY)
        return FilePath::Type_Folder;
    return attributes & OSFile::F_ATTRIBUTE_FILE ? FilePath::Type_File : FilePath::Type_None;
}

void FilePathHDRaw::Enumerate(const char* pSpec, FilePath::FileListObj& list) {
    for (const std::string& name : OSFile::List(pSpec))
        list.Add(name.c_str());
}

bool FilePathHDRaw::Rename(const char* pFrom, const char* pTo) { return OSFile::Rename(pFrom, pTo); }
