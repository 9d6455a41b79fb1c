#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// What is burnt of a file: groups of targets, each with a pattern of file names, and for each target the plug-in that
// does it, where the result goes and the plug-in's parameters. All in the order of the scripts. A plain value.
//
// Names of groups, targets and parameters and values of parameters are compared without regard to case. Texts are null
// terminated and good until the configuration changes.
class BurnerConfig {
public:
    // Names a target by its group's place and its own.
    struct TargetID {
        int32_t group = -1;
        int32_t target = -1;

        bool operator==(const TargetID&) const = default;

        static const TargetID InvalidID; // what a lookup that fails gives
    };

    struct Param {
        std::string name;
        std::string value;
        bool inherited = false; // the level above gives the same value, so that no script has to
    };

    void Clear();
    void SetVersion(uint32_t version) { m_Version = version; }
    uint32_t GetVersion() const { return m_Version; }

    // False for a null argument and for a name that is there.
    bool AddTargetGroup(const char* pName, const char* pWildcard);
    // False for a null or empty target, a null group or plug-in, an unknown group and a target that the group has.
    bool AddTarget(const char* pGroup, const char* pTarget, const char* pDestination, const char* pPlugin);

    uint32_t GetGroupCount() const { return static_cast<uint32_t>(m_Groups.size()); }
    // Past the end is the caller's mistake, and null.
    const char* GetGroupName(uint32_t group) const;
    const char* GetGroupWildcard(uint32_t group) const; // a regular expression over file names
    // 0 for an unknown group.
    uint32_t GetTargetCount(const char* pGroup) const;
    TargetID GetTargetID(uint32_t index, const char* pGroup) const;
    TargetID GetTargetID(const char* pTarget, const char* pGroup) const;

    // Null for InvalidID.
    const char* GetTargetName(TargetID id) const;
    const char* GetTargetPlugin(TargetID id) const;
    const char* GetTargetDestination(TargetID id) const;

    // All of these are 0 or false for InvalidID, an unknown name and an index past the end.
    uint32_t GetParamCount(TargetID id) const;
    bool GetParam(uint32_t index, TargetID id, Param& out) const;
    bool GetParam(const char* pName, TargetID id, Param& out) const;
    // Folds a value onto what is there. A new name is appended as it stands; an equal value takes over whether it is
    // inherited; another value replaces the one before and isn't inherited. False only for InvalidID.
    bool SetParam(const Param& param, TargetID id);
    bool RemoveParam(const char* pName, TargetID id);

    // A group without targets isn't inherited, a target without parameters is.
    bool IsGroupInherited(const char* pGroup) const;
    bool IsTargetInherited(TargetID id) const;

    static bool IsSameText(std::string_view a, std::string_view b);

private:
    struct Target {
        std::string name;
        std::string plugin;
        std::string destination;
        std::vector<Param> params;
    };
    struct Group {
        std::string name;
        std::string wildcard;
        std::vector<Target> targets;
    };

    int32_t FindGroup(const char* pName) const;
    const Group* GetGroup(const char* pName) const;
    const Target* GetTarget(TargetID id) const;
    Target* GetTarget(TargetID id);

    uint32_t m_Version = 0;
    std::vector<Group> m_Groups;
};

inline const BurnerConfig::TargetID BurnerConfig::TargetID::InvalidID{};
