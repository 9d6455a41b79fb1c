#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>

// Revision control as the tools need it: a file is opened before it is written. File names are full names in the
// system's form (Z:\proj\x.pvx). Changelist 0 is the default changelist. Nothing throws; what failed is false, or the
// value that says so, and GetLastError has the reason. One object has one connection, used by one thread at a time.
class RevControlAPI {
public:
    enum RevisionControlType : int {
        Type_P4 = 0,        // the server alone
        Type_Local = 1,     // the file system alone
        Type_P4OrLocal = 2, // the server if there is one
    };

    enum FileStatus : int {
        Status_InDepot = 0,     // not opened by this client
        Status_Edit = 1,        // opened for edit
        Status_Add = 2,         // opened for add or as a branch
        Status_Delete = 3,      // opened for delete
        Status_OtherLocked = 4, // exclusively locked or opened by someone else
        Status_Unknown = 5,     // not in the depot, deleted at head, or the query failed
    };

    enum SyncResult : int {
        Sync_NoFile = 0,
        Sync_Updated = 1,
        Sync_UpToDate = 2,
        Sync_Failed = 3,
    };

    enum OpenResult : int {
        Open_Opened = 0,        // in the given changelist by this call, or nothing needed
        Open_OtherList = 1,     // was opened in another changelist, and stays there
        Open_AlreadyOpened = 2, // was opened in the given changelist already
        Open_Failed = 3,
    };

    // Null when the connection fails and the type leaves nothing to fall back to, and for an unknown type, which is the
    // caller's mistake. An empty port means no server to Type_P4OrLocal, and the environment's to Type_P4.
    static std::unique_ptr<RevControlAPI> Create(const char* pPort, int type);

    virtual ~RevControlAPI() = default;

    // True when connected.
    virtual bool Initialize(const char* pPort) = 0;
    // The text of the last failure since the last call, empty if there was none.
    virtual std::string GetLastError() = 0;

    // The number is that of a pending changelist. It is found by a part of its description, too.
    virtual bool CreateChangelist(const char* pDescription, int32_t& number) = 0;
    virtual bool FindChangelist(const char* pDescription, int32_t& number) = 0;
    virtual bool DeleteEmptyChangelist(int32_t number) = 0;
    // True too when there is nothing to revert.
    virtual bool RevertChangelist(int32_t number, bool unchangedOnly) = 0;

    // All or none: at the first failure those opened so far are reverted. (Local mode has nothing to revert.)
    virtual bool EditFiles(std::span<const std::string> names, int32_t changelist) = 0;
    virtual bool Edit(const char* pName, int32_t changelist) = 0;
    virtual bool Integrate(const char* pFrom, const char* pTo, int32_t changelist) = 0;
    // An integrate whose delete fails stays done.
    virtual bool Rename(const char* pFrom, const char* pTo, int32_t changelist) = 0;
    virtual bool AddFiles(std::span<const std::string> names, int32_t changelist) = 0;
    virtual bool Add(const char* pName, int32_t changelist) = 0;
    virtual bool Delete(const char* pName, int32_t changelist) = 0;

    virtual FileStatus GetFileStatus(const char* pName) = 0;
    virtual bool IsOpenedIn(const char* pName, int32_t changelist) = 0;
    virtual bool GetOpenedChangelist(const char* pName, int32_t& number) = 0;
    virtual bool RevertFile(const char* pName, int32_t changelist, bool unchangedOnly) = 0;
    // With `directory` the name is a folder, and all below it is meant.
    virtual SyncResult Sync(const char* pName, bool directory) = 0;
    // Makes a file writable whatever its state: what a tool calls ahead of writing.
    virtual OpenResult OpenOrAdd(const char* pName, int32_t changelist) = 0;
    virtual bool FindOrCreateChangelist(const char* pDescription, int32_t& number) = 0;
};
