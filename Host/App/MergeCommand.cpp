#include "Host/App/MergeCommand.h"

#include "Host/App/PipelineScope.h"
#include "Host/App/Replaceable.h"
#include "Host/App/TextUtil.h"
#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/Util/Hash.h"
#include "Shared/PC/FileSystem/OSFile.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace {

// What an artist has to know of: bones that don't fit, what the game gets no new file of, layers that are left out. A
// file's name comes next.
constexpr std::array<std::string_view, 4> s_FileMarks = {"MERGE -- '", "BURNER -- '", "TEXTURES -- '",
                                                         "TEAM COLOUR -- '"};
constexpr std::string_view s_FileEnd = "': ";
constexpr std::string_view s_SystemMark = "FILESYSTEM -- "; // in front of the system's reason for a fault
constexpr std::string_view s_LayerMark = "Team Pattern Export -- ";
constexpr std::string_view s_FaultMark = "RENDER ANIM -- "; // a file that couldn't be read or written
constexpr std::string_view s_StepMark = "MERGE -- ";        // what is being done
constexpr std::string_view s_ToolAlias = "TOOL:";

// What was logged so far.
struct Notes {
    std::vector<std::string> warnings;
    std::string lastFault;
    std::string systemReason;
    std::string lastWarning;
};
Notes s_Notes;
Progress* s_pProgress = nullptr;

// A line that goes on with a file, which the module names in the system's form, up to the end mark.
std::string DescribeFile(std::string_view line, std::string_view fileEnd) {
    if (line.size() > s_ToolAlias.size() && EqualNoCase(line.substr(0, s_ToolAlias.size()), s_ToolAlias))
        line.remove_prefix(s_ToolAlias.size());
    const size_t end = line.find(fileEnd);
    if (end == line.npos)
        return std::string(line);
    return OSFile::ToNative(line.substr(0, end)) + ": " + std::string(line.substr(end + fileEnd.size()));
}

void KeepFault(dbMessage message) {
    for (const char* pLine : message)
        if (const std::string_view line = WithoutPlace(pLine); line.starts_with(s_FaultMark))
            s_Notes.lastFault = DescribeFile(line.substr(s_FaultMark.size()), ": ");
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

void KeepLine(std::string_view line) {
    const auto isMark = [&](std::string_view mark) { return line.starts_with(mark); };
    const auto mark = std::ranges::find_if(s_FileMarks, isMark);
    const size_t fileEnd = line.find(s_FileEnd);
    if (mark != s_FileMarks.end())
        s_Notes.warnings.push_back(DescribeFile(line.substr(mark->size()), s_FileEnd));
    else if (isMark(s_LayerMark))
        s_Notes.warnings.emplace_back(line.substr(s_LayerMark.size()));
    else if (isMark(s_SystemMark) && fileEnd != line.npos)
        s_Notes.systemReason = line.substr(fileEnd + s_FileEnd.size());
    else
        s_Notes.lastWarning = line;
}

void KeepWarning(dbMessage message) {
    KeepFault(message);
    for (const char* pLine : message)
        KeepLine(WithoutPlace(pLine));
}

// Another file's content would be lost, and an input's with it the next merge.
void CheckOutput(const MergeArguments& arguments) {
    const auto getPath = [](const std::string& nativePath) { return OSFile::ToNative(OSFile::FromNative(nativePath)); };
    const std::string output = OSFile::ToNative(GetOutputPath(arguments.merged));
    const auto isOutput = [&](const std::string& input) { return getPath(input) == output; };
    if (isOutput(arguments.model) || std::ranges::any_of(arguments.animations, isOutput))
        throw HostError(2, arguments.merged + ": is merged itself; choose another name for the merged model");
    RequireReplaceable(arguments.merged);
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

std::string GetReason() {
    if (s_Notes.lastFault.empty())
        return s_Notes.lastWarning;
    return s_Notes.lastFault + (s_Notes.systemReason.empty() ? "" : " (" + s_Notes.systemReason + ')');
}

void PrintWarnings(const Messages& messages) {
    for (const std::string& line : s_Notes.warnings)
        messages.Print(MessageKind::Warning, line);
}

} // namespace

void CheckMergeInputs(const MergeArguments& arguments) {
    CheckReadable(arguments.model, "name the model that was exported with its meshes");
    CheckProjects(arguments);
    if (arguments.noModel)
        return;
    CheckOutput(arguments);
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
    PrintWarnings(messages);
    // A merge goes on without a shared texture that can't be saved.
    if (!s_Notes.lastFault.empty())
        messages.Print(MessageKind::Warning, GetReason());
}

void MergeNotes::PrintFailure(const MergeArguments& arguments, bool silent, const Messages& messages) const {
    PrintWarnings(messages);
    const std::string reason = GetReason();
    if (silent)
        messages.Print(MessageKind::Error,
                       arguments.merged + ": the merge failed" + (reason.empty() ? "" : ": " + reason));
    else if (!reason.empty())
        messages.Print(MessageKind::Error, reason);
}
