#pragma once

#include <cstdint>
#include <string>
#include <vector>

class ByteStream;

// One line of what a burn reports.
struct BurnerMessage {
    enum Kind : uint32_t { Kind_Info = 0, Kind_Warning = 1, Kind_Error = 2 };

    std::string text;
    uint32_t kind = Kind_Info; // what came from another process may be any number

    bool operator==(const BurnerMessage&) const = default;
};

// Owned by whoever asked for the work; only ever appended to.
using BurnerMessageList = std::vector<BurnerMessage>;

// Each appends a line that starts with its kind and the short name of its source, "Warning: Source --" and the text
// right behind it.
[[gnu::format(printf, 3, 4)]] void AddBurnerInfo(BurnerMessageList& messages, const char* pSource, const char* pFormat,
                                                 ...);
[[gnu::format(printf, 3, 4)]] void AddBurnerWarning(BurnerMessageList& messages, const char* pSource,
                                                    const char* pFormat, ...);
[[gnu::format(printf, 3, 4)]] void AddBurnerError(BurnerMessageList& messages, const char* pSource, const char* pFormat,
                                                  ...);
// A finished text.
void AddBurnerMessage(BurnerMessageList& messages, uint32_t kind, std::string text);

// Each text as a line of its own, ended by CR LF. False when the stream doesn't take all.
bool DumpBurnerMessages(const BurnerMessageList& messages, ByteStream& stream);
// The same into a file, by its alias path, over what is there. False too when it can't be opened.
bool DumpBurnerMessages(const BurnerMessageList& messages, const char* pFileName);
