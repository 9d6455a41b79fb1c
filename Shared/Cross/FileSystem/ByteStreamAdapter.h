#pragma once

#include "Shared/Cross/FileSystem/ByteStream.h"

#include <limits>
#include <type_traits>

// The hook for a platform with another byte order. None exists in this system.
class ByteStreamConverter {
public:
    virtual ~ByteStreamConverter() = default;
    // `count` elements of `elementSize` bytes each; the bytes moved come back.
    virtual uint32_t Read(ByteStream& stream, void* pDest, uint32_t elementSize, uint32_t count) = 0;
    virtual uint32_t Write(ByteStream& stream, const void* pSource, uint32_t elementSize, uint32_t count) = 0;
    // The number that a chunky file's header records.
    virtual uint32_t GetPlatform() const = 0;
};

// What a stream moves as one element: every number, and an enumeration as the number it is.
template <typename T>
concept StreamScalar = (std::is_arithmetic_v<T> || std::is_enum_v<T>)&&!std::is_same_v<T, bool>;

// A stream and an optional converter, both the caller's; a plain value. Without a stream it stands for a file that
// couldn't be opened: reads and writes move nothing. Without a converter typed elements are native little-endian bytes.
class ByteStreamAdapter {
public:
    ByteStreamAdapter() = default;
    explicit ByteStreamAdapter(ByteStream* pStream, ByteStreamConverter* pConverter = nullptr)
        : m_pStream(pStream), m_pConverter(pConverter) {}

    ByteStream* GetStream() const { return m_pStream; }
    // 1 without a converter.
    uint32_t GetPlatform() const { return m_pConverter ? m_pConverter->GetPlatform() : 1; }

    // Raw bytes. As everywhere here, the bytes moved come back.
    uint32_t Read(void* pDest, uint32_t size) { return ReadElements(pDest, 1, size); }
    uint32_t Write(const void* pSource, uint32_t size) { return WriteElements(pSource, 1, size); }
    // `count` elements, not bytes, for a pointer to a number.
    template <StreamScalar T>
    uint32_t Read(T* pDest, uint32_t count) {
        return ReadElements(pDest, sizeof(T), count);
    }
    template <StreamScalar T>
    uint32_t Write(const T* pSource, uint32_t count) {
        return WriteElements(pSource, sizeof(T), count);
    }
    // One element; false unless all of it was moved. A failed read leaves the value undefined.
    template <StreamScalar T>
    bool ReadValue(T& value) {
        return Read(&value, 1) == sizeof(T);
    }
    template <StreamScalar T>
    bool WriteValue(const T& value) {
        return Write(&value, 1) == sizeof(T);
    }

    // See ByteStream::Flush: false when anything written got lost.
    bool Flush() { return m_pStream && m_pStream->Flush(); }
    bool Seek(uint32_t pos) { return m_pStream && m_pStream->Seek(pos); }
    uint32_t GetPos() { return m_pStream ? m_pStream->GetPos() : 0; }
    uint32_t GetLength() { return m_pStream ? m_pStream->GetLength() : 0; }
    ByteStream::Mode GetMode() const { return m_pStream ? m_pStream->GetMode() : ByteStream::Mode_None; }
    const char* GetName() const { return m_pStream ? m_pStream->GetName() : ""; }

    // A uint32 count and that many characters, without a terminator. False on a short write.
    bool WriteString(const char* pText);
    bool WriteWString(const char16_t* pText);
    // The buffer holds maxLen + 1 characters and gets a terminated string. False when the count can't be read; a count
    // over maxLen throws ByteStream::Exception "String buffer overrun!". Characters that the stream lacks are NUL.
    bool ReadString(char* pOut, uint32_t maxLen);
    bool ReadWString(char16_t* pOut, uint32_t maxLen);

private:
    uint32_t ReadElements(void* pDest, uint32_t elementSize, uint32_t count);
    uint32_t WriteElements(const void* pSource, uint32_t elementSize, uint32_t count);

    ByteStream* m_pStream = nullptr;
    ByteStreamConverter* m_pConverter = nullptr;
};
