#include "Shared/Cross/FileSystem/ByteStreamAdapter.h"

#include "Shared/Cross/Debug/db.h"

#include <algorithm>
#include <limits>
#include <string_view>

namespace {

bool FitsStream(uint32_t elementSize, uint32_t count) {
    const bool fits = count <= std::numeric_limits<uint32_t>::max() / elementSize;
    dbAssertText(fits, "count <= maximum / elementSize");
    return fits;
}

template <typename T>
bool WriteCounted(ByteStreamAdapter& adapter, const T* pText) {
    dbAssert(pText);
    if (!pText)
        return false;
    const auto count = static_cast<uint32_t>(std::basic_string_view<T>(pText).size());
    return adapter.WriteValue(count) && adapter.Write(pText, count) == count * sizeof(T);
}

template <typename T>
bool ReadCounted(ByteStreamAdapter& adapter, T* pOut, uint32_t maxLen) {
    pOut[0] = T();
    uint32_t count = 0;
    if (!adapter.ReadValue(count))
        return false;
    if (count > maxLen)
        throw ByteStream::Exception(0, "String buffer overrun!");
    const uint32_t got = adapter.Read(pOut, count) / static_cast<uint32_t>(sizeof(T));
    std::fill(pOut + got, pOut + count + 1, T());
    return true;
}

} // namespace

uint32_t ByteStreamAdapter::ReadElements(void* pDest, uint32_t elementSize, uint32_t count) {
    if (!m_pStream || !FitsStream(elementSize, count))
        return 0;
    return m_pConverter ? m_pConverter->Read(*m_pStream, pDest, elementSize, count)
                        : m_pStream->Read(pDest, elementSize * count);
}

uint32_t ByteStreamAdapter::WriteElements(const void* pSource, uint32_t elementSize, uint32_t count) {
    if (!m_pStream || !FitsStream(elementSize, count))
        return 0;
    return m_pConverter ? m_pConverter->Write(*m_pStream, pSource, elementSize, count)
                        : m_pStream->Write(pSource, elementSize * count);
}

bool ByteStreamAdapter::WriteString(const char* pText) { return WriteCounted(*this, pText); }

bool ByteStreamAdapter::WriteWString(const char16_t* pText) { return WriteCounted(*this, pText); }

bool ByteStreamAdapter::ReadString(char* pOut, uint32_t maxLen) { return ReadCounted(*this, pOut, maxLen); }

bool ByteStreamAdapter::ReadWString(char16_t* pOut, uint32_t maxLen) { return ReadCounted(*this, pOut, maxLen); }
