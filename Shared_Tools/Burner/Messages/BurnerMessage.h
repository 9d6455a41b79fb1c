#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

class ByteStream;

// One line of what a burn reports.
struct BurnerMessage {
    enum Kind : uint32_t {
        Kind_Information = 0,
        Kind_Warning = 1,
        Kind_Error = 2,
    };

    std::string text;
    uint32_t kind = Kind_Information; // what came over the pipe may be any number

    bool operator==(const BurnerMessage&) const = default;
};

// What a burn reports, in order. It belongs to the caller of the burn; those it is handed to only append.
class BurnerMessageList {
public:
    // "source --text", "Warning: source --text" and "Error: source --text", with no blank behind the dashes. `pSource`
    // is the short name of who speaks.
    [[gnu::format(printf, 3, 4)]] void AddInformation(const char* pSource, const char* pFormat, ...);
    [[gnu::format(printf, 3, 4)]] void AddWarning(const char* pSource, const char* pFormat, ...);
    [[gnu::format(printf, 3, 4)]] void AddError(const char* pSource, const char* pFormat, ...);
    // A finished text, of any kind.
    void Add(uint32_t kind, std::string text) { m_Messages.push_back({std::move(text), kind}); }
    // All of another list.
    void Append(BurnerMessageList&& other);

    bool IsEmpty() const { return m_Messages.empty(); }
    size_t GetCount() const { return m_Messages.size(); }
    const BurnerMessage& operator[](size_t index) const { return m_Messages[index]; }
    auto begin() const { return m_Messages.begin(); }
    auto end() const { return m_Messages.end(); }

    // Each text as a line of its own, ended by CR LF. False when the stream doesn't take all.
    bool Dump(ByteStream& stream) const;
    // The same into a file, by its alias path, over what is there. False too when it can't be opened.
    bool Dump(const char* pFileName) const;

private:
    std::vector<BurnerMessage> m_Messages;
};
