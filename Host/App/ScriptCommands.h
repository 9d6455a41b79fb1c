#pragma once

#include "Host/App/CommandLine.h"
#include "Host/App/Listener.h"
#include "Host/App/Messages.h"
#include "Host/App/Progress.h"
#include "Host/Sdk/Value.h"

#include <cstdio>
#include <istream>

// The commands of the command line that call the module's script commands. The module is loaded by then. Each answers
// the exit status: 0 when what was called answered success, 1 when it answered false or undefined; faults are thrown
// as a HostError.
class ScriptCommands {
public:
    // Borrowed; results are printed on `pOut`, on which the listener writes too, and clears the progress before.
    ScriptCommands(std::FILE* pOut, Listener& listener, Progress& progress, const Messages& messages)
        : m_pOut(pOut), m_Listener(listener), m_Progress(progress), m_Messages(messages) {}

    int List() const;
    int Call(const CallArguments& arguments);
    int Merge(const MergeArguments& arguments);
    int Burn(const BurnArguments& arguments);
    // One command a line. An error ends the script, with the line's number; somebody at a terminal is told of it and
    // goes on.
    int Run(std::istream& in, const std::string& name, bool interactive);

private:
    Value Apply(const std::string& command, const std::vector<Value>& arguments);
    bool RunLine(const std::string& line);
    void ResetServices();

    std::FILE* m_pOut;
    Listener& m_Listener;
    Progress& m_Progress;
    const Messages& m_Messages;
};

// What a word of the shell means as an argument: a value in the script's notation, or a native path when there is a
// slash in it, or a plain text. Throws a HostError for a text or an array that is begun and not ended.
Value ValueFromWord(const std::string& word);
