#include "Shared_Tools/Burner/Config/ConfigLoad.h"

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/FileSystem/Paths/FilePathHDRaw.h"
#include "Shared/PC/FileSystem/OSFile.h"
#include "Shared_Tools/Burner/Config/BurnScriptLoader.h"
#include "Shared_Tools/Burner/Config/ConfigReport.h"
#include "Shared_Tools/Burner/Config/ConfigWalk.h"
#include "Shared_Tools/Burner/Config/ScriptChain.h"

#include <algorithm>

namespace {

// Without a word when the file can't be opened: who asks knows whether that matters.
bool ReadScript(const char* pPath, bool isBase, BurnerConfig& config, BurnerMessageList* pMessages) {
    const std::unique_ptr<ByteStream> pStream = FilePathHDRaw(true).Open(pPath, ByteStream::Mode_Read);
    return pStream && BurnScripts::Read(*pStream, isBase, config, pMessages);
}

} // namespace

bool ConfigLoad::ParseBaseConfig(const char* pPath, BurnerConfig& config, BurnerMessageList* pMessages) {
    config.Clear();
    return ReadScript(pPath, true, config, pMessages);
}

bool ConfigLoad::ParseOverrideConfig(const char* pPath, BurnerConfig& config, BurnerMessageList* pMessages) {
    return ReadScript(pPath, false, config, pMessages);
}

bool ConfigLoad::LoadConfig(const char* pFilename, BurnerConfig& config, BurnerMessageList& messages) {
    ScriptChain chain;
    if (const std::string reason = chain.Find(pFilename); !reason.empty()) {
        AddBurnerWarning(messages, s_ConfigSource, "%s", reason.c_str());
        return false;
    }
    if (!FoldScripts(chain.genericPath, chain.scripts, config, messages))
        return false;
    if (chain.ownScript)
        return true;
    // Whatever the levels in between have changed, to the file it comes from above.
    return ForEachParam(config, [&](BurnerConfig::TargetID id, BurnerConfig::Param param) {
        param.inherited = true;
        if (config.SetParam(param, id))
            return true;
        AddBurnerWarning(messages, s_ConfigSource, "Unable to save corrected parameter %s to input config file.",
                         param.name.c_str());
        return false;
    });
}

bool ConfigLoad::FoldScripts(const std::string& genericPath, const std::vector<std::string>& scripts,
                             BurnerConfig& config, BurnerMessageList& messages) {
    auto base = m_Bases.find(genericPath);
    if (base == m_Bases.end()) {
        BurnerConfig parsed;
        if (!ParseBaseConfig(scripts.back().c_str(), parsed, &messages)) {
            AddBurnerWarning(messages, s_ConfigSource, "Unable to load default configuration %s.",
                             scripts.back().c_str());
            return false;
        }
        base = m_Bases.emplace(genericPath, std::move(parsed)).first;
    }
    config = base->second;
    return std::all_of(scripts.rbegin() + 1, scripts.rend(), [&](const std::string& script) {
        if (ParseOverrideConfig(script.c_str(), config, &messages))
            return true;
        AddBurnerWarning(messages, s_ConfigSource, "Unable to load configuration %s.", script.c_str());
        return false;
    });
}

bool ConfigLoad::GetConfigTimestamp(const char* pFilename, int64_t& time) {
    ScriptChain chain;
    if (const std::string reason = chain.Find(pFilename); !reason.empty()) {
        dbWarningf("%s", reason.c_str());
        return false;
    }
    time = 0;
    for (const std::string& script : chain.scripts)
        time = std::max(time, OSFile::GetWriteTime(script.c_str()));
    return true;
}
