#pragma once

#include "Shared/Cross/RevControlAPI/ClientApi.h"

#include <cstddef>
#include <string>
#include <string_view>

// Takes what `p4 -s` prints and hands it to a ClientUser, message by message.
//
//   info: text      an answer; info1: and info2: what belongs to the one above, fields of a tagged answer among them
//   error: text     also warning:
//   text: text
//   exit: number    at the end of every command that came to an end, 0 or not
//
// A message of several lines goes on in lines without such a mark, or in lines with the same mark that are empty or
// begin with a tab, as the server indents a changelist's description. What comes from the program's error stream is an
// error.
class P4Answers {
public:
    explicit P4Answers(ClientUser& user) : m_User(user) {}

    // Pieces of any size.
    void AddOutput(std::string_view piece);
    void AddError(std::string_view piece);
    // After the last piece.
    void Finish();

    // Whether the program told that it came to an end.
    bool HasExit() const { return m_HasExit; }
    // Whether an error says that there is no connection.
    bool IsConnectionLost() const { return m_ConnectionLost; }

private:
    enum class Kind { None, Info, Error, Text };
    struct Line {
        std::string text;
        // Hands every line that the piece completes to a function, without its end.
        template <typename Function>
        void Add(std::string_view piece, Function function);
    };

    void TakeLine(std::string_view line);
    void TakeErrorLine(std::string_view line);
    void Start(Kind kind, char level, std::string_view text);
    void Continue(std::string_view text);
    void HandOver();
    void HandOverError(const std::string& text);

    ClientUser& m_User;
    Line m_Output;
    Line m_Error;
    Kind m_Kind = Kind::None;
    char m_Level = '0';
    std::string m_Message;
    std::string m_ErrorMessage; // of the error stream
    bool m_HasExit = false;
    bool m_ConnectionLost = false;
};
