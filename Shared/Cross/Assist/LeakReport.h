#pragma once

#include <memory>
#include <vector>

class LogFile;
struct StackTrace;

namespace Inv {

// Writes down who still held a resource when it went, as a table for a spreadsheet: one line a reference, with the
// stack that took it. The file is made when there is something to write.
class LeakReport {
public:
    LeakReport();
    ~LeakReport();

    // Null stands for an object that never got a name.
    void Write(const char* pName, const StackTrace& trace);

private:
    bool OpenFile();

    std::unique_ptr<LogFile> m_pFile;
    bool m_Failed = false;
};

} // namespace Inv
