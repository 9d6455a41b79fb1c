#include "Shared/Cross/RevControlAPI/RevControlP4.h"

#include "Shared/Cross/RevControlAPI/P4Connection.h"
#include "Shared/Cross/RevControlAPI/P4Program.h"

#include <algorithm>

namespace {

using Arguments = std::vector<ClientArgument>;

// A file that is reverted because it was opened for delete is there again, so that a second round has to do. The
// server's word isn't taken for it more often than this.
constexpr int s_OpenRounds = 3;

bool Holds(const std::string& line, std::string_view phrase) { return line.find(phrase) != std::string::npos; }

bool HoldsAny(const std::string& line, std::initializer_list<std::string_view> phrases) {
    return std::ranges::any_of(phrases, [&](std::string_view phrase) { return Holds(line, phrase); });
}

// The default changelist isn't named: it is where commands go by themselves.
Arguments MakeFileArguments(const char* pName, int32_t changelist) {
    Arguments arguments = {ClientArgument::File(pName)};
    if (changelist != 0)
        arguments.insert(arguments.begin(), {"-c", std::to_string(changelist)});
    return arguments;
}

} // namespace

RevControlP4::RevControlP4() : RevControlP4(std::make_unique<P4Program>()) {}

RevControlP4::RevControlP4(std::unique_ptr<ClientApi> pClient)
    : m_pConnection(std::make_unique<Connection>(std::move(pClient))) {}

RevControlP4::~RevControlP4() { m_pConnection->Disconnect(); }

bool RevControlP4::Initialize(const char* pPort) { return m_pConnection->Connect(pPort); }

std::string RevControlP4::GetLastError() { return m_pConnection->TakeError(); }

bool RevControlP4::EditFiles(std::span<const std::string> names, int32_t changelist) {
    return OpenAll(names, changelist, &RevControlP4::Edit);
}

bool RevControlP4::AddFiles(std::span<const std::string> names, int32_t changelist) {
    return OpenAll(names, changelist, &RevControlP4::Add);
}

bool RevControlP4::OpenAll(std::span<const std::string> names, int32_t changelist, Operation open) {
    for (size_t i = 0; i < names.size(); ++i) {
        if ((this->*open)(names[i].c_str(), changelist))
            continue;
        for (const std::string& done : names.first(i))
            RevertFile(done.c_str(), changelist, false);
        return false;
    }
    return true;
}

bool RevControlP4::Edit(const char* pName, int32_t changelist) {
    return m_pConnection->RunAndJudge("edit", MakeFileArguments(pName, changelist),
                                      {"opened for edit", "reopened for add"},
                                      "Failed to open for edit file: " + InQuotes(pName));
}

bool RevControlP4::Add(const char* pName, int32_t changelist) {
    return m_pConnection->RunAndJudge("add", MakeFileArguments(pName, changelist), {"opened for add"},
                                      "Failed to open for Add file: " + InQuotes(pName));
}

bool RevControlP4::Delete(const char* pName, int32_t changelist) {
    return m_pConnection->RunAndJudge("delete", MakeFileArguments(pName, changelist), {"opened for delete"},
                                      "Failed to open for Delete file: " + InQuotes(pName));
}

bool RevControlP4::Integrate(const char* pFrom, const char* pTo, int32_t changelist) {
    RevClientUser user;
    m_pConnection->Run(
        "integrate",
        Arguments{"-c", std::to_string(changelist), ClientArgument::File(pFrom), ClientArgument::File(pTo)}, user);
    const std::string* pLine = user.GetFirstInfo();
    if (!pLine)
        return m_pConnection->Fail("Failed to integrate file: " + InQuotes(pFrom) + " to: " + InQuotes(pTo));
    return Holds(*pLine, "branch/sync from") ||
           m_pConnection->FailWithAnswer("Failed to Integrate file: " + InQuotes(pFrom), *pLine);
}

bool RevControlP4::Rename(const char* pFrom, const char* pTo, int32_t changelist) {
    if (!Integrate(pFrom, pTo, changelist))
        return m_pConnection->Fail("Failed to integrate file: " + InQuotes(pFrom) + " to: " + InQuotes(pTo) +
                                   " during rename operation");
    return Delete(pFrom, changelist) ||
           m_pConnection->Fail("Failed to delete file: " + InQuotes(pFrom) + " during rename operation");
}

bool RevControlP4::RevertFile(const char* pName, int32_t changelist, bool unchangedOnly) {
    Arguments arguments = MakeFileArguments(pName, changelist);
    if (unchangedOnly)
        arguments.insert(arguments.begin(), "-a");
    return m_pConnection->RunAndJudge("revert", arguments, {"reverted", "abandoned", "was branch, deleted"},
                                      "Failed to Revert file: " + InQuotes(pName));
}

RevControlAPI::FileStatus RevControlP4::GetFileStatus(const char* pName) {
    RevClientUser user;
    const bool answered = m_pConnection->Run("fstat", Arguments{ClientArgument::File(pName)}, user);
    if (!answered || user.HasErrors() || !user.IsWhole())
        return Status_Unknown;
    // Their values are names of files, which may hold any word.
    const auto isName = [](const std::string& line) {
        return line.starts_with("depotFile ") || line.starts_with("clientFile ");
    };
    bool exclusive = false;
    for (const std::string& line : user.GetInfos()) {
        if (isName(line))
            continue;
        if (Holds(line, "action")) {
            if (Holds(line, "edit"))
                return Status_Edit;
            if (HoldsAny(line, {"add", "branch"}))
                return Status_Add;
            if (Holds(line, "delete"))
                return Status_Delete;
        }
        if (Holds(line, "headType"))
            exclusive = Holds(line, "+l");
        if (exclusive && Holds(line, "otherAction0"))
            return Status_OtherLocked;
        if (Holds(line, "otherLock"))
            return Status_OtherLocked;
    }
    const bool deleted = std::ranges::any_of(user.GetInfos(), [&](const std::string& line) {
        return !isName(line) && Holds(line, "headAction") && Holds(line, "delete");
    });
    return deleted ? Status_Unknown : Status_InDepot;
}

RevControlAPI::SyncResult RevControlP4::Sync(const char* pName, bool directory) {
    std::string name = pName;
    if (directory) {
        if (!name.empty() && !name.ends_with('\\') && !name.ends_with('/'))
            name += '\\';
        name += "...";
    }
    RevClientUser user;
    m_pConnection->Run("sync", Arguments{ClientArgument::File(name)}, user);
    const std::string* pError = user.GetFirstError();
    if (pError && Holds(*pError, "file(s) up-to-date"))
        return Sync_UpToDate;
    if (pError && Holds(*pError, "clobber"))
        return Sync_Failed;
    if (pError && Holds(*pError, "no such file(s)"))
        return Sync_NoFile;
    const std::string* pLine = user.GetFirstInfo();
    if (pLine && HoldsAny(*pLine, {"updating", "added as"}))
        return Sync_Updated;
    const std::string failure = "Failed to sync file: " + InQuotes(name);
    if (pError)
        m_pConnection->FailWithAnswer(failure, *pError);
    else
        m_pConnection->Fail(failure);
    return Sync_Failed;
}

RevControlAPI::OpenResult RevControlP4::OpenOrAdd(const char* pName, int32_t changelist) {
    for (int round = 0; round < s_OpenRounds; ++round) {
        if (Add(pName, changelist))
            return Open_Opened;
        switch (GetFileStatus(pName)) {
        case Status_Edit:
        case Status_Add:
            return IsOpenedIn(pName, changelist) ? Open_AlreadyOpened : Open_OtherList;
        case Status_Delete:
            if (!IsOpenedIn(pName, changelist))
                return Open_Opened;
            if (!RevertFile(pName, changelist, false))
                return Open_Failed;
            break;
        default:
            return Edit(pName, changelist) ? Open_Opened : Open_Failed;
        }
    }
    return Open_Failed;
}
