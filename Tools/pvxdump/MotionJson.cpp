#include "Tools/pvxdump/MotionJson.h"

#include "Tools/pvxdump/AnimJson.h"
#include "Tools/pvxdump/JsonValues.h"
#include "Tools/pvxdump/ModelJson.h"

namespace {

using nlohmann::json;

json ToJson(const ra::Name& name) { return name.GetTextOrEmpty(); }

json ToJson(const std::vector<ra::Name>& names) {
    json list = json::array();
    for (const ra::Name& name : names)
        list.push_back(ToJson(name));
    return list;
}

json ToJson(const ra::Event& event) {
    json parameters = json::array();
    for (const ra::Event::Parameter& parameter : event.m_parameters)
        parameters.push_back({{"name", parameter.name}, {"value", parameter.value}});
    return {{"name", ToJson(event.m_Name)}, {"parameters", parameters}};
}

template <class V>
void AddValues(json& out, const ra::Clause& clause) {
    const auto& values = static_cast<const ra::ValueClause<V>&>(clause);
    out["first"] = values.GetFirstValue();
    out["second"] = values.GetSecondValue();
}

json ToJson(const ra::Clause& clause) {
    json out = {{"name", ToJson(clause.GetName())},
                {"kind", static_cast<int32_t>(clause.GetType())},
                {"variable", ToJson(clause.GetVariable())},
                {"comparison", static_cast<int32_t>(clause.GetComparison())},
                {"test", clause.Print()}};
    if (clause.GetType() == ra::Clause::VARIABLE_FLOAT)
        AddValues<float>(out, clause);
    else if (clause.GetType() == ra::Clause::VARIABLE_BOOL)
        AddValues<bool>(out, clause);
    else
        AddValues<std::string>(out, clause);
    return out;
}

json ToJson(const ra::Condition& condition) {
    return {{"name", ToJson(condition.m_Name)}, {"clauses", ToJson(condition.m_clauses)}};
}

json ToJson(const ra::Modifier& modifier) {
    return {{"name", ToJson(modifier.m_Name)},
            {"variable", ToJson(modifier.m_variable)},
            {"mode", static_cast<int32_t>(modifier.m_mode)},
            {"reference", modifier.m_refValue},
            {"second", modifier.m_secondValue}};
}

json ToJson(const ra::Motion& motion) {
    json randoms = json::array();
    for (const ra::Motion::RandMotion& random : motion.m_randMotions)
        randoms.push_back({{"motion", ToJson(random.motion)}, {"weight", random.weight}});
    json events = json::array();
    for (const ra::Motion::TimedEvent& event : motion.m_events)
        events.push_back({{"event", ToJson(event.event)}, {"time", event.time}});
    json delays = json::array();
    for (const ra::DelayRange& delay : motion.m_delays)
        delays.push_back({delay.min, delay.max});
    return {{"name", ToJson(motion.GetName())},
            {"animations", ToJson(motion.m_animNodes)},
            {"randomMotions", randoms},
            {"events", events},
            {"playMode", static_cast<int32_t>(motion.m_playMode)},
            {"playModeName", ra::Motion::GetText(motion.m_playMode)},
            {"delays", delays},
            {"transitionTime", motion.m_transitionTime},
            {"flag", motion.m_flag},
            {"ignoreTransitions", motion.m_ignoreTransitions},
            {"secondFlag", motion.m_secondFlag},
            {"modifier", motion.HasTimingModifier() ? ToJson(motion.m_timingModifier) : json()}};
}

json ToJson(const std::vector<ra::Action::Choice>& choices) {
    json list = json::array();
    for (const ra::Action::Choice& choice : choices)
        list.push_back({{"name", ToJson(choice.target)},
                        {"conditionMode", choice.conditionMode},
                        {"condition", choice.condition.IsValid() ? ToJson(choice.condition) : json()}});
    return list;
}

json ToJson(const ra::Action& action) {
    return {{"name", ToJson(action.m_Name)},
            {"motions", ToJson(action.m_motions)},
            {"actions", ToJson(action.m_subActions)}};
}

json ToJson(const SelectionInfo& info) {
    return {{"mode", info.mode},
            {"extent", {info.extentX, info.extentZ}},
            {"centre", {info.centreX, info.centreZ}},
            {"box", ValueToJson(info.box)}};
}

template <class T>
json ListToJson(const ra::NamedList<T>& items) {
    json list = json::array();
    for (uint32_t i = 0; i < items.GetCount(); ++i)
        list.push_back(ToJson(items[i]));
    return list;
}

} // namespace

json ToJson(const MotionContent& content, bool withKeys) {
    json animations = json::array();
    for (const AnimationContent& animation : content.animations)
        animations.push_back(ToJson(animation, withKeys));
    return {{"kind", content.pKind},
            {"level", GetText(content.level)},
            {"version", content.version},
            {"animations", animations},
            {"events", ListToJson(content.events)},
            {"clauses", ListToJson(content.clauses)},
            {"conditions", ListToJson(content.conditions)},
            {"modifiers", ListToJson(content.modifiers)},
            {"motions", ListToJson(content.motions)},
            {"actions", ListToJson(content.actions)},
            {"selection", content.selection ? ToJson(*content.selection) : json()},
            {"undecoded", UndecodedToJson(content.undecoded)}};
}
