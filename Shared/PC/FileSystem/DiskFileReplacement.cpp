#include "Shared/PC/FileSystem/DiskFileReplacement.h"

#include "Shared/Cross/Debug/db.h"
#include "Shared/PC/FileSystem/DiskFileStream.h"
#include "Shared/PC/FileSystem/OSFile.h"

#include <utility>

namespace {

class DiskFileReplacement final : public FileReplacement {
public:
    DiskFileReplacement(const char* pName, bool share) : m_Name(pName), m_Written(pName), m_IsNew(!Exists(m_Name)) {
        std::string beside = GetUnfinishedName(m_Name);
        if (beside.size() <= ByteStream::MaxNameLength && OSFile::IsReplaceable(pName))
            m_Written = std::move(beside);
        // A disk may take the name and not the longer one. What stands under that and can't be written is somebody
        // else's, though, who may have finished with it by now.
        if (!Open(share) && m_Written != m_Name && !OSFile::WasInUse() && !Exists(m_Written)) {
            m_Written = m_Name;
            Open(share);
        }
    }
    ~DiskFileReplacement() override {
        const dbNoThrowScope noThrow;
        if (m_IsOpen)
            TakeAway();
        Unlock();
    }
    DiskFileReplacement(const DiskFileReplacement&) = delete;
    DiskFileReplacement& operator=(const DiskFileReplacement&) = delete;

    bool IsOpen() const { return m_IsOpen; }
    ByteStream& GetStream() override { return m_Stream; }

    bool Finish() override {
        dbAssert(m_IsOpen);
        if (!std::exchange(m_IsOpen, false))
            return false;
        const bool isDone = m_Stream.Close() && Move();
        if (!isDone)
            TakeAway();
        Unlock();
        return isDone;
    }

private:
    static bool Exists(const std::string& name) { return OSFile::FileAttr(name.c_str()) != 0; }

    bool Open(bool share) {
        m_IsOpen = m_Stream.Open(m_Written.c_str(), ByteStream::Mode_Write, share);
        if (m_IsOpen)
            m_Lock = m_Stream.Duplicate();
        return m_IsOpen;
    }

    void Unlock() {
        if (const OSFile::Handle lock = std::exchange(m_Lock, {}))
            OSFile::Close(lock);
    }

    bool Move() const {
        if (m_Written == m_Name || OSFile::Rename(m_Written.c_str(), m_Name.c_str()))
            return true;
        dbWarningf("FILESYSTEM -- failed to move '%s' to '%s': %s", m_Written.c_str(), m_Name.c_str(),
                   OSFile::LastErrorText().c_str());
        return false;
    }

    void TakeAway() {
        if (m_Stream.IsOpen())
            m_Stream.Close();
        if (m_Written != m_Name || m_IsNew) {
            OSFile::Delete(m_Written.c_str());
            return;
        }
        Unlock(); // to be opened, which empties it
        if (const OSFile::Handle file = OSFile::Open(m_Written.c_str(), OSFile::Open_Write, true, false))
            OSFile::Close(file);
    }

    std::string m_Name;
    std::string m_Written; // the same, or beside it
    bool m_IsNew;          // nothing was there under the name
    bool m_IsOpen = false; // opened, and not finished
    DiskFileStream m_Stream;
    // Outlives the stream: nobody else writes the file before it stands in its place, or is gone.
    OSFile::Handle m_Lock;
};

} // namespace

std::unique_ptr<FileReplacement> ReplaceFile(const char* pName, bool share) {
    auto pReplacement = std::make_unique<DiskFileReplacement>(pName, share);
    if (pReplacement->IsOpen())
        return pReplacement;
    dbWarningf("FILESYSTEM -- failed to write '%s': %s", pName, OSFile::LastErrorText().c_str());
    return nullptr;
}

std::string GetUnfinishedName(std::string_view name) { return std::string(name) + ".part"; }
