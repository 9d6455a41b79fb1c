#include "Shared/PC/FileSystem/DiskFileStream.h"

#include "Shared/Cross/Debug/db.h"
#include "Shared/PC/FileSystem/BufferedDiskFileStream.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

namespace {

// Large enough that the system call no longer matters, small enough to stay in the cache until it is written.
constexpr uint32_t s_BlockCapacity = 256 * 1024;
constexpr uint64_t s_LargestFile = std::numeric_limits<uint32_t>::max();

OSFile::OpenMode ToOSMode(ByteStream::Mode mode) {
    switch (mode) {
    case ByteStream::Mode_Write:
        return OSFile::Open_Write;
    case ByteStream::Mode_Both:
        return OSFile::Open_ReadWrite;
    default:
        return OSFile::Open_Read;
    }
}

} // namespace

DiskFileStream::~DiskFileStream() {
    const dbNoThrowScope noThrow;
    if (IsOpen())
        DiskFileStream::Close();
}

bool DiskFileStream::Open(const char* pName, Mode openMode, bool share) {
    if (!OpenHandle(pName, openMode, share))
        return false;
    // Where the system has put the position: at the end for Mode_Both.
    m_Pos = openMode == Mode_Both ? m_Length : 0;
    return true;
}

bool DiskFileStream::OpenHandle(const char* pName, Mode openMode, bool share) {
    if (IsOpen())
        Close();
    dbAssert(openMode == Mode_Read || openMode == Mode_Write || openMode == Mode_Both);
    if (openMode == Mode_None)
        return false;
    uint64_t size = 0;
    m_Handle = OSFile::Open(pName, ToOSMode(openMode), share, false, &size);
    if (!IsOpen())
        return false;
    if (size > s_LargestFile) {
        dbWarningf("FILESYSTEM -- '%s' is larger than 4 GB, which is more than can be read", pName);
        OSFile::Close(m_Handle);
        m_Handle = {};
        return false;
    }
    m_Length = static_cast<uint32_t>(size);
    m_Pos = 0;
    m_Lost = false;
    SetMode(openMode);
    SetName(pName);
    return true;
}

bool DiskFileStream::Close() {
    if (!IsOpen()) {
        dbBreak();
        return false;
    }
    const bool written = FlushBlock();
    const bool closed = OSFile::Close(m_Handle);
    if (!closed && !m_Lost)
        Lose(OSFile::LastErrorText().c_str());
    m_Handle = {};
    m_Pos = 0;
    m_Length = 0;
    m_BlockSize = 0;
    SetMode(Mode_None);
    SetName("");
    return written && closed;
}

bool DiskFileStream::CheckMode(Mode wanted) const {
    if (IsOpen() && (GetMode() & wanted))
        return true;
    dbBreak();
    return false;
}

uint32_t DiskFileStream::Read(void* pDest, uint32_t size) {
    if (!CheckMode(Mode_Read) || !FlushBlock())
        return 0;
    const auto room = static_cast<uint32_t>(s_LargestFile) - m_Pos;
    const uint32_t got = OSFile::ReadAt(m_Handle, m_Pos, pDest, std::min(size, room));
    m_Pos += got;
    return got;
}

uint32_t DiskFileStream::Write(const void* pSource, uint32_t size) {
    if (!CheckMode(Mode_Write) || m_Lost || size == 0)
        return 0;
    if (uint64_t{m_Pos} + size > s_LargestFile) {
        Lose("a file can't grow beyond 4 GB");
        return 0;
    }
    // The block takes what starts inside it or right behind it. What lies wholly ahead of it, such as a size that is
    // filled in late, goes out alone and leaves the block as it is.
    const bool isAhead = m_BlockSize > 0 && uint64_t{m_Pos} + size <= m_BlockPos;
    if (!(isAhead ? WriteOut(m_Pos, pSource, size) : WriteBlocked(pSource, size)))
        return 0;
    m_Pos += size;
    m_Length = std::max(m_Length, m_Pos);
    return size;
}

bool DiskFileStream::WriteBlocked(const void* pSource, uint32_t size) {
    if (m_Pos < m_BlockPos || m_Pos - m_BlockPos > m_BlockSize) {
        if (!FlushBlock())
            return false;
    }
    if (m_BlockSize == 0)
        m_BlockPos = m_Pos;
    const auto* pBytes = static_cast<const uint8_t*>(pSource);
    const uint32_t at = m_Pos - m_BlockPos;
    const uint32_t fits = std::min(size, s_BlockCapacity - at);
    // Bulk data isn't copied first.
    if (at == 0 && m_BlockSize == 0 && size >= s_BlockCapacity)
        return WriteOut(m_Pos, pSource, size);
    if (!m_pBlock)
        m_pBlock = std::make_unique_for_overwrite<uint8_t[]>(s_BlockCapacity);
    if (fits > 0)
        std::memcpy(m_pBlock.get() + at, pBytes, fits);
    m_BlockSize = std::max(m_BlockSize, at + fits);
    if (fits == size)
        return true;
    // The block is full.
    if (!FlushBlock())
        return false;
    const uint32_t left = size - fits;
    m_BlockPos = m_Pos + fits;
    if (left >= s_BlockCapacity)
        return WriteOut(m_BlockPos, pBytes + fits, left);
    std::memcpy(m_pBlock.get(), pBytes + fits, left);
    m_BlockSize = left;
    return true;
}

bool DiskFileStream::WriteOut(uint32_t pos, const void* pSource, uint32_t size) {
    if (OSFile::WriteAt(m_Handle, pos, pSource, size) == size)
        return true;
    Lose(OSFile::LastErrorText().c_str());
    return false;
}

bool DiskFileStream::FlushBlock() {
    const uint32_t size = std::exchange(m_BlockSize, 0);
    if (size > 0 && !m_Lost)
        WriteOut(m_BlockPos, m_pBlock.get(), size);
    return !m_Lost;
}

void DiskFileStream::Lose(const char* pReason) {
    m_Lost = true;
    m_BlockSize = 0;
    dbWarningf("FILESYSTEM -- failed to write '%s': %s", GetName(), pReason);
}

bool DiskFileStream::Flush() {
    if (!IsOpen()) {
        dbBreak();
        return false;
    }
    return FlushBlock();
}

bool DiskFileStream::Seek(uint32_t pos) {
    if (!IsOpen()) {
        dbBreak();
        return false;
    }
    m_Pos = pos;
    return true;
}

uint32_t DiskFileStream::GetPos() {
    if (!IsOpen())
        dbBreak();
    return m_Pos;
}

uint32_t DiskFileStream::GetLength() {
    if (!IsOpen())
        dbBreak();
    return m_Length;
}

std::unique_ptr<ByteStream> OpenFile(const char* pName, ByteStream::Mode mode, bool share) {
    std::unique_ptr<DiskFileStream> pStream;
    if (mode == ByteStream::Mode_Read)
        pStream = MakeBufferedDiskFileStream();
    else
        pStream = std::make_unique<DiskFileStream>();
    if (!pStream || !pStream->Open(pName, mode, share))
        return nullptr;
    return pStream;
}
