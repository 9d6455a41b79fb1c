#pragma once

#include "Shared_Tools/Burner/Messages/BurnerMessage.h"

#include <cstddef>
#include <string>

class NamedPipe;

// What the burner says to the tools, sent as long as the pipe has room; when the other side is slow, messages gather,
// so that neither waits for the other.
class BurnReport {
public:
    // As whom the burner itself speaks; plug-ins have their own names.
    static constexpr const char* OwnSource = "BurnerImp";

    explicit BurnReport(NamedPipe& pipe) : m_Pipe(pipe) {}
    BurnReport(const BurnReport&) = delete;
    BurnReport& operator=(const BurnReport&) = delete;

    void AddInfo(const std::string& source, const std::string& text);
    void AddWarning(const std::string& source, const std::string& text);
    void AddError(const std::string& source, const std::string& text);
    void Append(BurnerMessageList&& messages);

    // Sends what has gathered, if the pipe has room or it is much.
    void Send();
    // Whether the other side has gone: there is nobody to burn for.
    bool IsCut();
    // What is left to send.
    BurnerMessageList Take();

private:
    NamedPipe& m_Pipe;
    BurnerMessageList m_Messages;
    size_t m_Bytes = 0;
    bool m_Cut = false;
};

// As long as one lives, the warnings of the system's own code go to the report, as those of the named source.
class ReportedWarnings {
public:
    ReportedWarnings(BurnReport& report, std::string source);
    ~ReportedWarnings();
    ReportedWarnings(const ReportedWarnings&) = delete;
    ReportedWarnings& operator=(const ReportedWarnings&) = delete;
};
