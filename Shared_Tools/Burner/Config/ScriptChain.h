#pragma once

#include <string>
#include <vector>

// The burn scripts that a file gets its configuration from. Names are in the system's form.
struct ScriptChain {
    std::string burnFile;             // the file's own, whether it exists or not
    std::string genericPath;          // of the file's project, without a final backslash
    std::vector<std::string> scripts; // those that exist, nearest first; the last one is the base
    bool ownScript = false;           // the first one is burnFile

    // Looks for the scripts of a file or a folder. Answers why there are none; empty when all is well. Pipeline is up.
    std::string Find(const char* pFilename);
    // The first two alone.
    std::string FindProject(const char* pFilename);
};

namespace ScriptPath {

// "Z:\a\b" of "Z:\a\b\c" and of "Z:\a\b\c\"; empty when there is no backslash left.
std::string GetParent(const std::string& path);
// The folder nearest to `startDir`, itself or one above, that holds a file of that name; `rootDir` is the last to be
// looked at. False when there is none.
bool FindUpward(const char* pName, const char* pStartDir, const std::string& rootDir, std::string& foundDir);
bool IsFile(const std::string& path);

} // namespace ScriptPath
