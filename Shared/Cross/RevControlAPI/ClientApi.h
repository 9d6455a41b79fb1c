#pragma once

#include <span>
#include <string>
#include <utility>

// What the system asks of a client of the revision control server.

// Why a connection failed.
class Error {
public:
    void Clear() { m_Text.clear(); }
    void Set(std::string text) { m_Text = std::move(text); }
    bool Test() const { return !m_Text.empty(); } // true for an error
    const std::string& GetText() const { return m_Text; }

private:
    std::string m_Text;
};

// Is handed the answers of one command as they come. Each text is one message, without its final line end; it may have
// several lines.
class ClientUser {
public:
    virtual ~ClientUser() = default;
    // A form that the command asks for.
    virtual void InputData(std::string& data, Error& error) = 0;
    virtual void OutputError(const char* pText) = 0;
    // The level is '0' for an answer, '1' and '2' for what belongs to the one above. A field of a tagged answer is its
    // name, a blank and its value.
    virtual void OutputInfo(char level, const char* pText) = 0;
    virtual void OutputText(const char* pText, int length) = 0;
};

// An argument of a command: a word that is passed on as it stands, or the name of a file in the system's form, which is
// translated on its way to the server.
struct ClientArgument {
    ClientArgument(std::string word) : text(std::move(word)) {}
    ClientArgument(const char* pWord) : text(pWord) {}
    static ClientArgument File(std::string name) {
        ClientArgument argument(std::move(name));
        argument.isFile = true;
        return argument;
    }

    std::string text;
    bool isFile = false;
};

// A connection. User, client, password and tickets are its own affair: it finds them in its environment.
class ClientApi {
public:
    virtual ~ClientApi() = default;
    // Empty for the environment's.
    virtual void SetPort(const char* pPort) = 0;
    virtual void Init(Error& error) = 0;
    virtual void Final(Error& error) = 0;
    // Whether the connection has broken since Init.
    virtual bool Dropped() = 0;
    // The arguments of the next command.
    virtual void SetArgv(std::span<const ClientArgument> arguments) = 0;
    // What goes wrong is an OutputError, or shows in Dropped.
    virtual void Run(const char* pCommand, ClientUser& user) = 0;
    // Known after Init.
    virtual const std::string& GetClient() const = 0;
    virtual const std::string& GetUser() const = 0;
};
