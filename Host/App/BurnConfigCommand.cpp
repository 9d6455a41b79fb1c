#include "Host/App/BurnConfigCommand.h"

#include "Host/App/PipelineScope.h"
#include "Host/App/TextUtil.h"
#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RevControlAPI/RevControlAPI.h"
#include "Shared/PC/FileSystem/OSFile.h"
#include "Shared_Tools/Burner/Config/ConfigLoad.h"
#include "Shared_Tools/Burner/Config/ConfigOrigins.h"

#include <functional>

namespace {

constexpr char s_Changelist[] = "PVX Export Changes"; // where all tools open their files

// Gathers the reasons that go to the log alone. One at a time.
class ReasonCapture {
public:
    ReasonCapture() {
        s_Text.clear();
        dbAddWarningSubscriber(Keep);
        dbAddErrorSubscriber(Keep);
    }
    ~ReasonCapture() {
        dbRemoveWarningSubscriber(Keep);
        dbRemoveErrorSubscriber(Keep);
    }
    ReasonCapture(const ReasonCapture&) = delete;
    ReasonCapture& operator=(const ReasonCapture&) = delete;

    const std::string& GetText() const { return s_Text; }

private:
    static void Keep(dbMessage message) {
        for (const char* pLine : message) {
            s_Text += s_Text.empty() ? "" : "; ";
            s_Text += WithoutPlace(pLine);
        }
    }

    static inline std::string s_Text;
};

std::string FindFile(const std::string& nativeFile) {
    std::string file = Pipeline::GetFullPath(OSFile::FromNative(nativeFile).c_str());
    if (!OSFile::FileAttr(file.c_str()))
        throw HostError(2, nativeFile + ": there is no such file or folder; name one in a project's generic folder");
    return file;
}

std::string GetFileName(const std::string& file) { return file.substr(file.rfind('\\') + 1); }

ConfigOrigins LoadConfig(const std::string& file, const Messages& messages) {
    ConfigOrigins origins;
    BurnerMessageList reasons;
    const bool loaded = origins.Load(file.c_str(), reasons);
    std::vector<std::string> lines;
    for (const BurnerMessage& message : reasons)
        lines.push_back(message.text);
    messages.PrintList(lines);
    if (!loaded)
        throw HostError(1, OSFile::ToNative(file) + ": has no burn configuration that can be read; see above");
    return origins;
}

using TargetIDs = std::vector<BurnerConfig::TargetID>;

TargetIDs GetTargets(const BurnerConfig& config, const char* pGroup) {
    TargetIDs ids;
    for (uint32_t i = 0; i < config.GetTargetCount(pGroup); ++i)
        ids.push_back(config.GetTargetID(i, pGroup));
    return ids;
}

class Printer {
public:
    Printer(std::FILE* pOut, const ConfigOrigins& origins, const std::string& file)
        : m_pOut(pOut), m_Origins(origins), m_File(file) {}

    void Print() const {
        const BurnerConfig& config = m_Origins.GetConfig();
        std::fprintf(m_pOut, "%s: version %u\n", OSFile::ToNative(m_File).c_str(), config.GetVersion());
        std::fprintf(m_pOut, "scripts, the nearest first:\n");
        for (const std::string& script : m_Origins.GetChain().scripts)
            std::fprintf(m_pOut, "  %s\n", OSFile::ToNative(script).c_str());
        for (uint32_t i = 0; i < config.GetGroupCount(); ++i)
            PrintGroup(config.GetGroupName(i), config.GetGroupWildcard(i));
    }

private:
    // A folder's configuration is for whatever lies in it.
    bool IsForFile(const char* pWildcard) const {
        return (OSFile::FileAttr(m_File.c_str()) & OSFile::F_ATTRIBUTE_DIRECTORY) ||
               MatchesFile(pWildcard, GetFileName(m_File));
    }

    void PrintGroup(const char* pGroup, const char* pWildcard) const {
        const bool isForFile = IsForFile(pWildcard);
        std::fprintf(m_pOut, "group %s, for %s%s\n", pGroup, pWildcard, isForFile ? "" : ": not for this file");
        if (isForFile)
            for (const BurnerConfig::TargetID id : GetTargets(m_Origins.GetConfig(), pGroup))
                PrintTarget(id);
    }

    void PrintTarget(BurnerConfig::TargetID id) const {
        const BurnerConfig& config = m_Origins.GetConfig();
        std::fprintf(m_pOut, "  target %s: plug-in %s, to %s\n", config.GetTargetName(id), config.GetTargetPlugin(id),
                     config.GetTargetDestination(id));
        BurnerConfig::Param param;
        for (uint32_t i = 0; config.GetParam(i, id, param); ++i)
            std::fprintf(m_pOut, "    %s = %s  (%s)\n", param.name.c_str(), param.value.c_str(),
                         OSFile::ToNative(m_Origins.GetScript(id, i)).c_str());
    }

    std::FILE* m_pOut;
    const ConfigOrigins& m_Origins;
    const std::string& m_File;
};

std::string Join(const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names)
        text += (text.empty() ? "" : ", ") + name;
    return text.empty() ? "none" : text;
}

std::vector<std::string> GetGroupNames(const BurnerConfig& config) {
    std::vector<std::string> names;
    for (uint32_t i = 0; i < config.GetGroupCount(); ++i)
        names.emplace_back(config.GetGroupName(i));
    return names;
}

bool HasGroup(const BurnerConfig& config, const std::string& name) {
    for (const std::string& known : GetGroupNames(config))
        if (BurnerConfig::IsSameText(known, name))
            return true;
    return false;
}

[[noreturn]] void RefuseName(const char* pKind, const std::string& name, const std::vector<std::string>& known,
                             const char* pAdvice = "") {
    throw HostError(2, std::string("there is no ") + pKind + " \"" + name + "\"; known are: " + Join(known) + pAdvice);
}

// The target that the names mean, which has the parameter.
BurnerConfig::TargetID FindTarget(const BurnerConfig& config, const BurnConfigArguments& arguments) {
    if (!HasGroup(config, arguments.group))
        RefuseName("target group", arguments.group, GetGroupNames(config));
    const char* pGroup = arguments.group.c_str();
    const BurnerConfig::TargetID id = config.GetTargetID(arguments.target.c_str(), pGroup);
    std::vector<std::string> known;
    if (id == BurnerConfig::TargetID::InvalidID) {
        for (const BurnerConfig::TargetID other : GetTargets(config, pGroup))
            known.emplace_back(config.GetTargetName(other));
        RefuseName("target", arguments.target, known);
    }
    BurnerConfig::Param param;
    if (!config.GetParam(arguments.name.c_str(), id, param)) {
        for (uint32_t i = 0; config.GetParam(i, id, param); ++i)
            known.push_back(param.name);
        RefuseName("parameter", arguments.name, known, "; a new one is first named in the base script, by hand");
    }
    return id;
}

std::unique_ptr<RevControlAPI> Connect() {
    std::string port;
    if (!Pipeline::Get()->GetString("p4", "RevControlPort", port))
        throw HostError(2, OSFile::ToNative(Pipeline::Get()->GetIniFile()) +
                               ": 'RevControlPort' isn't listed under [p4]; add it, empty to work without a server");
    return RevControlAPI::Create(port.c_str(), RevControlAPI::Type_P4OrLocal);
}

void Save(const std::string& file, BurnerConfig config) {
    const std::unique_ptr<RevControlAPI> pControl = Connect();
    int32_t changelist = 0;
    if (!pControl->FindOrCreateChangelist(s_Changelist, changelist))
        throw HostError(1, std::string("the changelist \"") + s_Changelist +
                               "\" can't be found or made: " + pControl->GetLastError());
    const ReasonCapture reasons;
    if (!ConfigLoad().SaveConfig(*pControl, changelist, file.c_str(), config))
        throw HostError(1, OSFile::ToNative(file) + ": the configuration isn't saved: " + reasons.GetText());
}

void CheckHasAbove(const ScriptChain& chain) {
    if (chain.ownScript && chain.scripts.size() == 1)
        throw HostError(2, OSFile::ToNative(chain.burnFile) +
                               ": is the base, which names the targets; it is changed by hand");
}

int Edit(const BurnConfigArguments& arguments, const std::string& file, const Messages& messages) {
    const ConfigOrigins origins = LoadConfig(file, messages);
    const ScriptChain& chain = origins.GetChain();
    CheckHasAbove(chain);
    BurnerConfig config = origins.GetConfig();
    const BurnerConfig::TargetID id = FindTarget(config, arguments);
    BurnerConfig::Param param{.name = arguments.name, .value = arguments.value};
    if (arguments.action == BurnConfigArguments::Action::Unset &&
        !origins.GetAbove().GetParam(arguments.name.c_str(), id, param))
        throw HostError(1, arguments.name + ": only " + OSFile::ToNative(chain.burnFile) +
                               " has it, so there is no other value to give it back to");
    config.SetParam(param, id);
    Save(file, config);
    const std::string script = OSFile::ToNative(chain.burnFile);
    if (ScriptPath::IsFile(chain.burnFile))
        messages.Print(MessageKind::Note, script + ": written");
    else
        messages.Print(MessageKind::Note, chain.ownScript ? script + ": removed, since nothing differs any more"
                                                          : script + ": not needed, since nothing differs");
    return 0;
}

} // namespace

int RunBurnConfig(const BurnConfigArguments& arguments, std::FILE* pOut, const Messages& messages) {
    const std::string file = FindFile(arguments.file);
    const PipelineScope pipeline(arguments.file);
    PipelineScope::RequireInProject(arguments.file, Pipeline::Kind_Generic, "burn scripts lie in such folders");
    if (arguments.action != BurnConfigArguments::Action::Show)
        return Edit(arguments, file, messages);
    const ConfigOrigins origins = LoadConfig(file, messages);
    Printer(pOut, origins, file).Print();
    return 0;
}
