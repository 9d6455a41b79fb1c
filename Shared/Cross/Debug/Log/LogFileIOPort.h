#pragma once

#include "Shared/Cross/Debug/Log/ReportedFile.h"

#include <ctime>
#include <memory>
#include <mutex>
#include <string>

class ByteStream;

// The platform's log: a file at a plain path in the system's form, with a header, a time in front of each line, and a
// closing line. May be written from any thread.
class LogFileIOPort {
public:
    LogFileIOPort();
    ~LogFileIOPort(); // as Close, but without a closing line
    LogFileIOPort(const LogFileIOPort&) = delete;
    LogFileIOPort& operator=(const LogFileIOPort&) = delete;

    // Over what is there. A file that another process has open gives way to the same name with a number from 1 to 9
    // behind its stem. False when none can be made.
    bool Open(const char* pPath, bool sendWithReport);
    void Write(const char* pText);
    // Writes how it ended: 0 is without errors.
    void Close(int status);

    // The path that it became; empty when nothing is open.
    const std::string& GetPath() const { return m_Path; }

private:
    bool OpenStream(const std::string& path);
    void WriteHeader();

    // A disk that fails reports that, which comes back here on the same thread.
    std::recursive_mutex m_Mutex;
    bool m_IsWriting = false;
    std::unique_ptr<ByteStream> m_pStream;
    std::string m_Path;
    ReportedFile m_Reported;
};
