#pragma once

#include "Shared/Cross/RevControlAPI/ClientApi.h"
#include "Shared/Cross/RevControlAPI/RevClientUser.h"
#include "Shared/Cross/RevControlAPI/RevControlP4.h"

#include <initializer_list>

// The connection of a RevControlP4, and the text of its last failure.
struct RevControlP4::Connection {
    explicit Connection(std::unique_ptr<ClientApi> pGivenClient) : pClient(std::move(pGivenClient)) {}

    bool Connect(const char* pPort);
    void Disconnect();
    // False when there is no connection; one that broke is made anew, once. What comes is in the user.
    bool Run(const char* pCommand, std::span<const ClientArgument> arguments, RevClientUser& user);

    // Keeps the text, in place of the last one, and answers false.
    [[gnu::format(printf, 2, 3)]] bool Fail(const char* pFormat, ...);
    std::string TakeError();

    bool connected = false;
    std::unique_ptr<ClientApi> pClient;
    Error error; // of Init and Final
    std::string m_errorStr;
    bool errorIsNew = false;

private:
    bool Init();
};
