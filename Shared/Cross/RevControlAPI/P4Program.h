#pragma once

#include "Shared/Cross/RevControlAPI/ClientApi.h"

#include <chrono>
#include <vector>

class P4Answers;

// A client by way of the p4 program, which is run once for each command. Settings come from the environment:
//   PVX_P4        the program; without it, p4 in the folders of PATH
//   PVX_P4_LIMIT  how many seconds the server may be silent; without it, 300
// A command that gets no answer for so long is ended, as is one that isn't through in twelve times of it, and one whose
// program can't be run or breaks off. Such a command answers with an error that says so, in the log too, and counts as
// a dropped connection.
class P4Program : public ClientApi {
public:
    void SetPort(const char* pPort) override { m_Port = pPort; }
    // Asks the server who and where we are.
    void Init(Error& error) override;
    void Final(Error& error) override;
    bool Dropped() override { return m_Dropped; }
    void SetArgv(std::span<const ClientArgument> arguments) override;
    void Run(const char* pCommand, ClientUser& user) override;
    const std::string& GetClient() const override { return m_Client; }
    const std::string& GetUser() const override { return m_User; }

private:
    void Execute(const std::string& command, ClientUser& user, std::chrono::milliseconds limit);
    std::string Execute(const std::vector<std::string>& words, const std::string& input, P4Answers& answers,
                        std::chrono::milliseconds limit) const;

    std::string m_Port;
    std::string m_Client;
    std::string m_User;
    std::vector<std::string> m_Arguments; // as the program wants them
    bool m_Dropped = false;
};
