#pragma once

#include "Shared/Cross/Debug/db.h"

#include <cstdarg>
#include <cstddef>
#include <string>
#include <vector>

// What the files of this folder share.

constexpr size_t s_dbMessageSize = 1024; // bytes of one message, with its end

// The start of each message that has a place: "stem/line:!".
std::string dbFormatPrefix(const char* pFile, uint32_t line);
// Cut to the size of a message.
std::string dbFormatMessage(const std::string& prefix, const char* pFormat, va_list arguments);

enum class dbChannel { Warning, Error };
void dbEmit(dbChannel channel, const std::vector<std::string>& lines);
void dbRunAssertCallbacks();
void dbFlush();

// The lines "--stack trace--" and the caller's frames, without its innermost `skip`; no frames with "notrace".
void dbAppendStack(std::vector<std::string>& lines, uint32_t skip);

// A plain, case-sensitive search in the whole command line, so that a longer word counts too.
bool dbHasCommandFlag(const char* pFlag);
