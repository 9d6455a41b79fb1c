#pragma once

#include "Shared/Cross/FileSystem/ByteStream.h"
#include "Shared/PC/FileSystem/OSFile.h"

#include <memory>

// A file on disk. Writing is gathered in a block, and seeks inside the block stay there, so that a writer that goes
// back to fill in a size costs no system call. The disk may therefore refuse bytes that Write has taken: from then on
// Write gives 0 and Flush and Close answer false.
class DiskFileStream : public ByteStream {
public:
    DiskFileStream() = default;
    // Closes the file; what can't be written is logged.
    ~DiskFileStream() override;

    // Closes what is open first. Mode_Read: the file has to exist. Mode_Write: created or emptied. Mode_Both: created
    // or opened, with the position at the end. A file over 4 GB is refused.
    virtual bool Open(const char* pName, Mode openMode, bool share);
    // False when anything written is lost.
    virtual bool Close();
    bool IsOpen() const { return static_cast<bool>(m_Handle); }
    // See OSFile::Duplicate: it keeps other writers away when the stream is closed. The caller closes it.
    OSFile::Handle Duplicate() const { return OSFile::Duplicate(m_Handle); }

    uint32_t Read(void* pDest, uint32_t size) override;
    uint32_t Write(const void* pSource, uint32_t size) override;
    bool Flush() override;
    bool Seek(uint32_t pos) override;
    uint32_t GetPos() override;
    uint32_t GetLength() override;

protected:
    // What both kinds share of opening: the handle, the mode, the name and the size.
    bool OpenHandle(const char* pName, Mode openMode, bool share);
    OSFile::Handle GetHandle() const { return m_Handle; }
    bool CheckMode(Mode wanted) const;

private:
    bool WriteBlocked(const void* pSource, uint32_t size);
    bool WriteOut(uint32_t pos, const void* pSource, uint32_t size);
    bool FlushBlock();
    void Lose(const char* pReason);

    OSFile::Handle m_Handle;
    uint32_t m_Pos = 0;
    uint32_t m_Length = 0; // with what is still in the block
    bool m_Lost = false;   // something written didn't get to the system
    // Bytes that are still to be written, at their place in the file.
    std::unique_ptr<uint8_t[]> m_pBlock; // made by the first write
    uint32_t m_BlockPos = 0;
    uint32_t m_BlockSize = 0;
};

// The way to files for the sources of FilePath; all other code goes through those. Reading is buffered. Null when the
// file can't be opened; OSFile::LastErrorText tells why.
std::unique_ptr<ByteStream> OpenFile(const char* pName, ByteStream::Mode mode, bool share);
