#include "Host/App/App.h"

#include "Host/App/BurnConfigCommand.h"
#include "Host/App/CommandLine.h"
#include "Host/App/ExportCommand.h"
#include "Host/App/Messages.h"
#include "Host/App/ModuleLoader.h"
#include "Host/App/Progress.h"
#include "Host/App/ScriptCommands.h"
#include "Host/App/TerminalDialogs.h"
#include "Host/Sdk/HostSetup.h"
#include "Shared/Cross/Debug/db.h"
#include "Shared/PC/Console/Terminal.h"
#include "Shared/PC/FileSystem/OSFile.h"
#include "Shared/PC/Program/ProgramPath.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <iostream>
#include <new>

namespace {

Messages MakeMessages(const CommandLine& line) {
    return Messages(stderr, {.terminal = Terminal::IsTerminal(Terminal::Stream::Error),
                             .colour = Terminal::WantsColour(Terminal::Stream::Error),
                             .all = line.allMessages,
                             .quiet = line.quiet,
                             .verbose = line.verbose});
}

bool WantsProgress(const CommandLine& line) { return !line.quiet && Terminal::IsTerminal(Terminal::Stream::Error); }

// As an absolute path; empty when neither the command line nor the environment names one.
std::string FindHome(const CommandLine& line) {
    std::string home = line.home.empty() ? ProgramPath::GetHome() : line.home;
    if (home.empty())
        return home;
    const std::string path = OSFile::FromNative(home);
    if (!(OSFile::FileAttr(path.c_str()) & OSFile::F_ATTRIBUTE_DIRECTORY))
        throw HostError(
            2,
            home + ": is no folder that pipeline.ini could be looked for in; name another by --home or PVXHOST_HOME");
    return OSFile::ToNative(path);
}

int RunScript(ScriptCommands& commands, const ScriptArguments& arguments) {
    if (arguments.file == "-")
        return commands.Run(std::cin, "standard input", Terminal::IsTerminal(Terminal::Stream::Input));
    std::ifstream in(arguments.file);
    // A folder opens like a file, and only reading it tells.
    if (!in || (in.peek(), in.bad()))
        throw HostError(2, arguments.file + ": can't be read: " + std::strerror(errno) +
                               "; name a script, or - for standard input");
    return commands.Run(in, arguments.file, false);
}

// The commands that need the module and no scene.
int RunScriptCommand(const CommandLine& line, const std::string& home, const Messages& messages) {
    ProgramPath::SetHome(home);
    TerminalDialogs dialogs(messages, {}, {});
    SetDialogShower(&dialogs);
    Progress progress(stderr, WantsProgress(line), Terminal::GetWidth(Terminal::Stream::Error));
    Listener listener(stdout, [&] { progress.Clear(); });
    const ModuleLoader module;
    messages.PrintDetail(module.GetDescription());
    ScriptCommands commands(stdout, listener, progress, messages);
    if (const auto* pCall = std::get_if<CallArguments>(&line.command))
        return commands.Call(*pCall);
    if (const auto* pMerge = std::get_if<MergeArguments>(&line.command))
        return commands.Merge(*pMerge);
    if (const auto* pBurn = std::get_if<BurnArguments>(&line.command))
        return commands.Burn(*pBurn);
    if (const auto* pScript = std::get_if<ScriptArguments>(&line.command))
        return RunScript(commands, *pScript);
    return commands.List();
}

int Run(const CommandLine& line, const Messages& messages) {
    // Bad input shall end in a message and a status, never in a trap.
    dbSetThrowOnAssert(!line.breakOnAssert);
    if (line.verbose)
        SetDebugOutput([](const char* pText) { std::fputs(pText, stderr); });
    const std::string home = FindHome(line);
    if (const auto* pExport = std::get_if<ExportArguments>(&line.command))
        return RunExport(*pExport, home, messages, WantsProgress(line));
    if (const auto* pBurnConfig = std::get_if<BurnConfigArguments>(&line.command))
        return RunBurnConfig(*pBurnConfig, stdout, messages);
    return RunScriptCommand(line, home, messages);
}

// What was printed has to have arrived.
int FlushOutput(int status, const Messages& messages) {
    if (std::fflush(stdout) == 0 && !std::ferror(stdout))
        return status;
    messages.Print(MessageKind::Error, std::string("standard output can't be written: ") + std::strerror(errno));
    return status == 0 ? 1 : status;
}

} // namespace

int RunApp(const std::vector<std::string>& words) {
    const auto parsed = ParseCommandLine(words);
    if (const auto* pEnd = std::get_if<CommandLineEnd>(&parsed)) {
        std::fprintf(pEnd->status == 0 ? stdout : stderr, "%s%s", pEnd->text.c_str(),
                     pEnd->text.ends_with('\n') ? "" : "\n");
        return pEnd->status;
    }
    const CommandLine& line = std::get<CommandLine>(parsed);
    const Messages messages = MakeMessages(line);
    try {
        return FlushOutput(Run(line, messages), messages);
    } catch (const HostError& error) {
        messages.Print(MessageKind::Error, error.what());
        return error.GetStatus();
    } catch (const std::bad_alloc&) {
        messages.Print(MessageKind::Error,
                       "the machine's memory doesn't suffice for this; close other programs or split the scene");
    } catch (const std::exception& error) {
        messages.Print(MessageKind::Error, error.what());
    }
    return 1;
}
