#pragma once

#include "Shared/PC/Debug/CrashRecord.h"

#include <cstddef>
#include <string_view>

// What the files of this folder keep ready for a crash.

// One a process; empty when it starts. What is written to it may be read by a crash at any moment.
CrashRecord& dbGetCrashRecord();

// False when the text doesn't fit with its end; nothing is changed then.
template <size_t Size>
bool dbCopyText(char (&to)[Size], std::string_view from) {
    if (from.size() >= Size)
        return false;
    to[from.copy(to, Size - 1)] = '\0';
    return true;
}
