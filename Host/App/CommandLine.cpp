#include "Host/App/CommandLine.h"

#include "Host/Sdk/HostSetup.h"

#include <CLI/CLI.hpp>

#include <algorithm>

namespace {

struct Parser {
    CLI::App app{"Plays the host of the export module: exports scenes, and calls the module's script commands."};
    CommandLine result;
    std::string_view wanted; // empty for all

    ExportArguments exported;
    MergeArguments merged;
    BurnArguments burnt;
    BurnConfigArguments configured;
    CallArguments called;
    ScriptArguments scripted;

    CLI::App* pExport = nullptr;
    CLI::App* pMerge = nullptr;
    CLI::App* pBurn = nullptr;
    CLI::App* pBurnConfig = nullptr;
    CLI::App* pCall = nullptr;
    CLI::App* pScript = nullptr;
    CLI::App* pCommands = nullptr;

    static std::string_view FindName(std::string_view word) {
        constexpr std::string_view names[] = {"export", "merge", "burn", "burnconfig", "call", "script", "commands"};
        const auto it = std::ranges::find(names, word);
        return it == std::end(names) ? std::string_view() : *it;
    }

    // Options are made for the command that the first word names, and for all if it names none: a short export would
    // spend a tenth of its time on those of others.
    explicit Parser(std::string_view firstWord) : wanted(FindName(firstWord)) {
        app.name("pvxhost");
        app.require_subcommand(1);
        AddExport();
        AddMerge();
        AddBurnConfig();
        AddOthers();
    }

    // Null for a command that isn't wanted.
    CLI::App* Add(const char* pName, const char* pDescription) {
        if (!wanted.empty() && wanted != pName)
            return nullptr;
        CLI::App* pCommand = app.add_subcommand(pName, pDescription);
        pCommand->add_flag("-q,--quiet", result.quiet, "No notes, only warnings and errors");
        pCommand->add_flag("-v,--verbose", result.verbose, "Tell what is done");
        pCommand->add_flag("--all-messages", result.allMessages, "Never fold long runs of like messages");
        pCommand->add_flag("--break-on-assert", result.breakOnAssert, "Stop at a breakpoint where an assertion fails");
        pCommand
            ->add_option("--home", result.home,
                         "Folder in which the search for pipeline.ini starts (default: PVXHOST_HOME, else the folder "
                         "of OUT for export, that of pvxhost for the others)")
            ->type_name("DIR");
        // Those whom they concern look for them in the whole command line; here they only have to be known.
        pCommand->add_flag("--nodbg,--notrace,--noreport,--notrap,--invleaks,--noimages,--nomodels")->group("");
        return pCommand;
    }

    void AddExport() {
        pExport = Add("export", "Exports a glTF scene to a model file");
        if (!pExport)
            return;
        pExport->add_option("SCENE", exported.scene, "The scene, .gltf or .glb")->required();
        pExport->add_option("OUT", exported.output, "The model file, .pvx, in a folder that exists")->required();
        pExport->add_flag(
            "--silent", exported.silent,
            "Ask nothing: a name that ends in REFERENCE/REF.pvx exports the model, any other the animation");
        pExport->add_flag("--no-meshes", exported.noMeshes, "Leave the meshes out");
        pExport->add_flag("--no-animation", exported.noAnimation, "Leave the animation out");
        pExport->add_flag("--xref-as-local", exported.xrefAsLocal, "Take external meshes as the scene's own");
        pExport->add_flag("--ask", exported.ask, "Show the options dialog in the terminal");
        pExport->add_option("--clip", exported.clip, "The animation to play, or none for the rest pose")
            ->type_name("NAME|INDEX|none");
        pExport->add_option("--fps", exported.framesPerSecond, "Frames a second (default 30)")
            ->check(CLI::Range(1, TicksPerSecond))
            ->type_name("N");
        pExport->add_flag("--limit-influences", exported.limitInfluences, "Keep the four heaviest bones of a vertex");
    }

    void AddMerge() {
        pMerge = Add("merge", "Merges a model and its animations into one model file");
        if (!pMerge)
            return;
        pMerge->add_option("MERGED", merged.merged, "The merged model file")->required();
        pMerge->add_option("MODEL", merged.model, "The model's file")->required();
        pMerge->add_option("ANIM", merged.animations, "The animations' files");
        pMerge->add_flag("--no-model", merged.noModel, "Don't save the merged model");
        pMerge->add_flag("--no-textures", merged.noTextures, "Don't save shared textures and team patterns");
    }

    void AddBurnConfig() {
        pBurnConfig = Add("burnconfig", "Shows and changes what a burn does to a file");
        if (!pBurnConfig)
            return;
        pBurnConfig->require_subcommand(1);
        AddBurnConfigAction(BurnConfigArguments::Action::Show, "show",
                            "Shows a file's targets and parameters, and which script each value comes from");
        CLI::App* pSet = AddBurnConfigAction(BurnConfigArguments::Action::Set, "set",
                                             "Sets a parameter in the file's own script, under revision control");
        AddBurnConfigParam(*pSet);
        pSet->add_option("VALUE", configured.value, "The new value")->required();
        AddBurnConfigParam(*AddBurnConfigAction(BurnConfigArguments::Action::Unset, "unset",
                                                "Gives a parameter back to the scripts above the file's own"));
    }

    CLI::App* AddBurnConfigAction(BurnConfigArguments::Action action, const char* pName, const char* pDescription) {
        CLI::App* pAction = pBurnConfig->add_subcommand(pName, pDescription);
        pAction->fallthrough();
        pAction->add_option("FILE", configured.file, "A file or a folder in a project's generic folder")->required();
        pAction->callback([this, action] { configured.action = action; });
        return pAction;
    }

    void AddBurnConfigParam(CLI::App& action) {
        action.add_option("GROUP", configured.group, "The target group")->required();
        action.add_option("TARGET", configured.target, "The target")->required();
        action.add_option("NAME", configured.name, "The parameter")->required();
    }

    void AddOthers() {
        if ((pBurn = Add("burn", "Burns generic files to what the game loads")))
            pBurn
                ->add_option("FILE", burnt.file,
                             "A merged model or another generic file, a folder, or files by * and ?")
                ->required();
        if ((pCall = Add("call", "Calls a script command"))) {
            pCall->add_option("COMMAND", called.command, "Its name; pvxhost commands lists them")->required();
            pCall->add_option(
                "ARG", called.arguments,
                "Its arguments: a value in the script's notation; a word with a / is a native path, any other a text");
        }
        if ((pScript = Add("script", "Runs a script, one command a line")))
            pScript->add_option("FILE", scripted.file, "The script; - is standard input")->required();
        pCommands = Add("commands", "Lists the script commands");
    }

    static bool IsCalled(const CLI::App* pCommand) { return pCommand && pCommand->parsed(); }

    void TakeCommand() {
        if (IsCalled(pExport))
            result.command = std::move(exported);
        else if (IsCalled(pMerge))
            result.command = std::move(merged);
        else if (IsCalled(pBurn))
            result.command = std::move(burnt);
        else if (IsCalled(pBurnConfig))
            result.command = std::move(configured);
        else if (IsCalled(pCall))
            result.command = std::move(called);
        else if (IsCalled(pScript))
            result.command = std::move(scripted);
        else
            result.command = CommandsArguments{};
    }

    // The help of the command that is being read, else of the program.
    const CLI::App& Current() const {
        for (const CLI::App* pCommand : {pExport, pMerge, pBurn, pBurnConfig, pCall, pScript, pCommands})
            if (IsCalled(pCommand))
                return pCommand->get_subcommands().empty() ? *pCommand : *pCommand->get_subcommands().front();
        return app;
    }
};

std::string OneLine(std::string text) {
    while (!text.empty() && text.back() == '\n')
        text.pop_back();
    std::ranges::replace(text, '\n', ' ');
    return text;
}

std::string GetFullName(const CLI::App& command) {
    return command.get_parent() ? GetFullName(*command.get_parent()) + " " + command.get_name() : command.get_name();
}

CommandLineEnd Refuse(const CLI::App& command, const std::string& what) {
    const std::string name = GetFullName(command);
    return {.status = 2, .text = name + ": " + OneLine(what) + "; " + name + " --help tells what is possible"};
}

// What of the options can't stand together; null for nothing.
const char* FindContradiction(const CommandLine& line, const ExportArguments& exported) {
    const std::pair<bool, const char*> contradictions[] = {
        {line.quiet && line.verbose, "--quiet and --verbose contradict each other"},
        {exported.silent && exported.ask, "--silent asks nothing, so --ask can't stand beside it"},
        {exported.silent && exported.noMeshes, "with --silent the output's name decides, so --no-meshes can't"},
        {exported.silent && exported.noAnimation, "with --silent the output's name decides, so --no-animation can't"},
        {exported.silent && exported.xrefAsLocal,
         "--silent keeps external references, so --xref-as-local can't stand beside it"},
        {exported.noMeshes && exported.noAnimation, "--no-meshes and --no-animation together leave nothing to export"},
    };
    for (const auto& [found, text] : contradictions)
        if (found)
            return text;
    return nullptr;
}

} // namespace

std::variant<CommandLine, CommandLineEnd> ParseCommandLine(const std::vector<std::string>& words) {
    Parser parser(words.empty() ? std::string_view() : words.front());
    try {
        // The parser wants the words in reverse.
        parser.app.parse(std::vector<std::string>(words.rbegin(), words.rend()));
    } catch (const CLI::CallForHelp&) {
        return CommandLineEnd{.status = 0, .text = parser.app.help()};
    } catch (const CLI::RequiredError& error) {
        // The library doesn't say which word it took for no command.
        if (&parser.Current() != &parser.app)
            return Refuse(parser.Current(), error.what());
        return Refuse(parser.app, words.empty() ? "a command is missing" : "\"" + words[0] + "\" is no command");
    } catch (const CLI::ParseError& error) {
        return Refuse(parser.Current(), error.what());
    }
    if (const char* pContradiction = FindContradiction(parser.result, parser.exported))
        return Refuse(parser.Current(), pContradiction);
    parser.TakeCommand();
    return std::move(parser.result);
}
