#include "Shared_Tools/Burner/BurnPattern.h"

#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/FileSystem/Paths/FilePathUtil.h"
#include "Shared/Cross/Pipeline/Pipeline.h"
#include "Shared/PC/FileSystem/OSFile.h"

namespace {

constexpr const char* s_AnyFile = ".*$";
constexpr std::string_view s_Special = ".+(){}[]^$";

struct Split {
    std::string drive; // or an alias
    std::string folder;
    std::string name;
};

// As the operating system takes a path apart.
Split SplitSystemPath(const std::string& path) {
    const size_t colon = path.size() > 1 && path[1] == ':' ? 2 : 0;
    const size_t slash = path.find_last_of("/\\");
    const size_t name = slash == std::string::npos ? colon : slash + 1;
    return {.drive = path.substr(0, colon), .folder = path.substr(colon, name - colon), .name = path.substr(name)};
}

std::string JoinFolder(const std::string& drive, const std::string& folder) { return drive + "\\" + folder; }

} // namespace

std::string WildcardToExpression(const std::string& wildcard) {
    if (wildcard == "*.*")
        return s_AnyFile;
    std::string expression;
    for (const char c : wildcard) {
        if (s_Special.find(c) != std::string_view::npos)
            expression += '\\';
        if (c == '*')
            expression += '.';
        expression += c == '?' ? '.' : c;
    }
    return expression + "$";
}

BurnPattern SplitBurnPattern(const char* pFile) {
    if (!pFile || !*pFile)
        return {};
    if ((OSFile::FileAttr(pFile) & OSFile::F_ATTRIBUTE_DIRECTORY) != 0)
        return {.directory = pFile, .pattern = s_AnyFile};
    BurnPattern result;
    Split split;
    std::string extension;
    if (FilePathUtil::SplitPath(pFile, &split.drive, &split.folder, &split.name, &extension)) {
        result.directory = JoinFolder(split.drive, split.folder);
        split.name += extension;
    } else {
        split = SplitSystemPath(pFile);
        result.directory = split.folder.empty() ? split.drive : JoinFolder(split.drive, split.folder);
    }
    if (const std::string full = Pipeline::GetFullPath(result.directory.c_str());
        !full.empty() && full.size() < FilePath::MAXPATH)
        result.directory = full;
    result.pattern = WildcardToExpression(split.name);
    return result;
}
