#pragma once

#include <string>
#include <vector>

#include <sys/socket.h>
#include <sys/un.h>

// A descriptor of the system, closed with its object.
class Descriptor {
public:
    explicit Descriptor(int value = -1) : m_Value(value) {}
    ~Descriptor() { Set(-1); }
    Descriptor(Descriptor&& other) noexcept : m_Value(other.Release()) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        Set(other.Release());
        return *this;
    }

    explicit operator bool() const { return m_Value >= 0; }
    int Get() const { return m_Value; }
    int Release();
    void Set(int value);

private:
    int m_Value;
};

// The folder in which the servers of named pipes offer them: for each a socket, "name.<process>.<number>".
class PipeFolder {
public:
    // Makes it if need be. False for a folder that others than the user can enter, and for one without a full path.
    bool Open();

    // A socket that listens under a name of this process's own, for one client at a time. False when it can't be made.
    bool Offer(const std::string& pipeName, Descriptor& listener, std::string& offer) const;
    void Withdraw(const std::string& offer) const;
    // What killed servers have left.
    void ClearStale(const std::string& pipeName) const;
    // Those of that process, in order.
    std::vector<std::string> FindOffers(const std::string& pipeName, int process) const;
    // errno tells why it failed; EAGAIN for a server that has a client.
    bool Connect(const std::string& offer, Descriptor& socket) const;

private:
    std::vector<std::string> List(const std::string& pipeName) const;
    sockaddr_un GetAddress(const std::string& offer) const;

    Descriptor m_Folder;
};
