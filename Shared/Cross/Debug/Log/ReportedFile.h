#pragma once

#include <string>

// A file that a crash report takes along as long as this holds it; at first it holds none.
class ReportedFile {
public:
    ReportedFile() = default;
    ~ReportedFile() { Release(); }
    ReportedFile(const ReportedFile&) = delete;
    ReportedFile& operator=(const ReportedFile&) = delete;

    // In place of the one before. A name that is too long for the report's list is left out.
    void Hold(const std::string& fullName);
    void Release();

private:
    std::string m_Name; // as the report has it
};
