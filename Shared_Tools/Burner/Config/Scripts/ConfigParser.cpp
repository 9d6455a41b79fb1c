#include "Shared_Tools/Burner/Config/Scripts/ConfigParser.h"

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/FileSystem/ByteStream.h"
#include "Shared/Cross/LuaConfig/LuaConfigSave.h"

namespace {

// A script of this kind is a page of text. What takes more than this isn't one, and is told so before it costs time.
constexpr LuaConfig::Limits s_Limits{.instructions = 5'000'000, .memory = 4u << 20, .milliseconds = 5'000};

} // namespace

ConfigParser::ConfigParser(ByteStream& stream, BurnerConfig& config, BurnerMessageList* pMessages)
    : m_Stream(stream), m_pPath(stream.GetName()), m_Config(config), m_Report(pMessages), m_Script("", s_Limits) {
    m_Script.GetCallbacks().report = [this](const char* pText) { m_Report.Fail("%s", pText); };
}

bool ConfigParser::Load() {
    return LuaConfigSave::LoadFromStream(m_Script, m_Stream) ||
           m_Report.Fail("Burner configuration '%s' not parsed.  Syntax Error?.", m_pPath);
}

bool ConfigParser::ForEachTable(const ParseEntry& parse, const ParseEntry& refuse) {
    for (LuaConfig::Iterator it = m_Script.Begin(); it != m_Script.End(); it.Next()) {
        // What a script has under keys that it could as well have left alone is no entry.
        const std::string key = it.HasPlainKey() ? it.Key() : "?";
        if (!it.HasPlainKey() || m_Script.GetType(key.c_str()) != LuaConfig::Type_Table ||
            !m_Script.BeginTable(key.c_str()))
            return refuse(key);
        const bool parsed = parse(key);
        m_Script.EndTable();
        if (!parsed)
            return false;
    }
    return true;
}

// A table that isn't there has no entries.
bool ConfigParser::ForEachIn(const char* pTable, const ParseEntry& parse, const ParseEntry& refuse) {
    if (m_Script.GetType(pTable) != LuaConfig::Type_Table || !m_Script.BeginTable(pTable))
        return true;
    const bool parsed = ForEachTable(parse, refuse);
    m_Script.EndTable();
    return parsed;
}

bool ConfigParser::ParseBase() {
    m_Config.Clear();
    uint32_t version = 0;
    if (!Load())
        return false;
    if (!m_Script.GetUnsigned("burn_version", version))
        return m_Report.Fail("Unable to find 'burn_version' in '%s'", m_pPath);
    m_Config.SetVersion(version);
    // Scripts of before had this key, and the tools' users know the message by it.
    if (m_Script.GetType("burn_targets") != LuaConfig::Type_Table)
        return m_Report.Fail("Unable to find 'burn_data' in '%s'", m_pPath);
    return ParseTargets() && ParseParams();
}

bool ConfigParser::ParseOverride() {
    if (!Load())
        return false;
    if (m_Script.GetType("burn_params") != LuaConfig::Type_Table)
        return m_Report.Fail("Unable to find 'burn_data' in '%s'", m_pPath);
    return ParseParams();
}

bool ConfigParser::ParseTargets() {
    return ForEachIn(
        "burn_targets",
        [&](const std::string&) {
            return ParseGroup() || m_Report.Fail("Invalid target group in configuration '%s'.", m_pPath);
        },
        [&](const std::string& key) {
            return m_Report.Fail("Invalid target group table '%s' in configuration '%s'.", key.c_str(), m_pPath);
        });
}

bool ConfigParser::ParseGroup() {
    std::string name;
    if (!m_Script.GetString("name", name))
        return m_Report.Fail("Could not read name for target group.");
    std::string wildcard = ".*";
    m_Script.GetString("wildcard", wildcard);
    if (!m_Config.AddTargetGroup(name.c_str(), wildcard.c_str()))
        return m_Report.Fail("Could not add new target group.");
    return ParseGroupTargets(name);
}

bool ConfigParser::ParseGroupTargets(const std::string& group) {
    if (m_Script.GetType("targets") != LuaConfig::Type_Table)
        return m_Report.Fail("Invalid 'targets' table in target group '%s'.", group.c_str());
    return ForEachIn(
        "targets", [&](const std::string&) { return ParseTarget(group); },
        [&](const std::string& key) {
            return m_Report.Fail("Invalid table '%s' in target group '%s'.", key.c_str(), group.c_str());
        });
}

bool ConfigParser::ParseTarget(const std::string& group) {
    return AddTarget(group) || m_Report.Fail("Invalid target in target group '%s'.", group.c_str());
}

bool ConfigParser::AddTarget(const std::string& group) {
    std::string target;
    std::string destination;
    std::string plugin;
    if (!m_Script.GetString("target", target))
        return m_Report.Fail("Could not read name for target.");
    if (!m_Script.GetString("destination", destination))
        return m_Report.Fail("Could not read destination for target '%s'.", target.c_str());
    if (!m_Script.GetString("plugin", plugin))
        return m_Report.Fail("Could not read pluginName for target '%s'.", target.c_str());
    return m_Config.AddTarget(group.c_str(), target.c_str(), destination.c_str(), plugin.c_str()) ||
           m_Report.Fail("Could not add new target.");
}

bool ConfigParser::ParseParams() {
    return ForEachIn(
        "burn_params", [&](const std::string&) { return ParseParamGroup(); },
        [&](const std::string& key) {
            return m_Report.Fail("Invalid target param table '%s' in configuration '%s'.", key.c_str(), m_pPath);
        });
}

bool ConfigParser::ParseParamGroup() {
    std::string group;
    if (!m_Script.GetString("name", group))
        return m_Report.Fail("Could not read name for target group.");
    return ParseParamTargets(group) || m_Report.Fail("Invalid target group parameter in configuration '%s'.", m_pPath);
}

bool ConfigParser::ParseParamTargets(const std::string& group) {
    if (m_Script.GetType("targets") != LuaConfig::Type_Table)
        return m_Report.Fail("Invalid 'targets' table in target group '%s'.", group.c_str());
    return ForEachIn(
        "targets", [&](const std::string&) { return ParseParamTarget(group); },
        [&](const std::string& key) {
            return m_Report.Fail("Invalid table '%s' in target group '%s'.", key.c_str(), group.c_str());
        });
}

bool ConfigParser::ParseParamTarget(const std::string& group) {
    std::string target;
    if (!m_Script.GetString("target", target))
        return m_Report.Fail("Could not read name for target.");
    const BurnerConfig::TargetID id = m_Config.GetTargetID(target.c_str(), group.c_str());
    if (id == BurnerConfig::TargetID::InvalidID)
        ReportUnknownTarget(group, target);
    return ForEachIn(
        "params",
        [&](const std::string& key) {
            ParsePair(target, id, key);
            return true;
        },
        [&](const std::string& key) {
            m_Report.Fail("Invalid table '%s'.", key.c_str());
            m_Report.Fail("Invalid Parameter in target '%s'.", target.c_str());
            return m_Report.Fail("Invalid target in target group '%s'.", group.c_str());
        });
}

// No reason to give up: the entry has no effect.
void ConfigParser::ReportUnknownTarget(const std::string& group, const std::string& target) const {
    const std::string text = std::string("'") + m_Script.GetName() + "': Burn Params '" + group +
                             "' does not have matching target '" + target + "' in base burn_targets!";
    dbWarningf("%s", text.c_str());
    m_Report.Add(text.c_str());
}

void ConfigParser::ParsePair(const std::string& target, BurnerConfig::TargetID id, const std::string& key) {
    std::string name;
    std::string value;
    if (m_Script.GetString("1", name) && m_Script.GetString("2", value))
        Fold(name, value, id);
    else
        m_Report.Fail("Invalid name/value pair in target '%s' table is '%s'.", target.c_str(), key.c_str());
}

void ConfigParser::Fold(const std::string& name, const std::string& value, BurnerConfig::TargetID id) {
    BurnerConfig::Param param{.name = name, .value = value};
    if (m_Config.GetParam(name.c_str(), id, param)) {
        param.inherited = BurnerConfig::IsSameText(param.value, value);
        if (!param.inherited)
            param.value = value;
    }
    m_Config.SetParam(param, id);
}
