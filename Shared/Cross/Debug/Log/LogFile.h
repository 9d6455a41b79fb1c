#pragma once

#include "Shared/Cross/Debug/Log/ReportedFile.h"

#include <memory>
#include <string>

class ByteStream;

// A text log under an alias path. Each line is on its way to the disk when Write comes back, so that the log survives
// a crash. If the alias "log" leads nowhere at its first use, it is mounted on the process's folder of logs.
class LogFile {
public:
    LogFile();
    ~LogFile(); // closes
    LogFile(const LogFile&) = delete;
    LogFile& operator=(const LogFile&) = delete;

    // Makes a new file in the folder of this run under the alias "log", which bears the process's start; a number goes
    // in front of the extension (".csv", with its dot) when the name is taken. False when the ninth is taken too, or
    // when the file can't be made. `sendWithReport`: a crash report takes the file along as long as it is open.
    bool Open(const char* pStem, const char* pExt, bool addLineEnd, bool sendWithReport);
    // By an alias path, over what is there. The alias "log" and the extension "txt" are filled in when missing.
    bool OpenAlias(const char* pName, bool addLineEnd, bool sendWithReport);

    // One line. False when nothing is open or the disk doesn't take it.
    bool Write(const char* pText);
    // The same, cut at 2047 bytes.
    [[gnu::format(printf, 2, 3)]] bool Printf(const char* pFormat, ...);
    void Close();

    bool IsOpen() const { return static_cast<bool>(m_pStream); }
    // The alias path; empty when nothing is open.
    const std::string& GetName() const { return m_Name; }

private:
    bool OpenStream(const std::string& name, bool addLineEnd, bool sendWithReport);

    std::unique_ptr<ByteStream> m_pStream;
    std::string m_Name;
    ReportedFile m_Reported;
    bool m_AddLineEnd = false;
};
