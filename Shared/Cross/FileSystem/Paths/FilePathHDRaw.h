#pragma once

#include "Shared/Cross/FileSystem/Paths/FilePath.h"

// The whole disk as a source: names are full paths.
class FilePathHDRaw : public FilePath::Source {
public:
    explicit FilePathHDRaw(bool share) : m_Share(share) {}

    // The name as it is.
    bool GetFullName(std::string& out, const char* pName, FilePath::Mode mode) override;
    // Always false: every path would lie here.
    bool GetAliasName(std::string& out, const char* pFull) override;
    std::unique_ptr<ByteStream> Open(const char* pName, FilePath::Mode mode) override;
    std::unique_ptr<FileReplacement> Replace(const char* pName) override;
    bool Delete(const char* pName) override;
    bool IsAccessible(const char* pName, FilePath::Mode mode) override;
    FilePath::Type GetType(const char* pName) override;
    void Enumerate(const char* pSpec, FilePath::FileListObj& list) override;
    virtual bool Rename(const char* pFrom, const char* pTo);

private:
    bool m_Share;
};
