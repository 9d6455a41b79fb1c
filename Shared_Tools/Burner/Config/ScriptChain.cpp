#include "Shared_Tools/Burner/Config/ScriptChain.h"

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/Pipeline/Pipeline.h"
#include "Shared/PC/FileSystem/OSFile.h"
#include "Shared_Tools/Burner/Config/ConfigLoad.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr char s_BurnExtension[] = ".burn";

std::string WithoutFinalBackslash(std::string path) {
    if (path.ends_with('\\'))
        path.pop_back();
    return path;
}

bool IsFolder(const std::string& path) {
    return (OSFile::FileAttr(WithoutFinalBackslash(path).c_str()) & OSFile::F_ATTRIBUTE_DIRECTORY) != 0;
}

bool IsSameFolder(std::string a, std::string b) {
    std::ranges::replace(a, '/', '\\');
    std::ranges::replace(b, '/', '\\');
    return a == b;
}

} // namespace

std::string ScriptPath::GetParent(const std::string& path) {
    const std::string name = WithoutFinalBackslash(path);
    const size_t end = name.rfind('\\');
    return end == std::string::npos ? "" : name.substr(0, end);
}

bool ScriptPath::IsFile(const std::string& path) {
    return (OSFile::FileAttr(path.c_str()) & OSFile::F_ATTRIBUTE_FILE) != 0;
}

bool ScriptPath::FindUpward(const char* pName, const char* pStartDir, const std::string& rootDir,
                            std::string& foundDir) {
    if (!pStartDir)
        return false;
    for (std::string dir = WithoutFinalBackslash(pStartDir); !dir.empty(); dir = GetParent(dir)) {
        if (IsFile(dir + "\\" + pName)) {
            foundDir = dir;
            return true;
        }
        if (IsSameFolder(dir, rootDir))
            return false;
    }
    return false;
}

bool ConfigLoad::GetBurnFilename(const char* filename, char* pOut, size_t bufferSize) {
    const bool isRoomy = bufferSize > strlen(filename) + strlen(k_DefaultBurnFilename);
    dbAssertText(isRoomy, "bufferSize > strlen( filename ) + strlen( k_DefaultBurnFilename )");
    std::string burnFile;
    if (isRoomy && ScriptPath::IsFile(filename))
        burnFile = std::string(filename) + s_BurnExtension;
    else if (isRoomy && IsFolder(filename))
        burnFile = WithoutFinalBackslash(filename) + "\\" + k_DefaultBurnFilename;
    // A folder's script needs room for a backslash, too.
    if (burnFile.empty() || burnFile.size() >= bufferSize)
        return false;
    std::memcpy(pOut, burnFile.c_str(), burnFile.size() + 1);
    return true;
}

std::string ScriptChain::FindProject(const char* pFilename) {
    char name[FilePath::MAXPATH];
    // A name that is too long is the user's, and no mistake of ours.
    const bool fits = strlen(pFilename) + strlen(k_DefaultBurnFilename) < sizeof name;
    if (!fits || !ConfigLoad::GetBurnFilename(pFilename, name, sizeof name))
        return std::string("Unable to get burn filename for ") + pFilename;
    burnFile = name;
    const char* pProject = Pipeline::Get()->FindProjectForFile(name, Pipeline::Kind_Generic);
    if (!pProject)
        return "File [" + burnFile + "] does not belong to a pipeline project.";
    const char* pGeneric = Pipeline::Get()->GetFolder(pProject, Pipeline::Kind_Generic);
    if (!pGeneric || !*pGeneric)
        return std::string("Project [") + pProject + "] does not have a generic path.";
    genericPath = WithoutFinalBackslash(pGeneric);
    return "";
}

std::string ScriptChain::Find(const char* pFilename) {
    if (std::string reason = FindProject(pFilename); !reason.empty())
        return reason;
    ownScript = ScriptPath::IsFile(burnFile);
    if (ownScript)
        scripts.push_back(burnFile);
    std::string start = ScriptPath::GetParent(burnFile);
    for (std::string found; ScriptPath::FindUpward(k_DefaultBurnFilename, start.c_str(), genericPath, found);
         start = ScriptPath::GetParent(found)) {
        // A folder's own script lies where the search for those above it begins.
        if (std::string script = found + "\\" + k_DefaultBurnFilename; script != burnFile)
            scripts.push_back(std::move(script));
        if (IsSameFolder(found, genericPath))
            break;
    }
    if (scripts.empty())
        return std::string("Filename [") + pFilename + "] does not have a burn configuration script.";
    return "";
}
