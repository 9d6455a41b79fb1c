#pragma once

#include "Shared/Cross/FileSystem/ByteStream.h"

#include <memory>

// A stream over a block of memory, of its own or of the caller. Blocks that change hands are made by new uint8_t[].
class RamStream : public ByteStream {
public:
    RamStream() = default;
    ~RamStream() override;

    // A block of its own, which grows when written past its end. In Mode_Read the content is bufsize zero bytes,
    // otherwise it is empty. False for no size and when there is a block already.
    bool Create(uint32_t bufsize, Mode mode);
    // The caller's block, in place of the one before, for reading or for writing over; it never grows. It outlives the
    // stream unless the stream takes it over.
    bool Attach(void* pBuffer, uint32_t size, bool takeOwnership, Mode mode);
    // The caller's block, for reading, and the caller's word that nobody reads past its end. The length is 0.
    bool AttachUnbounded(void* pBuffer, bool takeOwnership);
    // Hands the block over and leaves the stream without one. Null unless the stream owned it.
    std::unique_ptr<uint8_t[]> Detach();
    // The block, which has to be there. Good until the next write.
    uint8_t* GetBuffer();

    uint32_t Read(void* pDest, uint32_t size) override;
    // 0 past the end of a block that doesn't grow; a growing one stays below 16 MB.
    uint32_t Write(const void* pSource, uint32_t size) override;
    bool Flush() override { return true; }
    bool Seek(uint32_t pos) override;
    uint32_t GetPos() override { return m_Position; }
    uint32_t GetLength() override { return m_streamsize; }

private:
    bool Grow(uint64_t desiredSize);
    void Reset();

    uint8_t* m_buffer = nullptr; // owned when m_Owned says so
    uint32_t m_Capacity = 0;
    uint32_t m_streamsize = 0; // the high-water mark of writing
    bool m_Owned = false;
    bool m_Growable = false;
    bool m_bufUnboundedRead = false;
    uint32_t m_Position = 0;
};
