#pragma once

#include "Shared/Cross/RevControlAPI/RevControlAPI.h"

// Work without a server: a file's attributes are all the state there is. There are no changelists but the default one,
// and nothing is undone.
class RevControlLocal : public RevControlAPI {
public:
    bool Initialize(const char* pPort) override;
    std::string GetLastError() override;
    bool CreateChangelist(const char* pDescription, int32_t& number) override;
    bool FindChangelist(const char* pDescription, int32_t& number) override;
    bool DeleteEmptyChangelist(int32_t number) override;
    bool RevertChangelist(int32_t number, bool unchangedOnly) override;
    bool EditFiles(std::span<const std::string> names, int32_t changelist) override;
    // True for a file that can be written, and for one that isn't there yet.
    bool Edit(const char* pName, int32_t changelist) override;
    bool Integrate(const char* pFrom, const char* pTo, int32_t changelist) override;
    bool Rename(const char* pFrom, const char* pTo, int32_t changelist) override;
    bool AddFiles(std::span<const std::string> names, int32_t changelist) override;
    bool Add(const char* pName, int32_t changelist) override;
    bool Delete(const char* pName, int32_t changelist) override;
    // 3 for no file, 0 for one that can be written, 1 for one that can't: numbers of this mode's own, with another
    // sense than those of a server.
    FileStatus GetFileStatus(const char* pName) override;
    bool IsOpenedIn(const char* pName, int32_t changelist) override;
    bool GetOpenedChangelist(const char* pName, int32_t& number) override;
    bool RevertFile(const char* pName, int32_t changelist, bool unchangedOnly) override;
    SyncResult Sync(const char* pName, bool directory) override;
    OpenResult OpenOrAdd(const char* pName, int32_t changelist) override;
    bool FindOrCreateChangelist(const char* pDescription, int32_t& number) override;
};
