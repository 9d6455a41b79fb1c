#include "Shared/Cross/Debug/Log/LogFileIOPort.h"

#include "Shared/Cross/Debug/db.h"
#include "Shared/PC/Debug/Process.h"
#include "Shared/PC/FileSystem/DiskFileStream.h"

#include <cerrno>
#include <chrono>
#include <cstdio>

namespace {

constexpr int s_MostNumberedFiles = 9;

struct LocalTime {
    std::tm fields = {};
    int hundredths = 0;
};

LocalTime GetLocalTime() {
    using namespace std::chrono;
    const auto sinceEpoch = system_clock::now().time_since_epoch();
    const auto seconds = static_cast<time_t>(duration_cast<std::chrono::seconds>(sinceEpoch).count());
    LocalTime local;
    localtime_r(&seconds, &local.fields);
    local.hundredths = static_cast<int>(duration_cast<milliseconds>(sinceEpoch).count() % 1000 / 10);
    return local;
}

std::string GetExecutableName() {
    const std::string path = Process::GetExecutablePath();
    return path.substr(path.find_last_of('/') + 1);
}

std::string AddNumber(const std::string& path, int number) {
    const size_t nameStart = path.find_last_of("\\/:") + 1; // 0 without a folder
    const size_t dot = path.rfind('.');
    const size_t stemEnd = dot == std::string::npos || dot < nameStart ? path.size() : dot;
    return path.substr(0, stemEnd) + std::to_string(number) + path.substr(stemEnd);
}

bool IsSharingViolation(int error) { return error == EWOULDBLOCK || error == EBUSY || error == ETXTBSY; }

} // namespace

LogFileIOPort::LogFileIOPort() = default;

LogFileIOPort::~LogFileIOPort() = default;

bool LogFileIOPort::Open(const char* pPath, bool sendWithReport) {
    const std::lock_guard lock(m_Mutex);
    bool opened = OpenStream(pPath);
    for (int number = 1; !opened && number <= s_MostNumberedFiles && IsSharingViolation(OSFile::LastError()); ++number)
        opened = OpenStream(AddNumber(pPath, number));
    if (!opened)
        return false;
    if (sendWithReport)
        m_Reported.Hold(m_Path);
    WriteHeader();
    return true;
}

bool LogFileIOPort::OpenStream(const std::string& path) {
    m_pStream = OpenFile(path.c_str(), ByteStream::Mode_Write, true);
    m_Path = m_pStream ? path : std::string();
    return static_cast<bool>(m_pStream);
}

void LogFileIOPort::WriteHeader() {
    const std::tm now = GetLocalTime().fields;
    const Process::System system = Process::GetSystem();
    m_pStream->Printf("%s started at %04d-%02d-%02d %02d:%02d\n", GetExecutableName().c_str(), now.tm_year + 1900,
                      now.tm_mon + 1, now.tm_mday, now.tm_hour, now.tm_min);
    m_pStream->Printf("OS %s %d.%d, %dMB Physical Memory\n", system.name.c_str(), system.major, system.minor,
                      static_cast<int>(system.memoryMB));
    m_pStream->WriteText("RUN-OPTIONS", true);
    m_pStream->Printf("WORKING-DIR %s\n", OSFile::GetCurrentFolder().c_str());
    m_pStream->Printf("USER %s\n", Process::GetUserName().c_str());
    m_pStream->Flush();
}

void LogFileIOPort::Write(const char* pText) {
    const std::lock_guard lock(m_Mutex);
    if (!m_pStream || m_IsWriting)
        return;
    m_IsWriting = true;
    const LocalTime now = GetLocalTime();
    char prefix[32];
    std::snprintf(prefix, sizeof prefix, "%02d:%02d:%02d.%02d", now.fields.tm_hour, now.fields.tm_min,
                  now.fields.tm_sec, now.hundredths);
    m_pStream->WriteText((std::string(prefix) + ' ' + pText).c_str(), true);
    m_pStream->Flush();
    m_IsWriting = false;
}

void LogFileIOPort::Close(int status) {
    const std::lock_guard lock(m_Mutex);
    if (!m_pStream)
        return;
    if (status == 0)
        m_pStream->WriteText("\r\nApplication closed without errors", true);
    else
        m_pStream->Printf("\r\nApplication closed with error code %d\n", status);
    m_pStream.reset();
    m_Path.clear();
    m_Reported.Release();
}
