#include "Host/App/MergeCommand.h"

#include "Host/App/PipelineScope.h"
#include "Host/App/TextUtil.h"
#include "Shared/Cross/Debug/db.h"
#include "Shared/PC/FileSystem/OSFile.h"

#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr std::string_view s_BonesMark = "MERGE -- '";
constexpr std::string_view s_FaultMark = "RENDER ANIM -- "; // a file that couldn't be read or written
constexpr std::string_view s_StepMark = "MERGE -- ";        // what is being done
constexpr std::string_view s_ToolAlias = "TOOL:";

// What was logged so far.
struct Notes {
    std::vector<std::string> bones;
    std::string lastFault;
    std::string lastWarning;
};
Notes s_Notes;
Progress* s_pProgress = nullptr;

// A line that goes on with a file, which the module names in the system's form, up to the end mark.
std::string WithNativeFile(std::string_view line, std::string_view fileEnd) {
    const size_t end = line.find(fileEnd);
    if (end == line.npos)
        return std::string(line);
    return OSFile::ToNative(line.substr(0, end)) + ": " + std::string(line.substr(end + fileEnd.size()));
}

std::string DescribeFault(std::string_view line) {
    line.remove_prefix(s_FaultMark.size());
    if (line.starts_with(s_ToolAlias))
        line.remove_prefix(s_ToolAlias.size());
    return WithNativeFile(line, ": ");
}

void KeepFault(dbMessage message) {
    for (const char* pLine : message)
        if (const std::string_view line = WithoutPlace(pLine); line.starts_with(s_FaultMark))
            s_Notes.lastFault = DescribeFault(line);
}

// "animation file 3 of 7: 'Z:\\proj\\int\\run.pvx'" as "merge: animation file 3 of 7, run.pvx".
std::string DescribeStep(std::string_view step) {
    const size_t end = step.find(": '");
    std::string text = "merge: " + std::string(step.substr(0, end));
    if (end == step.npos)
        return text;
    step.remove_suffix(1);
    return text + ", " + std::string(step.substr(step.find_last_of("\\'") + 1));
}

void ShowStep(dbMessage message) {
    KeepFault(message);
    for (const std::string_view line : message)
        if (line.starts_with(s_StepMark))
            s_pProgress->SetStage(DescribeStep(line.substr(s_StepMark.size())));
}

void KeepWarning(dbMessage message) {
    KeepFault(message);
    for (const char* pLine : message) {
        const std::string_view line = WithoutPlace(pLine);
        if (line.starts_with(s_BonesMark))
            s_Notes.bones.push_back(WithNativeFile(line.substr(s_BonesMark.size()), "': "));
        else
            s_Notes.lastWarning = line;
    }
}

void CheckReadable(const std::string& nativePath, const char* pWhat) {
    const std::string path = OSFile::FromNative(nativePath);
    const uint32_t attributes = path.empty() ? 0 : OSFile::FileAttr(path.c_str());
    if (!(attributes & OSFile::F_ATTRIBUTE_FILE))
        throw HostError(2, nativePath + ": " + (attributes ? "is a folder" : "there is no such file") + "; " + pWhat);
}

// The model's project is what the merge works in; shared textures and patterns go to that of the merged model.
void CheckProjects(const MergeArguments& arguments) {
    const PipelineScope pipeline(arguments.model);
    PipelineScope::RequireInProject(arguments.model, Pipeline::Kind_Intermediate, "export the model to such a folder");
    if (!arguments.noTextures)
        PipelineScope::RequireInProject(arguments.merged, Pipeline::Kind_Generic,
                                        "name a file in one, or leave shared textures out by --no-textures");
}

uint64_t GetFileSize(const std::string& nativePath) {
    uint64_t size = 0;
    const OSFile::Handle file =
        OSFile::Open(OSFile::FromNative(nativePath).c_str(), OSFile::Open_Read, true, false, &size);
    if (file)
        OSFile::Close(file);
    return size;
}

std::string Describe(const MergeArguments& arguments) {
    if (arguments.noModel)
        return "not saved, as asked";
    const size_t count = arguments.animations.size();
    return std::to_string(GetFileSize(arguments.merged)) + " bytes, " + arguments.model + " with " +
           std::to_string(count) + (count == 1 ? " animation file" : " animation files");
}

void PrintBones(const Messages& messages) {
    for (const std::string& line : s_Notes.bones)
        messages.Print(MessageKind::Warning, line);
}

} // namespace

void CheckMergeInputs(const MergeArguments& arguments) {
    CheckReadable(arguments.model, "name the model that was exported with its meshes");
    CheckProjects(arguments);
    if (arguments.noModel)
        return;
    for (const std::string& animation : arguments.animations)
        CheckReadable(animation, "name an exported animation");
}

MergeNotes::MergeNotes(Progress& progress) {
    s_Notes = {};
    s_pProgress = &progress;
    dbAddWarningSubscriber(KeepWarning);
    dbAddErrorSubscriber(ShowStep);
}

MergeNotes::~MergeNotes() {
    dbRemoveWarningSubscriber(KeepWarning);
    dbRemoveErrorSubscriber(ShowStep);
    s_pProgress = nullptr;
}

void MergeNotes::PrintSummary(const MergeArguments& arguments, const Messages& messages) const {
    messages.Print(MessageKind::Note, arguments.merged + ": " + Describe(arguments));
    PrintBones(messages);
}

void MergeNotes::PrintFailure(const MergeArguments& arguments, bool silent, const Messages& messages) const {
    PrintBones(messages);
    const std::string& reason = s_Notes.lastFault.empty() ? s_Notes.lastWarning : s_Notes.lastFault;
    if (silent)
        messages.Print(MessageKind::Error,
                       arguments.merged + ": the merge failed" + (reason.empty() ? "" : ": " + reason));
    else if (!reason.empty())
        messages.Print(MessageKind::Error, reason);
}
