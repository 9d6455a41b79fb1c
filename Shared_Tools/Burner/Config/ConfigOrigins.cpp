#include "Shared_Tools/Burner/Config/ConfigOrigins.h"

#include "Shared/Cross/RevControlAPI/PatternLoader.h"
#include "Shared_Tools/Burner/Config/ConfigLoad.h"

bool ConfigOrigins::Load(const char* pFilename, BurnerMessageList& messages) {
    if (!ConfigLoad().LoadConfig(pFilename, m_Config, messages) || !m_Chain.Find(pFilename).empty())
        return false;
    BurnerConfig config;
    for (size_t i = m_Chain.scripts.size(); i-- > 0;) {
        if (i == 0 && m_Chain.ownScript)
            m_Above = config;
        Fold(m_Chain.scripts[i], config);
    }
    if (!m_Chain.ownScript)
        m_Above = config;
    return true;
}

void ConfigOrigins::Fold(const std::string& script, BurnerConfig& config) {
    const BurnerConfig before = config;
    if (script == m_Chain.scripts.back())
        ConfigLoad::ParseBaseConfig(script.c_str(), config);
    else
        ConfigLoad::ParseOverrideConfig(script.c_str(), config);
    for (uint32_t group = 0; group < config.GetGroupCount(); ++group)
        for (uint32_t target = 0; target < config.GetTargetCount(config.GetGroupName(group)); ++target) {
            const BurnerConfig::TargetID id = config.GetTargetID(target, config.GetGroupName(group));
            std::vector<std::string>& scripts = m_Scripts[{id.group, id.target}];
            scripts.resize(config.GetParamCount(id), script);
            BurnerConfig::Param old;
            BurnerConfig::Param param;
            for (uint32_t i = 0; before.GetParam(i, id, old) && config.GetParam(i, id, param); ++i)
                if (!BurnerConfig::IsSameText(old.value, param.value))
                    scripts[i] = script;
        }
}

const std::string& ConfigOrigins::GetScript(BurnerConfig::TargetID id, uint32_t param) const {
    static const std::string s_None;
    const auto scripts = m_Scripts.find({id.group, id.target});
    return scripts != m_Scripts.end() && param < scripts->second.size() ? scripts->second[param] : s_None;
}

bool MatchesFile(const char* pWildcard, const std::string& fileName) {
    PatternMatchFunction* const pMatch = LoadPatternMatcher();
    char ignored[1];
    return pMatch && pMatch((std::string("(?i)") + pWildcard).c_str(), fileName.c_str(), ignored, sizeof ignored);
}
