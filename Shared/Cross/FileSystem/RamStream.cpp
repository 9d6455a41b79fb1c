#include "Shared/Cross/FileSystem/RamStream.h"

#include "Shared/Cross/Debug/db.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>

namespace {

constexpr uint64_t s_SmallestGrowth = 16;
constexpr uint64_t s_LargestPosition = std::numeric_limits<uint32_t>::max();

} // namespace

RamStream::~RamStream() {
    if (m_Owned)
        delete[] m_buffer;
}

bool RamStream::Create(uint32_t bufsize, Mode mode) {
    if (bufsize == 0 || m_buffer) {
        dbBreak();
        return false;
    }
    m_buffer = new (std::nothrow) uint8_t[bufsize]();
    if (!m_buffer)
        return false;
    m_Capacity = bufsize;
    m_streamsize = mode == Mode_Read ? bufsize : 0;
    m_Owned = true;
    m_Growable = true;
    m_Position = 0;
    SetMode(mode);
    return true;
}

bool RamStream::Attach(void* pBuffer, uint32_t size, bool takeOwnership, Mode mode) {
    dbAssert(pBuffer);
    dbAssert(mode == Mode_Read || mode == Mode_Write);
    if (!pBuffer || (mode != Mode_Read && mode != Mode_Write))
        return false;
    if (m_Owned && m_buffer != pBuffer)
        delete[] m_buffer;
    m_buffer = static_cast<uint8_t*>(pBuffer);
    m_Capacity = size;
    m_streamsize = size;
    m_Owned = takeOwnership;
    m_Growable = false;
    m_bufUnboundedRead = false;
    m_Position = 0;
    SetMode(mode);
    return true;
}

bool RamStream::AttachUnbounded(void* pBuffer, bool takeOwnership) {
    if (!Attach(pBuffer, 0, takeOwnership, Mode_Read))
        return false;
    m_bufUnboundedRead = true;
    return true;
}

std::unique_ptr<uint8_t[]> RamStream::Detach() {
    if (!m_buffer || !m_Owned) {
        dbBreak();
        return nullptr;
    }
    std::unique_ptr<uint8_t[]> pBuffer(m_buffer);
    Reset();
    return pBuffer;
}

void RamStream::Reset() {
    m_buffer = nullptr;
    m_Capacity = 0;
    m_streamsize = 0;
    m_Owned = false;
    m_Growable = false;
    m_bufUnboundedRead = false;
    m_Position = 0;
    SetMode(Mode_None);
}

uint8_t* RamStream::GetBuffer() {
    dbAssert(m_buffer);
    return m_buffer;
}

uint32_t RamStream::Read(void* pDest, uint32_t size) {
    dbAssert(m_buffer);
    if (!m_buffer)
        return 0;
    if (!(GetMode() & Mode_Read)) {
        dbBreak();
        return 0;
    }
    dbAssert(m_bufUnboundedRead || GetPos() <= m_streamsize);
    const uint64_t end = m_bufUnboundedRead ? s_LargestPosition : std::max(m_streamsize, m_Position);
    const auto count = static_cast<uint32_t>(std::min<uint64_t>(size, end - m_Position));
    if (count > 0)
        std::memcpy(pDest, m_buffer + m_Position, count);
    m_Position += count;
    return count;
}

uint32_t RamStream::Write(const void* pSource, uint32_t size) {
    dbAssert(m_buffer);
    if (!m_buffer)
        return 0;
    if (!(GetMode() & Mode_Write)) {
        dbBreak();
        return 0;
    }
    const uint64_t end = uint64_t{m_Position} + size;
    if (end > m_Capacity && !Grow(end))
        return 0;
    if (size > 0)
        std::memcpy(m_buffer + m_Position, pSource, size);
    m_Position = static_cast<uint32_t>(end);
    m_streamsize = std::max(m_streamsize, m_Position);
    return size;
}

bool RamStream::Grow(uint64_t desiredSize) {
    if (!m_Growable) {
        dbBreak();
        return false;
    }
    dbAssertText(desiredSize < (1 << 24), "desiredSize < ( 1 << 24 )");
    if (desiredSize >= (1 << 24))
        return false;
    uint64_t capacity = s_SmallestGrowth;
    while (capacity <= desiredSize)
        capacity *= 2;
    auto* pGrown = new (std::nothrow) uint8_t[capacity];
    if (!pGrown)
        return false;
    std::memcpy(pGrown, m_buffer, m_streamsize);
    delete[] m_buffer; // only a buffer of our own grows
    m_buffer = pGrown;
    m_Capacity = static_cast<uint32_t>(capacity);
    return true;
}

bool RamStream::Seek(uint32_t pos) {
    if (!m_bufUnboundedRead && pos > m_streamsize) {
        dbBreak();
        return false;
    }
    m_Position = pos;
    return true;
}
