#pragma once

#include <string>
#include <variant>
#include <vector>

// The command line as plain records; all paths in them are native, as they were given.

struct ExportArguments {
    std::string scene;
    std::string output;
    bool silent = false;
    bool noMeshes = false;
    bool noAnimation = false;
    bool xrefAsLocal = false;
    bool ask = false;
    std::string clip; // a name, an index or "none"; empty for the default
    int framesPerSecond = 30;
    bool limitInfluences = false;
};

struct MergeArguments {
    std::string merged;
    std::string model;
    std::vector<std::string> animations;
    bool noModel = false;
    bool noTextures = false;
};

struct BurnArguments {
    std::string file;
};

struct BurnConfigArguments {
    enum class Action { Show, Set, Unset };

    Action action = Action::Show;
    std::string file; // or a folder
    std::string group;
    std::string target;
    std::string name;
    std::string value;
};

struct CallArguments {
    std::string command;
    std::vector<std::string> arguments;
};

struct ScriptArguments {
    std::string file; // "-" is standard input
};

struct CommandsArguments {};

struct CommandLine {
    std::variant<ExportArguments, MergeArguments, BurnArguments, BurnConfigArguments, CallArguments, ScriptArguments,
                 CommandsArguments>
        command;
    bool quiet = false;
    bool verbose = false;
    bool allMessages = false;
    bool breakOnAssert = false;
    std::string home; // empty when not given
};

// What ends the program before it does anything: a help text for standard output with status 0, or a line for standard
// error with status 2.
struct CommandLineEnd {
    int status = 0;
    std::string text;
};

// The words behind the program's name.
std::variant<CommandLine, CommandLineEnd> ParseCommandLine(const std::vector<std::string>& words);
