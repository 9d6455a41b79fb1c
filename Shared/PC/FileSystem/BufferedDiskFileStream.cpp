#include "Shared/PC/FileSystem/BufferedDiskFileStream.h"

#include "Shared/Cross/Debug/db.h"
#include "Shared/PC/FileSystem/FixedSizeObjAllocator.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace {

// Makes a system call per field of a chunky file one per hundreds of fields.
constexpr uint32_t s_BufferCapacity = 0x40000;
// From here on a copy costs more than a system call.
constexpr uint32_t s_LeastDirect = 0x4000;

using FileSysPool = MMNamedPool<"FileSysMem", MMPoolKind::Heap, 0x10000>;

class BufferedDiskFileStream final : public DiskFileStream {
public:
    // From the slots of the allocator, since each object is as large as its buffer.
    static void* operator new(size_t, const std::nothrow_t&) noexcept;
    static void operator delete(void* pStream);
    static void operator delete(void* pStream, const std::nothrow_t&) { operator delete(pStream); }

    // User-provided, so that the buffer isn't cleared.
    BufferedDiskFileStream() {}

    bool Open(const char* pName, Mode openMode, bool share) override;
    uint32_t Read(void* pDest, uint32_t size) override;
    uint32_t Write(const void* pSource, uint32_t size) override;
    bool Seek(uint32_t pos) override;
    uint32_t GetPos() override;
    uint32_t GetLength() override;

private:
    void Fill();
    uint32_t ReadDirectly(void* pDest, uint32_t size);

    uint32_t m_FilePos = 0; // right behind the buffer's content
    uint32_t m_FileSize = 0;
    uint8_t m_Buffer[s_BufferCapacity];
    uint32_t m_bufferSize = 0;
    uint32_t m_currentBufferPosition = 0;
};

using Slots = FixedSizeObjAllocator<BufferedDiskFileStream, 4, FileSysPool>;

Slots& GetSlots() {
    static Slots s_Slots("__thiscall FixedSizeObjAllocator<class `anonymous namespace'::BufferedDiskFileStream,4>"
                         "::~FixedSizeObjAllocator(void)");
    return s_Slots;
}

void* BufferedDiskFileStream::operator new(size_t, const std::nothrow_t&) noexcept { return GetSlots().Allocate(); }

void BufferedDiskFileStream::operator delete(void* pStream) { GetSlots().Free(pStream); }

bool BufferedDiskFileStream::Open(const char* pName, Mode openMode, bool share) {
    dbAssert(openMode == Mode_Read);
    m_FilePos = 0;
    m_FileSize = 0;
    m_bufferSize = 0;
    m_currentBufferPosition = 0;
    if (openMode != Mode_Read || !DiskFileStream::Open(pName, openMode, share))
        return false;
    m_FileSize = DiskFileStream::GetLength();
    Fill();
    return true;
}

void BufferedDiskFileStream::Fill() {
    const uint32_t size = std::min(s_BufferCapacity, m_FileSize - m_FilePos);
    m_bufferSize = size > 0 ? OSFile::ReadAt(GetHandle(), m_FilePos, m_Buffer, size) : 0;
    m_FilePos += m_bufferSize;
    m_currentBufferPosition = 0;
}

uint32_t BufferedDiskFileStream::Read(void* pDest, uint32_t size) {
    if (!CheckMode(Mode_Read))
        return 0;
    if (size == 0)
        return 0;
    dbAssert(pDest);
    if (!pDest)
        return 0;
    auto* pBytes = static_cast<uint8_t*>(pDest);
    uint32_t done = 0;
    while (size - done > m_bufferSize - m_currentBufferPosition) {
        const uint32_t rest = m_bufferSize - m_currentBufferPosition;
        std::memcpy(pBytes + done, m_Buffer + m_currentBufferPosition, rest);
        done += rest;
        done += ReadDirectly(pBytes + done, size - done);
        if (done == size)
            return size;
        Fill();
        if (m_bufferSize == 0)
            return done;
    }
    std::memcpy(pBytes + done, m_Buffer + m_currentBufferPosition, size - done);
    m_currentBufferPosition += size - done;
    return size;
}

// A large request with nothing left in the buffer needn't pass through it. The buffer stays empty until a small one.
uint32_t BufferedDiskFileStream::ReadDirectly(void* pDest, uint32_t size) {
    const uint32_t wanted = std::min(size, m_FileSize - m_FilePos);
    if (wanted < s_LeastDirect)
        return 0;
    const uint32_t got = OSFile::ReadAt(GetHandle(), m_FilePos, pDest, wanted);
    m_FilePos += got;
    m_bufferSize = 0;
    m_currentBufferPosition = 0;
    return got;
}

bool BufferedDiskFileStream::Seek(uint32_t pos) {
    if (!IsOpen() || pos > m_FileSize) {
        dbBreak();
        return false;
    }
    const uint32_t bufferPos = m_FilePos - m_bufferSize;
    if (pos >= bufferPos && pos < m_FilePos) {
        m_currentBufferPosition = pos - bufferPos;
        dbAssert(m_currentBufferPosition <= m_bufferSize);
        return true;
    }
    m_FilePos = pos;
    Fill();
    return true;
}

uint32_t BufferedDiskFileStream::GetPos() {
    if (!IsOpen()) {
        dbBreak();
        return 0;
    }
    return m_FilePos - m_bufferSize + m_currentBufferPosition;
}

uint32_t BufferedDiskFileStream::GetLength() {
    if (!IsOpen()) {
        dbBreak();
        return 0;
    }
    return m_FileSize;
}

uint32_t BufferedDiskFileStream::Write(const void*, uint32_t) {
    dbBreak();
    return 0;
}

} // namespace

std::unique_ptr<DiskFileStream> MakeBufferedDiskFileStream() {
    return std::unique_ptr<DiskFileStream>(new (std::nothrow) BufferedDiskFileStream);
}
