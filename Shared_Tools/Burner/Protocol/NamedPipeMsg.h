#pragma once

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/FileSystem/ByteStreamAdapter.h"
#include "Shared/Cross/FileSystem/RamStream.h"

#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

class NamedPipe;

// A message as it came: its type, and the bytes behind it.
class NamedPipeRawMsg {
public:
    NamedPipeRawMsg() = default;
    NamedPipeRawMsg(uint32_t type, std::vector<uint8_t> bytes) : m_Type(type), m_Bytes(std::move(bytes)) {}

    uint32_t GetType() const { return m_Type; }
    uint32_t GetMessageSize() const { return static_cast<uint32_t>(m_Bytes.size()); }
    const std::vector<uint8_t>& GetBytes() const { return m_Bytes; }

private:
    uint32_t m_Type = 0;
    std::vector<uint8_t> m_Bytes;
};

// Typed messages over a pipe. A message's class T has the number T::MSG_TYPE and
//     bool Write(ByteStreamAdapter& stream) const;      false on a short write
//     bool Read(const NamedPipeRawMsg& raw, ByteStreamAdapter& stream);   false for bytes that aren't such a message
// where Read may throw ByteStream::Exception for a text that is too long.
namespace NamedPipeMsg {

// No message of this system comes near it: a longer one isn't read.
constexpr uint32_t s_MaxMessageSize = 16u << 20;
constexpr uint32_t s_StreamSize = 4096;

// False when the pipe doesn't take the message.
bool SendStream(NamedPipe& pipe, RamStream& stream);

// The next message. False when the other side is gone, for less than a type and for more than s_MaxMessageSize; `raw`
// is then empty.
bool ReadMsg(NamedPipe& pipe, NamedPipeRawMsg& raw);

template <class T>
bool BuildMsg(RamStream& stream, const T& msg) {
    ByteStreamAdapter adapter(&stream);
    return stream.Create(s_StreamSize, ByteStream::Mode_Both) && adapter.WriteValue(T::MSG_TYPE) && msg.Write(adapter);
}

// False too for a message that is too long to be sent.
template <class T>
bool SendMsg(NamedPipe& pipe, const T& msg) {
    RamStream stream;
    return BuildMsg(stream, msg) && SendStream(pipe, stream);
}

template <class T>
bool IsMsg(const NamedPipeRawMsg& raw) {
    return raw.GetType() == T::MSG_TYPE;
}

// Asking for another type than came is the caller's mistake, and leaves `out` alone. False for it and for bytes that
// aren't such a message; throws ByteStream::Exception for a text that is too long.
template <class T>
bool ParseMsg(const NamedPipeRawMsg& msg, T& out) {
    dbAssert(T::MSG_TYPE == msg.GetType());
    if (T::MSG_TYPE != msg.GetType())
        return false;
    RamStream stream;
    ByteStreamAdapter adapter; // of nothing, for a message that is only a type
    if (msg.GetMessageSize() > 0) {
        // The stream is for reading only.
        stream.Attach(const_cast<uint8_t*>(msg.GetBytes().data()), msg.GetMessageSize(), false, ByteStream::Mode_Read);
        adapter = ByteStreamAdapter(&stream);
    }
    return out.Read(msg, adapter);
}

} // namespace NamedPipeMsg
