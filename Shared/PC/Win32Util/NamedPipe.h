#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

// One end of a duplex pipe that processes of one user and one machine meet at by its name. It carries messages: what
// one Write hands over is what the other side's Reads take, of any size that memory allows. Used by one thread.
//
// Here it is a local socket in a folder that only its user can enter: the one that the environment's PVX_PIPES names by
// its full path, otherwise one of the temporary files. Any number of servers may offer the same name, each to one
// client; a client takes that of the process that started it, or else of its own: several jobs at a time must not mix.
// A name is offered until the client has come or the server closes, and what a killed server leaves is cleared away by
// the next server.
class NamedPipe {
public:
    enum class Role : uint32_t { Server = 0, Client = 1 };

    // `machine` is for clients alone; empty or "." is this one, and no other can be reached.
    NamedPipe(const std::string& name, Role role, const std::string& machine = {});
    ~NamedPipe(); // closes
    NamedPipe(const NamedPipe&) = delete;
    NamedPipe& operator=(const NamedPipe&) = delete;

    // "\\.\pipe\name", or with the machine in the place of the point.
    const std::string& GetPath() const { return m_Path; }

    // The server offers the pipe; the client connects to it, waiting up to 2 s for one that is busy with another
    // client. False too if it is open already.
    bool Open();
    // Waits for the client without limit, but ends with false when `keepsWaiting`, which is asked every few
    // milliseconds, says so. The client's end is connected as soon as it is open.
    bool Connect(const std::function<bool()>& keepsWaiting = {});

    // Whether a message is waiting, with no wait. False when the pipe isn't connected or the other side is gone and
    // all that it sent has been read.
    bool Peek(bool& hasData);
    // Waits until there is something to read or the other side is gone. False when the time was over first.
    bool Wait(std::chrono::milliseconds limit);
    // One message, which isn't empty. Waits until the other side has room for it; false when that is gone.
    bool Write(const void* pData, uint32_t length);
    // Waits for a message and takes up to `length` bytes of it; `more` tells that it goes on, and then the next Read
    // takes on. False when the other side is gone.
    bool Read(void* pBuffer, uint32_t length, uint32_t& read, bool& more);
    // Whether the other side has taken all that was written; true too when it is gone.
    bool IsFlushed() const;
    // Whether the other side has taken so much of it that a small message needn't wait.
    bool HasRoom() const;

    // Drops what is waiting. The client's end first waits until the other side has taken all that was written or is
    // gone; what the server wrote stays readable.
    void Close();

private:
    struct Message;

    bool IsOpen() const { return m_hPipe >= 0; }
    bool OpenServer();
    bool OpenClient();
    bool Accept();
    bool ReceiveMessage();
    uint32_t GetUntaken() const;
    void Flush() const;
    void Withdraw();

    std::string m_Path;
    std::string m_Name;
    std::string m_Machine;
    Role m_Role;
    int m_hPipe = -1;    // listens as long as the server waits for its client
    std::string m_Offer; // the server's, under which it can be found; empty when it can't
    bool m_bConnected = false;
    bool m_bConnecting = false;
    std::unique_ptr<Message> m_pMessage; // the one that is being read
};
