#include "Shared_Tools/BurnerImp/FileBurner.h"

#include "Shared/Cross/Assist/Inventory.h"
#include "Shared/Cross/FileSystem/Paths/FilePathUtil.h"
#include "Shared/Cross/Pipeline/Pipeline.h"
#include "Shared/Cross/Pipeline/TextUtil.h"
#include "Shared/PC/FileSystem/OSFile.h"
#include "Shared_Tools/BurnerImp/BurnReport.h"
#include "Shared_Tools/BurnerImp/NameMatcher.h"

#include <algorithm>
#include <exception>
#include <stdexcept>

namespace {

// The project's folders under their aliases, as long as one of its files is burned.
class ProjectFolders {
public:
    // What isn't to be written isn't to be made either.
    ProjectFolders(const char* pProject, bool sayOnly)
        : m_Generic(Pipeline::Get()->CreateMapper(pProject, Pipeline::Kind_Generic, false)),
          m_Final(Pipeline::Get()->CreateMapper(pProject, Pipeline::Kind_Final, false)) {
        m_Generic.MapReadOnly();
        if (sayOnly)
            m_Final.MapReadOnly();
        else
            m_Final.Map();
    }

private:
    Pipeline::Mapper m_Generic; // release what they have mapped
    Pipeline::Mapper m_Final;
};

// What a file brought into the inventory goes with it, so that a long job needs no more memory than a short one.
class FileFrame {
public:
    explicit FileFrame(const std::string& name) { Inv::PushFrame(name.c_str()); }
    ~FileFrame() {
        Inv::PopFrame();
        Inv::PurgeUnreferenced();
    }
    FileFrame(const FileFrame&) = delete;
    FileFrame& operator=(const FileFrame&) = delete;
};

std::string Join(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words)
        text += (text.empty() ? "" : ", ") + word;
    return text;
}

std::string ListPlugins() {
    std::vector<std::string> names;
    for (const BurnPlugin* pPlugin : GetBurnPlugins())
        names.emplace_back(pPlugin->GetName());
    return Join(names);
}

BurnSource MakeSource(const std::string& file, const char* pProject) {
    const std::string folder = Pipeline::Get()->GetFolder(pProject, Pipeline::Kind_Generic);
    BurnSource source;
    source.file = file;
    source.relative = file.substr(std::min(file.size(), folder.size() + (folder.ends_with('\\') ? 0 : 1)));
    source.alias = "GENERIC:" + source.relative;
    source.finalFolder = Pipeline::Get()->GetFolder(pProject, Pipeline::Kind_Final);
    return source;
}

} // namespace

FileBurner::FileBurner(const BurnOptions& options, size_t fileCount, BurnReport& report)
    : m_Options(options), m_FileCount(std::to_string(fileCount)), m_Report(report), m_Control(options.changelist) {}

void FileBurner::Burn(const std::string& file) {
    ++m_FileNumber;
    bool matched = false;
    Outcome outcome = Outcome::Failed;
    try {
        outcome = BurnMatching(Pipeline::GetFullPath(file.c_str()), matched);
    } catch (const std::exception& error) {
        m_Report.AddError(file, error.what());
    }
    if (outcome == Outcome::Failed)
        ++m_Counts.failed;
    else if (!matched)
        ++m_Counts.unmatched;
    else
        ++(outcome == Outcome::Burned ? m_Counts.burned : m_Counts.upToDate);
}

FileBurner::Outcome FileBurner::BurnMatching(const std::string& file, bool& matched) {
    if ((OSFile::FileAttr(file.c_str()) & OSFile::F_ATTRIBUTE_FILE) == 0)
        throw std::runtime_error("there is no such file");
    const char* pProject = Pipeline::Get()->FindProjectForFile(file.c_str(), Pipeline::Kind_Generic);
    if (!pProject)
        throw std::runtime_error("lies in no project's generic folder; see pipeline.ini");
    const ProjectFolders folders(pProject, m_Options.sayOnly);
    const BurnSource source = MakeSource(file, pProject);
    BurnerConfig config;
    int64_t scriptTime = 0;
    if (!LoadConfig(file, config, scriptTime))
        throw std::runtime_error("has no burn configuration that can be used");
    const Outcome outcome = BurnTargets(source, config, scriptTime, matched);
    if (!matched && outcome != Outcome::Failed)
        m_Report.AddWarning(source.relative, "matches no target group of its burn configuration");
    return outcome;
}

bool FileBurner::LoadConfig(const std::string& file, BurnerConfig& config, int64_t& scriptTime) {
    BurnerMessageList messages;
    const bool isLoaded = m_ConfigLoad.LoadConfig(file.c_str(), config, messages);
    m_Report.Append(std::move(messages));
    return isLoaded && ConfigLoad::GetConfigTimestamp(file.c_str(), scriptTime);
}

FileBurner::Outcome FileBurner::BurnTargets(const BurnSource& source, const BurnerConfig& config, int64_t scriptTime,
                                            bool& matched) {
    const std::string name = FilePathUtil::GetFileName(source.file.c_str());
    Outcome worst = Outcome::UpToDate;
    for (uint32_t group = 0; group < config.GetGroupCount(); ++group) {
        if (!NameMatcher(config.GetGroupWildcard(group)).Matches(name))
            continue;
        matched = true;
        const char* pGroup = config.GetGroupName(group);
        for (uint32_t i = 0; i < config.GetTargetCount(pGroup) && !m_Report.IsCut(); ++i) {
            worst = std::max(worst, BurnTarget(source, config, config.GetTargetID(i, pGroup), scriptTime));
            m_Report.Send();
        }
    }
    return worst;
}

FileBurner::Outcome FileBurner::BurnTarget(const BurnSource& source, const BurnerConfig& config,
                                           BurnerConfig::TargetID id, int64_t scriptTime) {
    Target target;
    if (!ReadTarget(source, config, id, target))
        return Outcome::Failed;
    try {
        std::vector<std::string> outputs;
        for (const std::string& extension : target.pPlugin->GetOutputExtensions(source))
            outputs.push_back(MakeOutputPath(source, target.destination, extension));
        std::vector<std::string> inputs = target.pPlugin->GetSideFiles(source);
        inputs.push_back(source.file);
        if (!m_Options.burnAll && AreOutputsNewer(source, outputs, std::max(scriptTime, GetNewestTime(inputs)))) {
            Say(source, target, Join(outputs) + (outputs.size() == 1 ? " is" : " are") + " up to date");
            return Outcome::UpToDate;
        }
        if (m_Options.sayOnly) {
            Say(source, target, "would write " + Join(outputs));
            return Outcome::Burned;
        }
        Write(source, target, outputs);
        Say(source, target, "wrote " + Join(outputs));
        return Outcome::Burned;
    } catch (const std::exception& error) {
        m_Report.AddError(source.relative, "target '" + target.name + "': " + error.what());
        return Outcome::Failed;
    }
}

void FileBurner::Write(const BurnSource& source, const Target& target, const std::vector<std::string>& outputs) {
    if (m_Options.revisionControl)
        for (const std::string& output : outputs)
            if (!m_Control.Open(output))
                m_Report.AddWarning(source.relative, output + " stays opened in another changelist");
    const ReportedWarnings warnings(m_Report, source.relative);
    const FileFrame frame(source.relative);
    OutputFiles files(outputs);
    target.pPlugin->Burn(source, target.params, files.GetStreams());
    files.Finish();
}

bool FileBurner::ReadTarget(const BurnSource& source, const BurnerConfig& config, BurnerConfig::TargetID id,
                            Target& target) {
    target.name = config.GetTargetName(id);
    target.destination = config.GetTargetDestination(id);
    const std::string plugin = config.GetTargetPlugin(id);
    target.pPlugin = FindBurnPlugin(plugin);
    if (!target.pPlugin) {
        m_Report.AddError(source.relative, "target '" + target.name + "': plug-in '" + plugin +
                                               "' is unknown; there are " + ListPlugins());
        return false;
    }
    const char* pExtension = target.pPlugin->GetSourceExtension();
    if (pExtension && !FilePathUtil::HasExtension(source.file.c_str(), pExtension + 1)) {
        m_Report.AddError(source.relative,
                          "target '" + target.name + "': plug-in '" + plugin + "' takes " + pExtension + " files");
        return false;
    }
    return ReadParams(source, config, id, target);
}

bool FileBurner::ReadParams(const BurnSource& source, const BurnerConfig& config, BurnerConfig::TargetID id,
                            Target& target) {
    bool good = true;
    BurnerConfig::Param param;
    for (uint32_t i = 0; i < config.GetParamCount(id) && config.GetParam(i, id, param); ++i)
        good &= ReadParam(source, param, target);
    return good;
}

bool FileBurner::ReadParam(const BurnSource& source, const BurnerConfig::Param& param, Target& target) {
    std::string expected;
    const std::string start = "target '" + target.name + "': parameter '" + param.name + "'";
    switch (TakeParam(target.params, target.pPlugin->GetKnownParams(), param.name, param.value, expected)) {
    case ParamResult::Taken:
        break;
    case ParamResult::Unknown:
        m_Report.AddWarning(source.relative, start + " is unknown to plug-in '" + target.pPlugin->GetName() + "'");
        break;
    case ParamResult::BadValue:
        m_Report.AddError(source.relative, start + " is '" + param.value + "' and has to be " + expected);
        return false;
    }
    return true;
}

void FileBurner::Say(const BurnSource& source, const Target& target, const std::string& text) {
    std::string line = "[" + std::to_string(m_FileNumber);
    line += "/" + m_FileCount + "] ";
    line += target.name + ": " + text;
    m_Report.AddInfo(source.relative, line);
}
