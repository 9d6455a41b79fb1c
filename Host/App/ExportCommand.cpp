#include "Host/App/ExportCommand.h"

#include "Host/App/Listener.h"
#include "Host/App/ModuleLoader.h"
#include "Host/App/OutputFile.h"
#include "Host/App/Progress.h"
#include "Host/App/ProjectNote.h"
#include "Host/App/TerminalDialogs.h"
#include "Host/App/TexturePaths.h"
#include "Host/Gltf/Loader.h"
#include "Host/Scene/Scene.h"
#include "Host/Sdk/ClassIds.h"
#include "Shared/PC/Console/Terminal.h"
#include "Shared/PC/FileSystem/OSFile.h"
#include "Shared/PC/Program/ProgramPath.h"

#include <algorithm>
#include <iostream>

namespace {

std::unique_ptr<scene::Scene> LoadScene(const ExportArguments& arguments, const Messages& messages) {
    std::vector<std::string> warnings;
    const gltf::LoadOptions options{
        .clip = arguments.clip, .fps = arguments.framesPerSecond, .limitInfluences = arguments.limitInfluences};
    try {
        std::unique_ptr<scene::Scene> pScene = gltf::Load(OSFile::FromNative(arguments.scene), options,
                                                          [&](const std::string& line) { warnings.push_back(line); });
        messages.PrintList(warnings);
        return pScene;
    } catch (const gltf::LoadError& error) {
        throw HostError(2, error.what());
    }
}

size_t CountMeshes(const scene::Scene& scene) {
    return static_cast<size_t>(std::ranges::count_if(scene.GetNodes(), [](const std::unique_ptr<scene::Node>& pNode) {
        const Object* pObject = pNode->GetObjectRef();
        return pObject && pObject->SuperClassID() == GEOMOBJECT_CLASS_ID;
    }));
}

// Where the system takes the program to lie, for the length of one export.
class HomeScope {
public:
    explicit HomeScope(const std::string& home) : m_Before(ProgramPath::GetHome()) { ProgramPath::SetHome(home); }
    ~HomeScope() { ProgramPath::SetHome(m_Before); }
    HomeScope(const HomeScope&) = delete;
    HomeScope& operator=(const HomeScope&) = delete;

private:
    std::string m_Before;
};

class DialogScope {
public:
    explicit DialogScope(DialogShower& shower) : m_pBefore(SetDialogShower(&shower)) {}
    ~DialogScope() { SetDialogShower(m_pBefore); }
    DialogScope(const DialogScope&) = delete;
    DialogScope& operator=(const DialogScope&) = delete;

private:
    DialogShower* m_pBefore;
};

void PrintProjectNote(const ExportArguments& arguments, const scene::Scene& scene, const std::string& home,
                      const Messages& messages) {
    const std::string note = FindProjectNote(OSFile::FromNative(arguments.scene), FindTexturePaths(scene), home);
    if (!note.empty())
        messages.Print(MessageKind::Note, note);
}

// What an export came to: the exporter's answer, and what the host saw of its work.
struct Outcome {
    bool success = false;
    bool cancelled = false;
    bool hadMeshes = false;                                    // there was something to be written
    OutputFile::Content content = OutputFile::Content::Broken; // what was written

    bool IsWhole() const { return content != OutputFile::Content::Broken; }
};

int ReportUnwritten(const ExportArguments& arguments, const OutputFile& output, const Messages& messages) {
    messages.Print(
        MessageKind::Error,
        arguments.output +
            ": could not be written; make room for it, let another program finish with it, or choose another disk (" +
            OSFile::ToNative(output.GetLogPath()) + " says more)");
    return 1;
}

// What is to be said and done about the file after the exporter has answered.
int Finish(const ExportArguments& arguments, const OutputFile& output, const Messages& messages,
           const Outcome& outcome) {
    if (outcome.cancelled) {
        messages.Print(MessageKind::Note, arguments.output + ": cancelled; nothing was written");
        return 0;
    }
    if (outcome.IsWhole()) {
        if (outcome.content == OutputFile::Content::Empty)
            messages.Print(MessageKind::Warning,
                           arguments.output +
                               ": holds neither meshes nor an animation; with --silent the name decides: "
                               "call it REFERENCE/REF.pvx for the meshes");
        return outcome.success ? 0 : 1;
    }
    if (output.IsWritten()) {
        output.RemoveIfBroken();
        return ReportUnwritten(arguments, output, messages);
    }
    if (!outcome.success)
        return 1;
    // An exporter counts it as no error when its file can't be written.
    if (outcome.hadMeshes)
        return ReportUnwritten(arguments, output, messages);
    messages.Print(MessageKind::Note, arguments.output + ": nothing was written, since the scene holds no mesh");
    return 0;
}

// The exporter's answer.
bool CallExporter(const ExportArguments& arguments, const OutputFile& output, scene::Scene& scene,
                  const Messages& messages) {
    const ModuleLoader module;
    messages.PrintDetail(std::string("exporting by ") + module.GetDescription());
    const std::unique_ptr<SceneExport> pExporter = module.CreateExporter();
    try {
        return pExporter->DoExport(output.GetPath().c_str(), nullptr, &scene, arguments.silent) == 1;
    } catch (...) {
        output.RemoveIfBroken();
        throw;
    }
}

} // namespace

int RunExport(const ExportArguments& arguments, const std::string& home, const Messages& messages, bool showProgress) {
    const OutputFile output(arguments.output, arguments.scene);
    const std::string start = home.empty() ? output.GetNativeFolder() : home;
    const HomeScope homeScope(start);

    Progress progress(stderr, showProgress, Terminal::GetWidth(Terminal::Stream::Error));
    progress.SetStage("reading " + arguments.scene);
    const std::unique_ptr<scene::Scene> pScene = LoadScene(arguments, messages);
    progress.SetTotals(CountMeshes(*pScene), pScene->GetAnimRange());
    pScene->SetObserver(&progress);
    Window mainWindow("pvxhost");
    pScene->SetMainWindow(&mainWindow);

    const auto clearLine = [&] { progress.Clear(); };
    Listener listener(stdout, clearLine);
    TerminalDialogs dialogs(messages,
                            {.exportMeshes = !arguments.noMeshes,
                             .exportAnimation = !arguments.noAnimation,
                             .xrefAsLocal = arguments.xrefAsLocal},
                            clearLine);
    if (arguments.ask)
        dialogs.Ask(std::cin, stderr);
    const DialogScope scope(dialogs);

    Outcome outcome{.success = CallExporter(arguments, output, *pScene, messages)};
    progress.Clear();
    listener.EndLine();
    outcome.cancelled = dialogs.IsCancelled();
    outcome.hadMeshes = progress.GetMeshCount() > 0;
    if (output.IsWritten())
        outcome.content = output.GetContent();
    const int status = Finish(arguments, output, messages, outcome);
    if (outcome.IsWhole())
        PrintProjectNote(arguments, *pScene, start, messages);
    return status;
}
