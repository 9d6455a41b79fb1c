#include "Shared/Cross/FileSystem/Paths/FilePathUtil.h"

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/FileSystem/Wildcard.h"
#include "Shared/Cross/Util/Hash.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <vector>

namespace FilePathUtil {

namespace {

constexpr std::string_view s_BehindFolder = "\\/:";
constexpr size_t s_Limit = FilePath::MAXPATH;

bool IsSeparator(char character) { return character == '\\' || character == '/'; }

std::string_view View(const char* pText) { return pText ? std::string_view(pText) : std::string_view(); }

// Where the file's name starts.
size_t FindFileName(std::string_view name) { return name.find_last_of(s_BehindFolder) + 1; }

// Where the dot of the extension is, npos without one. A dot in a folder's name is none.
size_t FindDot(std::string_view name) {
    const size_t dot = name.rfind('.');
    return dot != std::string_view::npos && dot >= FindFileName(name) ? dot : std::string_view::npos;
}

std::string_view WithoutDot(std::string_view extension) {
    return extension.starts_with('.') ? extension.substr(1) : extension;
}

bool Copy(std::string& out, std::string_view part) {
    out = part;
    return !part.empty();
}

// Takes each ".." and the component ahead of it away. Those that have none ahead stay: they lead out of the alias,
// which is for its sources to refuse.
std::string ResolveDots(std::string_view path) {
    if (path.find("..") == std::string_view::npos)
        return std::string(path);
    std::vector<std::string_view> components;
    bool isFolder = false; // the path ends in a backslash, or does once a ".." at its end is gone
    while (!path.empty()) {
        const size_t end = path.find('\\');
        const std::string_view component = path.substr(0, end);
        isFolder = end != std::string_view::npos;
        path.remove_prefix(isFolder ? end + 1 : path.size());
        const bool canGo = !components.empty() && !components.back().empty() && components.back() != ".." &&
                           components.back().back() != ':';
        if (component == ".." && canGo) {
            components.pop_back();
            isFolder = true;
        } else {
            components.push_back(component);
        }
    }
    std::string resolved;
    for (size_t i = 0; i < components.size(); ++i) {
        resolved += components[i];
        if (i + 1 < components.size() || isFolder)
            resolved += '\\';
    }
    return resolved;
}

} // namespace

bool SplitPath(const char* pFullPath, std::string* pAlias, std::string* pPath, std::string* pFname, std::string* pExt) {
    dbAssert(pFullPath && strlen(pFullPath) < FilePath::MAXPATH);
    std::string full(View(pFullPath));
    if (!pFullPath || full.size() >= s_Limit || !NormalizeAliasPath(full))
        return false;
    const std::string_view view(full);
    const size_t path = view.find(':') + 1;
    const size_t file = std::max(path, view.rfind('\\') + 1);
    const size_t extension = std::min(FindDot(view), view.size());
    if (pAlias)
        *pAlias = view.substr(0, path);
    if (pPath)
        *pPath = view.substr(path, file - path);
    if (pFname)
        *pFname = view.substr(file, extension - file);
    if (pExt)
        *pExt = view.substr(extension);
    return true;
}

bool MakePath(std::string& fullPath, const char* pAlias, const char* pPath, const char* pFname, const char* pExt) {
    std::string_view path = View(pPath);
    const std::string_view extension = View(pExt);
    std::string made(View(pAlias));
    if (made.empty())
        return false;
    if (made.back() != ':')
        made += ':';
    const bool isUnc = path.size() >= 2 && IsSeparator(path[0]) && IsSeparator(path[1]);
    if (!isUnc && !path.empty() && IsSeparator(path[0]))
        path.remove_prefix(1);
    made += path;
    if (!path.empty() && !IsSeparator(path.back()))
        made += '\\';
    made += View(pFname);
    if (!extension.empty() && extension[0] != '.')
        made += '.';
    made += extension;
    if (made.size() > s_Limit || !NormalizeAliasPath(made))
        return false;
    fullPath = std::move(made);
    return true;
}

bool SplitAlias(const char* pName, std::string& alias, std::string& path) {
    dbAssertText(pName && strlen(pName) <= s_Limit, "inname && strlen(inname) <= FilePath::MAXPATH");
    const std::string_view name = View(pName);
    if (!pName || name.size() > s_Limit)
        return false;
    const size_t colon = name.find(':');
    alias = FoldCase(colon == std::string_view::npos ? std::string_view() : name.substr(0, colon));
    path = colon == std::string_view::npos ? name : name.substr(colon + 1);
    NormalizeSeparators(path);
    return true;
}

bool NormalizeAliasPath(std::string& name) {
    if (!HasAlias(name.c_str()))
        return false;
    const size_t path = name.find(':') + 1;
    std::string rest = name.substr(path);
    NormalizeSeparators(rest);
    name = FoldCase(std::string_view(name).substr(0, path)) + ResolveDots(rest);
    return true;
}

void NormalizeSeparators(std::string& name) {
    std::ranges::replace(name, '/', '\\');
    const size_t kept = name.starts_with("\\\\") ? 2 : 0;
    const auto begin = name.begin() + static_cast<std::ptrdiff_t>(kept);
    const auto isRepeated = [](char left, char right) { return left == '\\' && right == '\\'; };
    name.erase(std::unique(begin, name.end(), isRepeated), name.end());
    // Right behind a pair that is kept, one more counts as repeated too.
    if (kept == 2 && name.size() > 2 && name[2] == '\\')
        name.erase(2, 1);
    if (kept == 0 && name.starts_with('\\'))
        name.erase(0, 1);
}

bool SetExtension(std::string& fname, const char* pExt) {
    const std::string_view extension = WithoutDot(View(pExt));
    const std::string_view stem = std::string_view(fname).substr(0, FindDot(fname));
    const size_t size = stem.size() + (extension.empty() ? 0 : extension.size() + 1);
    if (size >= s_Limit)
        return false;
    fname.resize(stem.size());
    if (!extension.empty())
        fname.append(1, '.').append(extension);
    return true;
}

bool HasExtension(const char* pFname, const char* pExtension) {
    dbAssertText(pFname && pExtension, "fname && extension");
    if (!pFname || !pExtension)
        return false;
    const std::string_view name(pFname);
    const size_t dot = FindDot(name);
    const std::string_view has = dot == std::string_view::npos ? std::string_view() : name.substr(dot + 1);
    return EqualNoCase(has, WithoutDot(pExtension));
}

const char* GetExtension(const char* pFname) {
    const size_t dot = FindDot(pFname);
    return dot == std::string_view::npos ? pFname : pFname + dot + 1;
}

const char* GetFileName(const char* pFname) { return pFname + FindFileName(pFname); }

bool HasAlias(const char* pFname) {
    const size_t colon = View(pFname).find(':');
    return colon != std::string_view::npos && colon >= 2;
}

bool CopyExtension(std::string& out, const char* pFname) {
    const std::string_view name = View(pFname);
    const size_t dot = FindDot(name);
    return Copy(out, dot == std::string_view::npos ? std::string_view() : name.substr(dot + 1));
}

bool CopyFileTitle(std::string& out, const char* pFname) {
    const std::string_view name = View(pFname);
    const std::string_view file = name.substr(FindFileName(name));
    return Copy(out, file.substr(0, FindDot(file)));
}

bool CopyAlias(std::string& out, const char* pFname) {
    const std::string_view name = View(pFname);
    return Copy(out, HasAlias(pFname) ? name.substr(0, name.find(':')) : std::string_view());
}

bool SetFileName(std::string& path, const char* pFname) {
    const bool isPlain = pFname && !strpbrk(pFname, "\\/");
    dbAssert(isPlain);
    if (!isPlain)
        return false;
    const size_t file = FindFileName(path);
    const std::string_view name(pFname);
    if (file + name.size() > s_Limit)
        return false;
    path.resize(file);
    path += name;
    return true;
}

bool MakeRelative(std::string& path, const char* pFolder) {
    std::string folder(View(pFolder));
    if (folder.empty())
        return false;
    if (s_BehindFolder.find(folder.back()) == std::string_view::npos)
        folder += '\\';
    if (path.size() <= folder.size() || !EqualNoCase(std::string_view(path).substr(0, folder.size()), folder))
        return false;
    path.erase(0, folder.size());
    return true;
}

uint32_t GetFolder(const char* pFname, std::string& outPath, uint32_t maxLen) {
    const std::string_view name = View(pFname);
    const size_t length = name.rfind('\\') + 1;
    outPath.clear();
    if (length > maxLen)
        return 0;
    outPath = name.substr(0, length);
    return static_cast<uint32_t>(length);
}

bool ReplaceInPath(std::string& path, const char* pSearchFor, const char* pReplaceWith) {
    dbAssertText(pReplaceWith && strlen(pReplaceWith) < s_Limit, "replaceWith && strlen(replaceWith) < MAXPATH");
    const std::string wanted = FoldCase(View(pSearchFor));
    const std::string_view replacement = View(pReplaceWith);
    if (!pReplaceWith || replacement.size() >= s_Limit || wanted.empty())
        return false;
    const std::string folded = FoldCase(path);
    std::string replaced;
    size_t from = 0;
    for (size_t at = folded.find(wanted); at != std::string::npos; at = folded.find(wanted, from)) {
        replaced.append(path, from, at - from).append(replacement);
        from = at + wanted.size();
    }
    replaced.append(path, from);
    if (from == 0 || replaced.size() > s_Limit)
        return false;
    path = std::move(replaced);
    return true;
}

} // namespace FilePathUtil
