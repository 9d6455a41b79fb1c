#pragma once

#include "Shared/Cross/Util/FixedString.h"

#include <cstdint>
#include <stdexcept>

// A sequence of bytes with a position: a file, a block of memory or a message. Positions and sizes are 32-bit, so no
// stream exceeds 4 GB. Failures of reading and writing are short counts and false; assertions mark a caller's mistake.
// A stream belongs to one thread at a time.
class ByteStream {
public:
    enum Mode : uint32_t {
        Mode_None = 0,
        Mode_Read = 1,
        Mode_Write = 2,
        Mode_Both = 3,
    };

    // A stored length that overruns the caller's buffer.
    class Exception : public std::runtime_error {
    public:
        Exception(int32_t code, const char* pText) : std::runtime_error(pText), m_Code(code) {}
        int32_t GetCode() const { return m_Code; }

    private:
        int32_t m_Code;
    };

    static constexpr uint32_t MaxNameLength = 260;

    ByteStream() = default;
    virtual ~ByteStream() = default;
    ByteStream(const ByteStream&) = delete;
    ByteStream& operator=(const ByteStream&) = delete;

    // The name is the file's name for a disk stream and empty otherwise; a longer one is cut. Answers the name as kept,
    // good until the next SetName.
    virtual const char* SetName(const char* pName);
    const char* GetName() const { return m_Name.GetText(); }

    // Both give the bytes moved.
    virtual uint32_t Read(void* pDest, uint32_t size) = 0;
    virtual uint32_t Write(const void* pSource, uint32_t size) = 0;
    // Hands to the system whatever the stream holds back, so that it outlives a crash of the process. False when
    // anything written since the stream was opened didn't get there (a full disk): whoever writes a file asks this
    // once, at its end, in place of looking at each count.
    virtual bool Flush() = 0;
    // To an absolute position. False leaves the position where it was.
    virtual bool Seek(uint32_t pos) = 0;
    virtual uint32_t GetPos() = 0;
    virtual uint32_t GetLength() = 0;
    virtual void SetMode(Mode newMode);
    Mode GetMode() const { return m_Mode; }

    // A stored string is a uint32 count of characters and the characters, without a terminator. The buffer has to hold
    // maxLen + 1 characters; it gets a terminated string, empty on failure. A count over maxLen is an assertion and
    // false with the position behind the string; a count or characters that can't be read are false.
    bool ReadString(char* pOut, uint32_t maxLen);
    // The same in 16-bit characters, but a count over maxLen throws Exception "String buffer overrun!".
    bool ReadWString(char16_t* pOut, uint32_t maxLen);

    // Text with each of its line ends (CR LF, CR or LF) written as CR LF, and one more at the end if addLineEnd.
    // False on a short write.
    bool WriteText(const char* pText, bool addLineEnd);
    // The same for a formatted text, which is cut at 1023 bytes.
    [[gnu::format(printf, 2, 3)]] bool Printf(const char* pFormat, ...);

private:
    Mode m_Mode = Mode_None;
    FixedString<MaxNameLength> m_Name;
};
