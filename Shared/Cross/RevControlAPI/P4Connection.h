#pragma once

#include "Shared/Cross/RevControlAPI/ClientApi.h"
#include "Shared/Cross/RevControlAPI/RevClientUser.h"
#include "Shared/Cross/RevControlAPI/RevControlP4.h"

#include <initializer_list>
#include <string_view>

inline std::string InQuotes(const std::string& text) { return "'" + text + "'"; }

// The connection of a RevControlP4, and the text of its last failure.
struct RevControlP4::Connection {
    explicit Connection(std::unique_ptr<ClientApi> pGivenClient) : pClient(std::move(pGivenClient)) {}

    bool Connect(const char* pPort);
    void Disconnect();
    // False when there is no connection; one that broke is made anew, once. What comes is in the user.
    bool Run(const char* pCommand, std::span<const ClientArgument> arguments, RevClientUser& user);

    // Runs a command, whose first answer has to hold one of the phrases. Otherwise the text is the failure's, with that
    // answer behind it if there is one.
    bool RunAndJudge(const char* pCommand, std::span<const ClientArgument> arguments,
                     std::initializer_list<std::string_view> phrases, const std::string& failure);

    // Keeps the text, in place of the last one, and answers false.
    bool Fail(std::string text);
    bool FailWithAnswer(const std::string& text, const std::string& answer);
    std::string TakeError();

    bool connected = false;
    std::unique_ptr<ClientApi> pClient;
    Error error; // of Init and Final
    std::string m_errorStr;
    bool errorIsNew = false;

private:
    bool Init();
};
