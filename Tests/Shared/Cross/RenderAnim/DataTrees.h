#pragma once

#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/FileSystem/Paths/FilePathHD.h"
#include "Tests/Shared/PC/FileSystem/TempFolder.h"

// Folders of a disk as "GENERIC" and "DATA".
class DataTrees : public TempFolder {
public:
    DataTrees() {
        for (const char* pAlias : s_Aliases) {
            MakeFolder(pAlias);
            FilePath::AddSource(pAlias, "HD", 0, FilePathHD::Create(Path(pAlias).c_str(), ByteStream::Mode_Both));
        }
    }
    ~DataTrees() {
        for (const char* pAlias : s_Aliases)
            FilePath::RemoveSource(pAlias, "HD");
    }

private:
    static constexpr const char* s_Aliases[] = {"GENERIC", "DATA"};
};
