#include "Shared/Cross/FileSystem/ByteStream.h"

#include "Shared/Cross/Debug/db.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <limits>
#include <string_view>

namespace {

constexpr size_t s_PrintfSize = 1024;

// Over `size` bytes, or as far as the stream goes: a stored length may be a lie. One that stands behind its own length
// tells nothing of where it ends.
void SkipBytes(ByteStream& stream, uint64_t size) {
    const uint64_t pos = stream.GetPos();
    const uint64_t length = stream.GetLength();
    const uint64_t end = pos <= length ? length : std::numeric_limits<uint32_t>::max();
    stream.Seek(static_cast<uint32_t>(std::min(pos + size, end)));
}

bool WriteAll(ByteStream& stream, std::string_view text) {
    const auto size = static_cast<uint32_t>(text.size());
    return size == 0 || stream.Write(text.data(), size) == size;
}

bool WriteNormalised(ByteStream& stream, std::string_view text) {
    while (!text.empty()) {
        const size_t end = text.find_first_of("\r\n");
        if (!WriteAll(stream, text.substr(0, end)))
            return false;
        if (end == std::string_view::npos)
            return true;
        if (!WriteAll(stream, "\r\n"))
            return false;
        text.remove_prefix(end + (text.substr(end).starts_with("\r\n") ? 2 : 1));
    }
    return true;
}

} // namespace

const char* ByteStream::SetName(const char* pName) {
    const bool fits = m_Name.Assign(pName ? pName : "");
    dbAssertText(fits, "T::length( rhs ) <= LEN");
    return m_Name.GetText();
}

void ByteStream::SetMode(Mode NewMode) {
    dbAssert(NewMode == Mode_None || NewMode == Mode_Read || NewMode == Mode_Write || NewMode == Mode_Both);
    m_Mode = NewMode;
}

bool ByteStream::ReadString(char* pOut, uint32_t maxLen) {
    pOut[0] = '\0';
    uint32_t count = 0;
    if (Read(&count, sizeof(count)) != sizeof(count))
        return false;
    if (count > maxLen) {
        dbBreak();
        SkipBytes(*this, count);
        return false;
    }
    const bool complete = Read(pOut, count) == count;
    pOut[complete ? count : 0] = '\0';
    return complete;
}

bool ByteStream::ReadWString(char16_t* pOut, uint32_t maxLen) {
    pOut[0] = u'\0';
    uint32_t count = 0;
    if (Read(&count, sizeof(count)) != sizeof(count))
        return false;
    if (count > maxLen)
        throw Exception(0, "String buffer overrun!");
    const auto size = static_cast<uint32_t>(count * sizeof(char16_t));
    const bool complete = Read(pOut, size) == size;
    pOut[complete ? count : 0] = u'\0';
    return complete;
}

bool ByteStream::WriteText(const char* pText, bool addLineEnd) {
    return WriteNormalised(*this, pText) && (!addLineEnd || WriteAll(*this, "\r\n"));
}

bool ByteStream::Printf(const char* pFormat, ...) {
    char buffer[s_PrintfSize];
    va_list arguments;
    va_start(arguments, pFormat);
    const int length = std::vsnprintf(buffer, sizeof(buffer), pFormat, arguments);
    va_end(arguments);
    return length >= 0 && WriteNormalised(*this, buffer);
}
