#pragma once

#include <cstdint>
#include <string>

// String work on paths. Alias paths ("ALIAS:folder\file.ext") count as paths. Nothing here looks at a disk, and no
// result is longer than FilePath::MAXPATH characters: what would be fails.
namespace FilePathUtil {

// The parts of a normalised copy; each output may be null. The alias keeps its colon, the path its final backslash and
// the extension its dot. False for a name without an alias, and for one of 260 characters or more, which is a mistake.
bool SplitPath(const char* pFullPath, std::string* pAlias, std::string* pPath, std::string* pFname, std::string* pExt);
// The reverse; parts may be null and come with or without their marks. False without an alias.
bool MakePath(std::string& fullPath, const char* pAlias, const char* pPath, const char* pFname, const char* pExt);

// Alias in upper case and without its colon, empty if there is none; the rest with normal separators.
bool SplitAlias(const char* pName, std::string& alias, std::string& path);

// Alias in upper case, normal separators, ".." resolved behind the colon. False without an alias.
bool NormalizeAliasPath(std::string& name);
// Backslashes only, none repeated but an initial pair, and no single one at the start.
void NormalizeSeparators(std::string& name);

// Replaces or adds. The extension may come with its dot; an empty one removes. False if the result would reach 260.
bool SetExtension(std::string& fname, const char* pExt);
bool HasExtension(const char* pFname, const char* pExtension);
// Behind the last dot; the name itself if there is none.
const char* GetExtension(const char* pFname);
// Behind the last separator or colon.
const char* GetFileName(const char* pFname);
// A colon at position 2 or beyond, so that a drive is none.
bool HasAlias(const char* pFname);

// False if the part is absent. The extension comes without its dot, the title is the file's name without either, and
// the alias comes without its colon.
bool CopyExtension(std::string& out, const char* pFname);
bool CopyFileTitle(std::string& out, const char* pFname);
bool CopyAlias(std::string& out, const char* pFname);

// Replaces what follows the last separator or colon. A file name with a separator is a mistake and fails.
bool SetFileName(std::string& path, const char* pFname);
// The path as seen from a folder, case aside. False, with the path as it was, if it doesn't lie below.
bool MakeRelative(std::string& path, const char* pFolder);
// The folder with its final backslash and without the file; its length, 0 if there is no backslash or it is longer
// than maxLen.
uint32_t GetFolder(const char* pFname, std::string& outPath, uint32_t maxLen);
// Each occurrence, case aside. False if there is none or the result would be too long.
bool ReplaceInPath(std::string& path, const char* pSearchFor, const char* pReplaceWith);

} // namespace FilePathUtil
