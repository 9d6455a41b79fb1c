#include "Shared_Tools/PVXExport/PVXUtil.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "Host/Sdk/Node.h"
#include "Host/Sdk/Resources.h"
#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/FileSystem/Paths/FilePathUtil.h"
#include "Shared/Cross/Util/Hash.h"
#include "Shared_Tools/PVXExport/NodeRoles.h"
#include "Shared_Tools/PVXExport/PVXFilename.h"

namespace {

constexpr std::string_view s_ReferenceSuffix = "REFERENCE\\REF.PVX";
constexpr std::string_view s_ReferenceFolder = "REFERENCE";
constexpr std::string_view s_ReferenceTitle = "REF";

HINSTANCE s_hDLLInstance = nullptr;

// Output paths come with a drive, with an alias, with both and with neither, so that this doesn't ask for an alias as
// the file system's own split does.
struct PathParts {
    std::string drive;  // alias and drive with their colons
    std::string folder; // with its final separator
    std::string name;
    std::string extension; // with its dot
};

PathParts SplitPath(std::string_view path) {
    const auto end = [](size_t position) { return position == std::string_view::npos ? size_t{0} : position + 1; };
    PathParts parts;
    const size_t driveEnd = end(path.rfind(':'));
    const size_t folderEnd = std::max(driveEnd, end(path.find_last_of("\\/")));
    const size_t dot = path.rfind('.');
    const size_t nameEnd = dot != path.npos && dot >= folderEnd ? dot : path.size();
    parts.drive = path.substr(0, driveEnd);
    parts.folder = path.substr(driveEnd, folderEnd - driveEnd);
    parts.name = path.substr(folderEnd, nameEnd - folderEnd);
    parts.extension = path.substr(nameEnd);
    return parts;
}

void CutTrailingSlash(std::string& folder) {
    if (folder.ends_with('\\') || folder.ends_with('/'))
        folder.pop_back();
}

// The folder around a file as if it were the file itself.
PathParts SplitFolder(PathParts parts) {
    CutTrailingSlash(parts.folder);
    return SplitPath(parts.drive + parts.folder + parts.extension);
}

// A path under an alias, in its normal form: without a separator at its start. Empty parts when it is none.
PathParts SplitDataPath(const std::string& path) {
    PathParts parts;
    FilePathUtil::SplitPath(path.c_str(), &parts.drive, &parts.folder, &parts.name, &parts.extension);
    return parts;
}

} // namespace

namespace PVXUtil {

void SetDLLInstance(HINSTANCE handle) { s_hDLLInstance = handle; }
HINSTANCE GetDLLInstance() { return s_hDLLInstance; }

const char* GetString(unsigned id) {
    dbAssert(s_hDLLInstance);
    static std::array<char, 260> s_Buffer;
    return LoadString(s_hDLLInstance, id, s_Buffer) >= 0 ? s_Buffer.data() : nullptr;
}

bool IsReferenceFile(const char* pName) {
    const std::string_view name = pName ? pName : "";
    return name.size() >= s_ReferenceSuffix.size() &&
           EqualNoCase(name.substr(name.size() - s_ReferenceSuffix.size()), s_ReferenceSuffix);
}

bool ModelNameFromPath(std::string& outName, const char* pFilePath) {
    dbAssertText(pFilePath, "filepath");
    const PathParts file = SplitPath(pFilePath ? pFilePath : "");
    outName = file.name;
    if (!EqualNoCase(file.name, s_ReferenceTitle))
        return true;
    const PathParts folder = SplitFolder(file);
    if (EqualNoCase(folder.name, s_ReferenceFolder))
        outName = SplitFolder(folder).name;
    return true;
}

bool ExternalModelName(INode* pNode, std::string& outName) {
    dbAssertText(pNode, "pNode");
    outName.clear();
    if (!IsXRef(pNode))
        return false;
    const auto* pObject = static_cast<const XRefObject*>(pNode->GetObjectRef());
    dbAssertText(pObject, "pObject");
    std::string dataName;
    if (!PVXFilename::MapToData(dataName, pObject->GetFileName(false)))
        return false;
    PathParts file = SplitDataPath(dataName);
    std::string result = file.folder + file.name;
    if (EqualNoCase(file.name, s_ReferenceTitle)) {
        CutTrailingSlash(file.folder);
        PathParts folder = SplitDataPath(file.drive + file.folder);
        if (EqualNoCase(folder.name, s_ReferenceFolder)) {
            CutTrailingSlash(folder.folder);
            result = folder.folder;
        }
    }
    NormalisePath(outName, result.c_str());
    return true;
}

void NormalisePath(std::string& newPath, const char* pOldPath) {
    dbAssertText(pOldPath, "oldPath");
    newPath = pOldPath ? pOldPath : "";
    std::ranges::transform(newPath, newPath.begin(), [](char c) { return c == '\\' ? '/' : ToLower(c); });
}

bool TextureShortName(std::string& outName, const char* pInName) {
    dbAssertText(pInName, "inName");
    std::string dataName;
    PathParts file;
    if (PVXFilename::MapToData(dataName, pInName))
        file = SplitDataPath(dataName);
    outName = file.folder + file.name;
    return true;
}

} // namespace PVXUtil
