// The way back: from a configuration to the file's own script.
#include "Shared_Tools/Burner/Config/ConfigLoad.h"

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/FileSystem/Paths/FilePathHDRaw.h"
#include "Shared/Cross/RevControlAPI/RevControlAPI.h"
#include "Shared/PC/FileSystem/OSFile.h"
#include "Shared_Tools/Burner/Config/BurnScriptLoader.h"
#include "Shared_Tools/Burner/Config/ConfigReport.h"
#include "Shared_Tools/Burner/Config/ConfigWalk.h"
#include "Shared_Tools/Burner/Config/ScriptChain.h"

namespace {

bool IsAllInherited(const BurnerConfig& config) {
    for (uint32_t group = 0; group < config.GetGroupCount(); ++group) {
        const char* pGroup = config.GetGroupName(group);
        if (config.GetTargetCount(pGroup) > 0 && !config.IsGroupInherited(pGroup))
            return false;
    }
    return true;
}

bool OpenForDelete(RevControlAPI& revControl, int32_t changelist, const std::string& burnFile) {
    if (revControl.Delete(burnFile.c_str(), changelist))
        return true;
    LogBurn("unable to open %s for delete in changelist %i", burnFile.c_str(), changelist);
    return false;
}

bool Revert(RevControlAPI& revControl, int32_t changelist, const std::string& burnFile) {
    if (revControl.RevertFile(burnFile.c_str(), changelist, false))
        return true;
    LogBurn("Unable to revert %s in changelist %i", burnFile.c_str(), changelist);
    return false;
}

bool RemoveFromControl(RevControlAPI& revControl, int32_t changelist, const std::string& burnFile) {
    switch (revControl.GetFileStatus(burnFile.c_str())) {
    case RevControlAPI::Status_InDepot:
        return OpenForDelete(revControl, changelist, burnFile);
    case RevControlAPI::Status_Edit:
        return Revert(revControl, changelist, burnFile) && OpenForDelete(revControl, changelist, burnFile);
    case RevControlAPI::Status_Add:
        return Revert(revControl, changelist, burnFile);
    default:
        return true;
    }
}

// A script that says nothing goes away.
bool RemoveScript(RevControlAPI& revControl, int32_t changelist, const std::string& burnFile) {
    if (!RemoveFromControl(revControl, changelist, burnFile))
        return false;
    if (!ScriptPath::IsFile(burnFile) || OSFile::Delete(burnFile.c_str()))
        return true;
    LogBurn("Unable to remove stale burn file %s", burnFile.c_str());
    return false;
}

bool WriteScript(const std::string& burnFile, const BurnerConfig& config) {
    const std::unique_ptr<FileReplacement> pFile = FilePathHDRaw(false).Replace(burnFile.c_str());
    if (!pFile) {
        LogBurn("Burner configuration '%s' not opened for writing.", burnFile.c_str());
        return false;
    }
    if (BurnScripts::Write(config, pFile->GetStream()) && pFile->Finish())
        return true;
    LogBurn("Burner configuration '%s' not written.", burnFile.c_str());
    return false;
}

bool IsOpened(RevControlAPI::OpenResult result) {
    return result == RevControlAPI::Open_Opened || result == RevControlAPI::Open_OtherList ||
           result == RevControlAPI::Open_AlreadyOpened;
}

} // namespace

bool ConfigLoad::SaveConfig(RevControlAPI& revControl, int32_t changelist, const char* pFilename,
                            BurnerConfig& config) {
    ScriptChain chain;
    const std::string reason = chain.FindProject(pFilename);
    if (chain.burnFile.empty()) {
        dbWarningf("%s", reason.c_str());
        return false;
    }
    const std::string& burnFile = chain.burnFile;
    if (!ValidateAgainstParent(pFilename, config)) {
        LogBurn("Unable to validate burner configuration %s against its parent.", burnFile.c_str());
        return false;
    }
    if (IsAllInherited(config))
        return RemoveScript(revControl, changelist, burnFile);
    if (!BurnScripts::CanWrite(config))
        return false;
    // Whoever describes a file should have its newest state; not to get it is no reason to stop.
    revControl.Sync(pFilename, false);
    if (!IsOpened(revControl.OpenOrAdd(burnFile.c_str(), changelist))) {
        dbWarningf("Unable to open %s for add or edit", burnFile.c_str());
        return false;
    }
    return WriteScript(burnFile, config);
}

bool ConfigLoad::ValidateAgainstParent(const char* pFilename, BurnerConfig& config) {
    ScriptChain chain;
    if (const std::string reason = chain.FindProject(pFilename); !reason.empty()) {
        dbWarningf("%s", reason.c_str());
        return false;
    }
    std::string folder;
    if (!ScriptPath::FindUpward(k_DefaultBurnFilename, ScriptPath::GetParent(pFilename).c_str(), chain.genericPath,
                                folder))
        return true;
    const std::string script = folder + "\\" + k_DefaultBurnFilename;
    BurnerConfig parent;
    BurnerMessageList messages;
    if (!LoadConfig(script.c_str(), parent, messages)) {
        LogBurn("Unable to load parent config %s for validation", script.c_str());
        return false;
    }
    return ForEachParam(config, [&](BurnerConfig::TargetID id, BurnerConfig::Param param) {
        BurnerConfig::Param above;
        const char* pGroup = config.GetGroupName(static_cast<uint32_t>(id.group));
        if (!parent.GetParam(param.name.c_str(), parent.GetTargetID(config.GetTargetName(id), pGroup), above)) {
            LogBurn("Unable to load the parameter %s from input config file.", param.name.c_str());
            return false;
        }
        param.inherited = BurnerConfig::IsSameText(param.value, above.value);
        if (config.SetParam(param, id))
            return true;
        LogBurn("Unable to save corrected parameter %s to input config file.", param.name.c_str());
        return false;
    });
}
