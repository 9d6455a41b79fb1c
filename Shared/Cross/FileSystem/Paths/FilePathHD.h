#pragma once

#include "Shared/Cross/FileSystem/Paths/FilePathHDRaw.h"

class HDNotification;

// A folder on disk as a source. Names can't leave it.
class FilePathHD : public FilePath::Source {
public:
    // The root has backslashes only and is kept in upper case. For Mode_Read it has to exist and others may read its
    // files; for the other modes it is made. Without notification GetChanges knows of nothing; with it, so if the
    // folder can't be watched. Null on failure, which is logged.
    static std::shared_ptr<FilePathHD> Create(const char* pRoot, FilePath::Mode mode);
    static std::shared_ptr<FilePathHD> Create(const char* pRoot, FilePath::Mode mode, bool share, bool notify);
    ~FilePathHD() override;

    bool GetFullName(std::string& out, const char* pName, FilePath::Mode mode) override;
    bool GetAliasName(std::string& out, const char* pFull) override;
    std::unique_ptr<ByteStream> Open(const char* pName, FilePath::Mode mode) override;
    std::unique_ptr<FileReplacement> Replace(const char* pName) override;
    bool Delete(const char* pName) override;
    bool IsAccessible(const char* pName, FilePath::Mode mode) override;
    FilePath::Type GetType(const char* pName) override;
    void Enumerate(const char* pSpec, FilePath::FileListObj& list) override;
    bool GetChanges(std::vector<std::string>& names) override;

private:
    FilePathHD(FilePath::Mode mode, std::string root, std::string folder, bool share, bool notify);

    bool Allows(FilePath::Mode mode) const;

    FilePath::Mode m_Mode;
    std::string m_Root;   // upper case, with a final backslash
    std::string m_Folder; // the same as it was given, for the folders and files that are made below it
    FilePathHDRaw m_Disk;
    std::unique_ptr<HDNotification> m_pNotification; // null without notification
};
