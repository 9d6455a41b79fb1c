#pragma once

#include "Shared/Cross/RevControlAPI/RevControlAPI.h"

class ClientApi;

// Revision control by a Perforce server. What a command came to is read off the English words of its answers.
class RevControlP4 : public RevControlAPI {
public:
    // Through the p4 program.
    RevControlP4();
    explicit RevControlP4(std::unique_ptr<ClientApi> pClient);
    ~RevControlP4() override;

    bool Initialize(const char* pPort) override;
    std::string GetLastError() override;
    bool CreateChangelist(const char* pDescription, int32_t& number) override;
    bool FindChangelist(const char* pDescription, int32_t& number) override;
    bool DeleteEmptyChangelist(int32_t number) override;
    bool RevertChangelist(int32_t number, bool unchangedOnly) override;
    bool EditFiles(std::span<const std::string> names, int32_t changelist) override;
    bool Edit(const char* pName, int32_t changelist) override;
    bool Integrate(const char* pFrom, const char* pTo, int32_t changelist) override;
    bool Rename(const char* pFrom, const char* pTo, int32_t changelist) override;
    bool AddFiles(std::span<const std::string> names, int32_t changelist) override;
    bool Add(const char* pName, int32_t changelist) override;
    bool Delete(const char* pName, int32_t changelist) override;
    FileStatus GetFileStatus(const char* pName) override;
    bool IsOpenedIn(const char* pName, int32_t changelist) override;
    bool GetOpenedChangelist(const char* pName, int32_t& number) override;
    bool RevertFile(const char* pName, int32_t changelist, bool unchangedOnly) override;
    SyncResult Sync(const char* pName, bool directory) override;
    OpenResult OpenOrAdd(const char* pName, int32_t changelist) override;
    bool FindOrCreateChangelist(const char* pDescription, int32_t& number) override;

private:
    struct Connection;
    using Operation = bool (RevControlP4::*)(const char* pName, int32_t changelist);

    bool OpenAll(std::span<const std::string> names, int32_t changelist, Operation open);

    std::unique_ptr<Connection> m_pConnection;
};
