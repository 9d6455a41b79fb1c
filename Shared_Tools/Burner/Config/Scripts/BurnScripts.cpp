#include "Shared_Tools/Burner/Config/Scripts/BurnScripts.h"

#include "Shared/Cross/FileSystem/ByteStream.h"
#include "Shared/Cross/LuaConfig/LuaConfig.h"
#include "Shared/Cross/LuaConfig/LuaConfigSave.h"
#include "Shared_Tools/Burner/Config/ConfigReport.h"
#include "Shared_Tools/Burner/Config/ConfigWalk.h"
#include "Shared_Tools/Burner/Config/Scripts/ConfigParser.h"

namespace {

// Entries of a list are numbered from 1.
class ListKeys {
public:
    std::string Next() { return std::to_string(++m_Count); }

private:
    uint32_t m_Count = 0;
};

void FillParams(LuaConfig& script, const BurnerConfig& config, BurnerConfig::TargetID id) {
    script.BeginTable("params");
    ListKeys keys;
    BurnerConfig::Param param;
    for (uint32_t i = 0; config.GetParam(i, id, param); ++i) {
        if (param.inherited)
            continue;
        script.BeginTable(keys.Next().c_str());
        script.SetString("1", param.name.c_str());
        script.SetString("2", param.value.c_str());
        script.EndTable();
    }
    script.EndTable();
}

void FillTargets(LuaConfig& script, const BurnerConfig& config, const char* pGroup) {
    script.BeginTable("targets");
    ListKeys keys;
    for (uint32_t i = 0; i < config.GetTargetCount(pGroup); ++i) {
        const BurnerConfig::TargetID id = config.GetTargetID(i, pGroup);
        if (config.IsTargetInherited(id))
            continue;
        script.BeginTable(keys.Next().c_str());
        script.SetString("target", config.GetTargetName(id));
        FillParams(script, config, id);
        script.EndTable();
    }
    script.EndTable();
}

// burn_params, as the head of ConfigParser.h has it.
void FillScript(LuaConfig& script, const BurnerConfig& config) {
    script.BeginTable("burn_params");
    ListKeys keys;
    for (uint32_t i = 0; i < config.GetGroupCount(); ++i) {
        const char* pGroup = config.GetGroupName(i);
        if (config.IsGroupInherited(pGroup))
            continue;
        script.BeginTable(keys.Next().c_str());
        script.SetString("name", pGroup);
        FillTargets(script, config, pGroup);
        script.EndTable();
    }
    script.EndTable();
}

// What would come back as something else isn't written in the first place.
bool CanBeWritten(const BurnerConfig& config) {
    return ForEachParam(config, [&](BurnerConfig::TargetID id, const BurnerConfig::Param& param) {
        for (const std::string& text : {param.name, param.value, std::string(config.GetTargetName(id)),
                                        std::string(config.GetGroupName(static_cast<uint32_t>(id.group)))}) {
            if (param.inherited || LuaConfigSave::SurvivesSave(text))
                continue;
            LogBurn("'%s' can't be written to a script", text.c_str());
            return false;
        }
        return true;
    });
}

} // namespace

extern "C" bool PvxReadBurnScript(ByteStream& stream, bool isBase, BurnerConfig& config, BurnerMessageList* pMessages) {
    ConfigParser parser(stream, config, pMessages);
    return isBase ? parser.ParseBase() : parser.ParseOverride();
}

extern "C" bool PvxCanWriteBurnScript(const BurnerConfig& config) { return CanBeWritten(config); }

extern "C" bool PvxWriteBurnScript(const BurnerConfig& config, ByteStream& stream) {
    if (!CanBeWritten(config))
        return false;
    LuaConfig script("");
    FillScript(script, config);
    return LuaConfigSave::SaveToStream(script, true, true, stream);
}
