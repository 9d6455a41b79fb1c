#pragma once

#include "Shared_Tools/Burner/Config/BurnerConfig.h"
#include "Shared_Tools/Burner/Config/ScriptChain.h"
#include "Shared_Tools/Burner/Messages/BurnerMessage.h"

#include <map>
#include <utility>

// A file's burn configuration with the scripts that its values come from, for those who show or edit it.
class ConfigOrigins {
public:
    // False, with the reasons in `messages`, as ConfigLoad::LoadConfig.
    bool Load(const char* pFilename, BurnerMessageList& messages);

    const BurnerConfig& GetConfig() const { return m_Config; }
    // What the file would get without a script of its own. Empty when that script is the base.
    const BurnerConfig& GetAbove() const { return m_Above; }
    const ScriptChain& GetChain() const { return m_Chain; }
    // The last script of the chain to change the value of that parameter, by its place in the target.
    const std::string& GetScript(BurnerConfig::TargetID id, uint32_t param) const;

private:
    void Fold(const std::string& script, BurnerConfig& config);

    ScriptChain m_Chain;
    BurnerConfig m_Config;
    BurnerConfig m_Above;
    // By target; places of parameters stay the same from level to level.
    std::map<std::pair<int32_t, int32_t>, std::vector<std::string>> m_Scripts;
};

// Whether a group's pattern matches a file's whole name, without regard to case.
bool MatchesFile(const char* pWildcard, const std::string& fileName);
