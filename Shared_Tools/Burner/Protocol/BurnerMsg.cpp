#include "Shared_Tools/Burner/Protocol/BurnerMsg.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace {

constexpr uint32_t s_MinString = 4;      // its length alone
constexpr uint32_t s_MinListMessage = 8; // its kind and an empty text

// Sizes of the fixed blocks; see BurnerMsg.h.
constexpr uint32_t s_SetupSize = 264;
constexpr uint32_t s_ReadySize = 4;
constexpr uint32_t s_RequestSize = 528;

bool WriteFixedText(ByteStreamAdapter& stream, const std::string& text) {
    char field[s_BurnerFixedText] = {};
    text.copy(field, sizeof field - 1);
    return stream.Write(field, sizeof field) == sizeof field;
}

// What has no end within its width isn't such a text.
bool ReadFixedText(ByteStreamAdapter& stream, std::string& text) {
    char field[s_BurnerFixedText];
    if (stream.Read(field, sizeof field) != sizeof field || !std::memchr(field, 0, sizeof field))
        return false;
    text = field;
    return true;
}

// False ahead of a message that would be too long to be sent.
bool WriteString(ByteStreamAdapter& stream, const std::string& text) {
    return uint64_t{stream.GetPos()} + s_MinString + text.size() < NamedPipeMsg::s_MaxMessageSize &&
           stream.WriteString(text.c_str());
}

// Throws for a string that is too long.
bool ReadString(ByteStreamAdapter& stream, std::string& text) {
    if (stream.GetLength() - stream.GetPos() < s_MinString)
        return false;
    char buffer[s_BurnerMaxString + 1];
    const uint32_t start = stream.GetPos();
    uint32_t length = 0;
    if (!stream.ReadValue(length) || !stream.Seek(start) || !stream.ReadString(buffer, s_BurnerMaxString))
        return false;
    text = buffer;
    return stream.GetPos() == start + sizeof length + length;
}

bool WriteByte(ByteStreamAdapter& stream, bool value) { return stream.WriteValue(static_cast<uint8_t>(value ? 1 : 0)); }

bool ReadByte(ByteStreamAdapter& stream, bool& value) {
    uint8_t byte = 0;
    const bool isRead = stream.ReadValue(byte);
    value = byte != 0;
    return isRead;
}

// A count is a claim; what is left has to have room for the least of so many.
bool ReadCount(ByteStreamAdapter& stream, uint32_t minSize, uint32_t& count) {
    return stream.ReadValue(count) && count <= (stream.GetLength() - stream.GetPos()) / minSize;
}

bool WriteMessages(ByteStreamAdapter& stream, const BurnerMessageList& messages) {
    return stream.WriteValue(static_cast<uint32_t>(messages.size())) &&
           std::ranges::all_of(messages, [&](const BurnerMessage& message) {
               return stream.WriteValue(message.kind) && WriteString(stream, message.text);
           });
}

bool ReadMessages(ByteStreamAdapter& stream, BurnerMessageList& messages) {
    uint32_t count = 0;
    if (!ReadCount(stream, s_MinListMessage, count))
        return false;
    for (uint32_t i = 0; i < count; ++i) {
        BurnerMessage message;
        if (!stream.ReadValue(message.kind) || !ReadString(stream, message.text))
            return false;
        messages.push_back(std::move(message));
    }
    return true;
}

bool IsAtEnd(ByteStreamAdapter& stream) { return stream.GetPos() == stream.GetLength(); }

} // namespace

bool BurnerSetupMsg::Write(ByteStreamAdapter& stream) const {
    return WriteFixedText(stream, pipelinePath) && stream.WriteValue(setupValue);
}

bool BurnerSetupMsg::Read(const NamedPipeRawMsg& msg, ByteStreamAdapter& stream) {
    dbAssertText(s_SetupSize == msg.GetMessageSize(), "sizeof(T) == msg.GetMessageSize()");
    return s_SetupSize == msg.GetMessageSize() && ReadFixedText(stream, pipelinePath) && stream.ReadValue(setupValue);
}

bool BurnerReadyMsg::Write(ByteStreamAdapter& stream) const { return stream.WriteValue(version); }

bool BurnerReadyMsg::Read(const NamedPipeRawMsg& msg, ByteStreamAdapter& stream) {
    dbAssertText(s_ReadySize == msg.GetMessageSize(), "sizeof(T) == msg.GetMessageSize()");
    return s_ReadySize == msg.GetMessageSize() && stream.ReadValue(version);
}

template <uint32_t Type>
bool BurnerListMsg<Type>::Write(ByteStreamAdapter& stream) const {
    return WriteMessages(stream, messages);
}

template <uint32_t Type>
bool BurnerListMsg<Type>::Read(const NamedPipeRawMsg&, ByteStreamAdapter& stream) {
    return ReadMessages(stream, messages) && IsAtEnd(stream);
}

template struct BurnerListMsg<BurnerErrorMsg::MSG_TYPE>;
template struct BurnerListMsg<BurnerUpdateMsg::MSG_TYPE>;

bool BurnRequestMsg::Write(ByteStreamAdapter& stream) const {
    return stream.WriteValue(changelist) && WriteFixedText(stream, directory) && WriteFixedText(stream, pattern) &&
           std::ranges::all_of(flags, [&](bool flag) { return WriteByte(stream, flag); });
}

bool BurnRequestMsg::Read(const NamedPipeRawMsg& msg, ByteStreamAdapter& stream) {
    dbAssertText(s_RequestSize == msg.GetMessageSize(), "sizeof(T) == msg.GetMessageSize()");
    return s_RequestSize == msg.GetMessageSize() && stream.ReadValue(changelist) && ReadFixedText(stream, directory) &&
           ReadFixedText(stream, pattern) &&
           std::ranges::all_of(flags, [&](bool& flag) { return ReadByte(stream, flag); });
}

template <uint32_t Type>
bool BurnListMsg<Type>::Write(ByteStreamAdapter& stream) const {
    return stream.WriteValue(changelist) && stream.WriteValue(static_cast<uint32_t>(files.size())) &&
           std::ranges::all_of(files, [&](const std::string& file) { return WriteString(stream, file); });
}

template <uint32_t Type>
bool BurnListMsg<Type>::Read(const NamedPipeRawMsg&, ByteStreamAdapter& stream) {
    uint32_t count = 0;
    if (!stream.ReadValue(changelist) || !ReadCount(stream, s_MinString, count))
        return false;
    files.resize(count);
    return std::ranges::all_of(files, [&](std::string& file) { return ReadString(stream, file); }) && IsAtEnd(stream);
}

template struct BurnListMsg<BurnFileListMsg::MSG_TYPE>;
template struct BurnListMsg<BurnUpdateFileListMsg::MSG_TYPE>;

bool BurnerResultMsg::Write(ByteStreamAdapter& stream) const {
    return stream.WriteValue(result) && WriteByte(stream, ignored) && WriteMessages(stream, messages);
}

bool BurnerResultMsg::Read(const NamedPipeRawMsg&, ByteStreamAdapter& stream) {
    return stream.ReadValue(result) && ReadByte(stream, ignored) && ReadMessages(stream, messages) && IsAtEnd(stream);
}
