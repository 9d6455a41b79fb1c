#include "Shared/Cross/RevControlAPI/P4Connection.h"

#include "Shared/Cross/Debug/db.h"

#include <algorithm>
#include <utility>

bool RevControlP4::Connection::Connect(const char* pPort) {
    pClient->SetPort(pPort);
    return Init();
}

bool RevControlP4::Connection::Init() {
    error.Clear();
    pClient->Init(error);
    connected = !error.Test();
    if (!connected)
        dbWarningf("REVCONTROL -- no connection: %s", error.GetText().c_str());
    return connected;
}

void RevControlP4::Connection::Disconnect() {
    if (connected)
        pClient->Final(error);
    connected = false;
}

bool RevControlP4::Connection::Run(const char* pCommand, std::span<const ClientArgument> arguments,
                                   RevClientUser& user) {
    if (!connected)
        return false;
    if (pClient->Dropped() && !Init())
        return false;
    pClient->SetArgv(arguments);
    pClient->Run(pCommand, user);
    return true;
}

bool RevControlP4::Connection::RunAndJudge(const char* pCommand, std::span<const ClientArgument> arguments,
                                           std::initializer_list<std::string_view> phrases,
                                           const std::string& failure) {
    RevClientUser user;
    Run(pCommand, arguments, user);
    const std::string* pLine = user.GetFirstInfo();
    if (!pLine)
        return Fail(failure);
    const auto isHeld = [pLine](std::string_view phrase) { return pLine->find(phrase) != std::string::npos; };
    return std::ranges::any_of(phrases, isHeld) || FailWithAnswer(failure, *pLine);
}

bool RevControlP4::Connection::Fail(std::string text) {
    m_errorStr = std::move(text);
    errorIsNew = true;
    return false;
}

bool RevControlP4::Connection::FailWithAnswer(const std::string& text, const std::string& answer) {
    return Fail(text + ", error: " + InQuotes(answer));
}

std::string RevControlP4::Connection::TakeError() {
    if (!errorIsNew)
        m_errorStr.clear();
    errorIsNew = false;
    return m_errorStr;
}
