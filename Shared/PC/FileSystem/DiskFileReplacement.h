#pragma once

#include "Shared/Cross/FileSystem/FileReplacement.h"

#include <memory>
#include <string>
#include <string_view>

// Writes beside the file, under GetUnfinishedName, and moves it into place in the end; a second writer meanwhile is
// refused. Where moving would do harm (OSFile::IsReplaceable), or the name has no room for an addition, the file itself
// is emptied and written, and emptied again when it goes unfinished. Null when neither can be opened:
// OSFile::LastErrorText tells why, and so does the log.
std::unique_ptr<FileReplacement> ReplaceFile(const char* pName, bool share);

// Where the file of that name is written until it is finished: in the same folder.
std::string GetUnfinishedName(std::string_view name);
