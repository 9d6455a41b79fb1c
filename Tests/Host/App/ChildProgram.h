#pragma once

#include <string>
#include <vector>

// What became of a program.
struct ProgramResult {
    int status = -1; // the exit status; the negative number of the signal that ended it
    std::string out;
    std::string err;
};

// Runs a program of the build folder with its output caught, "NAME=value" words added to its environment, and the text
// on its standard input. A limit other than 0 is the size in bytes over which it can't write a file.
ProgramResult RunProgram(const std::string& name, const std::vector<std::string>& words,
                         const std::vector<std::string>& variables = {}, const std::string& input = {},
                         size_t fileLimit = 0);

// The lines of a text, without their ends.
std::vector<std::string> Lines(const std::string& text);
