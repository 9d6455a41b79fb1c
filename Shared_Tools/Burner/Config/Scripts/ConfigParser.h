#pragma once

#include "Shared/Cross/LuaConfig/LuaConfig.h"
#include "Shared_Tools/Burner/Config/BurnerConfig.h"
#include "Shared_Tools/Burner/Config/ConfigReport.h"

#include <functional>

// One burn script, which is a chunk of Lua that sets these globals:
//
//   burn_version = 1                                             the base alone
//   burn_targets = { group... }                                  the base alone
//     group  = { name = "", wildcard = "", targets = { target... } }     without a wildcard: all files
//     target = { target = "", destination = "", plugin = "" }
//   burn_params = { group... }                                   in a base, it may be left out
//     group  = { name = "", targets = { target... } }
//     target = { target = "", params = { { "name", "value" }... } }
//
// Every operation answers false for what ends the parse, and says why.
class ConfigParser {
public:
    // The stream is borrowed, as is all else.
    ConfigParser(ByteStream& stream, BurnerConfig& config, BurnerMessageList* pMessages);

    bool ParseBase();
    bool ParseOverride();

private:
    using ParseEntry = std::function<bool(const std::string& key)>;

    bool Load();
    // Each entry of the current table, entered. An entry that is no table ends the walk through `refuse`.
    bool ForEachTable(const ParseEntry& parse, const ParseEntry& refuse);
    bool ForEachIn(const char* pTable, const ParseEntry& parse, const ParseEntry& refuse);

    bool ParseTargets();
    bool ParseGroup();
    bool ParseGroupTargets(const std::string& group);
    bool ParseTarget(const std::string& group);
    bool AddTarget(const std::string& group);

    bool ParseParams();
    bool ParseParamGroup();
    bool ParseParamTargets(const std::string& group);
    bool ParseParamTarget(const std::string& group);
    void ReportUnknownTarget(const std::string& group, const std::string& target) const;
    void ParsePair(const std::string& target, BurnerConfig::TargetID id, const std::string& key);
    void Fold(const std::string& name, const std::string& value, BurnerConfig::TargetID id);

    ByteStream& m_Stream;
    const char* m_pPath; // the stream's name
    BurnerConfig& m_Config;
    ConfigReport m_Report;
    LuaConfig m_Script;
};
