#pragma once

#include <cstdint>
#include <string>
#include <vector>

// The separate program that takes a report further.

struct ReporterFile {
    std::string name;
    bool deleteAfter = false; // once it is sent
};

struct ReporterCall {
    std::string folder; // with its closing slash; empty when there is no reporter
    std::string file;
    int process = 0;
    std::string executable; // its file name
    std::string reason;
    bool isCrash = true;
    // What is empty is left out.
    std::string furtherText;
    std::string version;
    std::string language;
    std::string config;
    std::vector<std::string> texts;
    std::vector<ReporterFile> files;
};

std::string BuildReporterCommandLine(const ReporterCall& call);

// The words of a command line: blanks separate, except between double quotes; a double quote with a backslash in front
// stands for itself, and every other backslash too.
std::vector<std::string> SplitCommandLine(const std::string& line);

// "bugreport.ini" in the folder for settings, otherwise in the executable's or the nearest one above that has it.
// Empty when there is none.
std::string FindReporterConfig(const std::string& configFolder, const std::string& executable);

// As a process of its own that outlives this one and shares nothing with it. False when it can't be started.
bool StartDetached(const std::vector<std::string>& words);
