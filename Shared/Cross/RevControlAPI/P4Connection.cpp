#include "Shared/Cross/RevControlAPI/P4Connection.h"

#include "Shared/Cross/Debug/db.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

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

bool RevControlP4::Connection::Fail(const char* pFormat, ...) {
    va_list arguments;
    va_start(arguments, pFormat);
    va_list again;
    va_copy(again, arguments);
    const int size = std::vsnprintf(nullptr, 0, pFormat, arguments);
    va_end(arguments);
    m_errorStr.resize(static_cast<size_t>(std::max(size, 0)));
    std::vsnprintf(m_errorStr.data(), m_errorStr.size() + 1, pFormat, again);
    va_end(again);
    errorIsNew = true;
    return false;
}

std::string RevControlP4::Connection::TakeError() {
    if (!errorIsNew)
        m_errorStr.clear();
    errorIsNew = false;
    return m_errorStr;
}
