#pragma once

#include <string>

// What the argument of a burn means: a folder, and a regular expression of file names in it.
struct BurnPattern {
    std::string directory;
    std::string pattern;

    bool operator==(const BurnPattern&) const = default;
};

// A folder that exists stands for all its files; of any other path the last component is a file's name or a wildcard.
// Both are empty for an empty argument.
BurnPattern SplitBurnPattern(const char* pFile);

// "*.*" and "*" are any name, "?" is any character; the expression ends where the name does.
std::string WildcardToExpression(const std::string& wildcard);
