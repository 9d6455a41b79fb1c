// The operations on whole changelists.

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RevControlAPI/ChangelistPatterns.h"
#include "Shared/Cross/RevControlAPI/P4Connection.h"
#include "Shared/Cross/RevControlAPI/RevControlP4.h"

#include <cstdio>
#include <string>

namespace {

using Arguments = std::vector<ClientArgument>;

constexpr size_t s_FormSize = 2048; // with its final 0; tool descriptions are a line

std::string NameChangelist(int32_t changelist) { return changelist != 0 ? std::to_string(changelist) : "default"; }

std::string MakeForm(const ClientApi& client, const char* pDescription) {
    char form[s_FormSize];
    const int size = std::snprintf(form, sizeof form, "Change: new\nClient: %s\nUser: %s\nStatus: new\nDescription: %s",
                                   client.GetClient().c_str(), client.GetUser().c_str(), pDescription);
    if (size < 0 || static_cast<size_t>(size) >= sizeof form)
        dbWarningf("REVCONTROL -- a changelist's description was cut to fit a form of %zu characters", sizeof form);
    return form;
}

} // namespace

bool RevControlP4::CreateChangelist(const char* pDescription, int32_t& number) {
    RevClientUser user(MakeForm(*m_pConnection->pClient, pDescription));
    m_pConnection->Run("change", Arguments{"-i"}, user);
    const std::string* pLine = user.GetFirstInfo();
    if (!pLine)
        return m_pConnection->Fail("Failed to create changlist: " + InQuotes(pDescription));
    return ChangelistPatterns::ReadCreated(*pLine, number) ||
           m_pConnection->Fail("Failed to parse changlist # for changelist: " + InQuotes(pDescription));
}

bool RevControlP4::FindChangelist(const char* pDescription, int32_t& number) {
    RevClientUser user;
    m_pConnection->Run("changes", Arguments{"-c", m_pConnection->pClient->GetClient(), "-s", "pending", "-l"}, user);
    for (const std::string& line : user.GetInfos())
        if (line.find(pDescription) != std::string::npos && ChangelistPatterns::ReadListed(line, number))
            return true;
    return m_pConnection->Fail("Failed to find pending changelist: " + InQuotes(pDescription));
}

bool RevControlP4::FindOrCreateChangelist(const char* pDescription, int32_t& number) {
    return FindChangelist(pDescription, number) || CreateChangelist(pDescription, number);
}

bool RevControlP4::DeleteEmptyChangelist(int32_t number) {
    RevClientUser user;
    m_pConnection->Run("change", Arguments{"-d", std::to_string(number)}, user);
    const std::string failure = "Failed to delete empty changelist #: " + InQuotes(std::to_string(number));
    const std::string* pLine = user.GetFirstInfo();
    if (!pLine)
        return m_pConnection->Fail(failure);
    const bool deleted =
        pLine->find("deleted.") != std::string::npos && pLine->find("can't be deleted.") == std::string::npos;
    return deleted || m_pConnection->FailWithAnswer(failure, *pLine);
}

bool RevControlP4::RevertChangelist(int32_t number, bool unchangedOnly) {
    const std::string name = NameChangelist(number);
    RevClientUser opened;
    m_pConnection->Run("opened", Arguments{"-c", name}, opened);
    if (!opened.GetFirstInfo())
        return true;
    Arguments arguments = {"-c", name, "//..."};
    if (unchangedOnly)
        arguments.insert(arguments.begin(), "-a");
    RevClientUser user;
    m_pConnection->Run("revert", arguments, user);
    const std::string failure = "Failed to revert changlist #: " + InQuotes(std::to_string(number));
    if (!user.GetFirstInfo())
        return m_pConnection->Fail(failure);
    for (const std::string& line : user.GetInfos())
        if (line.find("reverted") == std::string::npos && line.find("abandoned") == std::string::npos)
            return m_pConnection->FailWithAnswer(failure, line);
    return true;
}

bool RevControlP4::IsOpenedIn(const char* pName, int32_t changelist) {
    RevClientUser user;
    return m_pConnection->Run("opened", Arguments{"-c", NameChangelist(changelist), ClientArgument::File(pName)},
                              user) &&
           !user.HasErrors();
}

bool RevControlP4::GetOpenedChangelist(const char* pName, int32_t& number) {
    RevClientUser user;
    number = 0;
    if (!m_pConnection->Run("opened", Arguments{ClientArgument::File(pName)}, user))
        return false;
    // An answer that names no changelist is none of the server's refusals, and leaves the default one.
    const std::string* pLine = user.GetFirstInfo();
    if (pLine && pLine->find("default change") == std::string::npos)
        ChangelistPatterns::ReadOpened(*pLine, number);
    return !user.HasErrors();
}
