#pragma once

#include <cstdio>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

// What the host tells its user on standard error.

// Ends the program with one line and an exit status: 2 for bad usage or an input that can't be read, 1 for an
// operation that failed. The text says what is wrong and what to do, without a line end.
class HostError : public std::runtime_error {
public:
    HostError(int status, const std::string& text) : std::runtime_error(text), m_Status(status) {}
    int GetStatus() const { return m_Status; }

private:
    int m_Status;
};

enum class MessageKind { Note, Warning, Error };

// Prints lines to one stream.
class Messages {
public:
    struct Settings {
        bool terminal = false; // long runs are folded, and colour is used unless `colour` is off
        bool colour = false;
        bool all = false;     // no folding
        bool quiet = false;   // no notes
        bool verbose = false; // details too
    };
    Messages(std::FILE* pOut, const Settings& settings) : m_pOut(pOut), m_Settings(settings) {}

    // One line of the host's own.
    void Print(MessageKind kind, std::string_view text) const;
    // A note that only those want who asked for it.
    void PrintDetail(std::string_view text) const;
    // The lines of a list, exactly as they are; on a terminal long runs are folded.
    void PrintList(const std::vector<std::string>& lines) const;

private:
    void PrintLine(std::string_view text, MessageKind kind) const;

    std::FILE* m_pOut;
    Settings m_Settings;
};

// Cuts each run of more than 20 lines that differ only in their numbers to its first three and a line with the count of
// the others.
std::vector<std::string> FoldLines(const std::vector<std::string>& lines);
