#pragma once

#include <cstdint>
#include <string>
#include <vector>

// What a crash report will take along. The lists are filled while all is well and read by the one who reports a crash.

constexpr uint32_t s_dbMaxReportTexts = 4;
constexpr uint32_t s_dbMaxReportTextLength = 1023;
constexpr uint32_t s_dbMaxReportFiles = 64;
constexpr uint32_t s_dbMaxReportFileLength = 259;

struct dbReportFile {
    std::string name;
    bool deleteAfter = false; // once it is sent
};

// A text that is there already isn't added again; one too many stops, as dbStop does. A longer text is cut.
void dbAddReportText(const char* pText);
// One too many stops, as dbStop does, and so does a longer name. The same name again takes the new flag.
void dbAddReportFile(const char* pName, bool deleteAfter);
// For a file that went away, or that ended well. One that isn't listed is no mistake.
void dbRemoveReportFile(const char* pName);

std::vector<std::string> dbGetReportTexts();
std::vector<dbReportFile> dbGetReportFiles();
