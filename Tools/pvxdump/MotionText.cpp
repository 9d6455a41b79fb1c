#include "Tools/pvxdump/MotionText.h"

#include <utility>

#include "Tools/pvxdump/AnimText.h"
#include "Tools/pvxdump/ModelText.h"
#include "Tools/pvxdump/TextFormat.h"
#include "Tools/pvxdump/TextTable.h"

namespace {

using enum TextTable::Align;
using TextFormat::Count;

std::string Name(const ra::Name& name) { return TextFormat::Name(name.GetTextOrEmpty()); }

std::string NameOrDash(const ra::Name& name) { return name.IsValid() ? Name(name) : "-"; }

std::string Number(float value) { return TextFormat::Number(static_cast<double>(value)); }

std::string JoinNames(const std::vector<ra::Name>& names) {
    std::string text;
    for (const ra::Name& name : names)
        text += (text.empty() ? "" : ", ") + Name(name);
    return text.empty() ? "-" : text;
}

void PrintEvents(std::string& out, const ra::EventList& events) {
    TextTable table({{"event"}, {"parameter"}, {"value"}});
    for (uint32_t i = 0; i < events.GetCount(); ++i) {
        std::string name = Name(events[i].m_Name);
        if (events[i].m_parameters.empty())
            table.AddRow({name, "-"});
        for (const ra::Event::Parameter& parameter : events[i].m_parameters)
            table.AddRow(
                {std::exchange(name, {}), TextFormat::Name(parameter.name), TextFormat::Name(parameter.value)});
    }
    table.PrintSection(out, Count(events.GetCount(), "event", "events"));
}

std::string GetSecondValue(const ra::Clause& clause) {
    switch (clause.GetType()) {
    case ra::Clause::VARIABLE_FLOAT:
        return Number(static_cast<const ra::ClauseFloat&>(clause).GetSecondValue());
    case ra::Clause::VARIABLE_BOOL:
        return static_cast<const ra::ClauseBool&>(clause).GetSecondValue() ? "true" : "false";
    default:
        return TextFormat::Name(static_cast<const ra::ClauseString&>(clause).GetSecondValue());
    }
}

void PrintConditions(std::string& out, const MotionContent& content) {
    TextTable clauses({{"clause"}, {"test"}, {"second value"}});
    for (uint32_t i = 0; i < content.clauses.GetCount(); ++i)
        clauses.AddRow({Name(content.clauses[i].GetName()), TextFormat::Name(content.clauses[i].Print()),
                        GetSecondValue(content.clauses[i])});
    clauses.PrintSection(out, Count(content.clauses.GetCount(), "clause", "clauses"));
    TextTable conditions({{"condition"}, {"clauses"}});
    for (uint32_t i = 0; i < content.conditions.GetCount(); ++i)
        conditions.AddRow({Name(content.conditions[i].m_Name), JoinNames(content.conditions[i].m_clauses)});
    conditions.PrintSection(out, Count(content.conditions.GetCount(), "condition", "conditions"));
}

void PrintModifiers(std::string& out, const ra::ModifierList& modifiers) {
    TextTable table({{"modifier"}, {"variable and timing"}});
    for (uint32_t i = 0; i < modifiers.GetCount(); ++i)
        table.AddRow({Name(modifiers[i].m_Name), TextFormat::Name(modifiers[i].Print())});
    table.PrintSection(out, Count(modifiers.GetCount(), "modifier", "modifiers"));
}

std::string FormatDelay(const ra::DelayRange& delay) {
    return delay.min == delay.max ? Number(delay.min) : Number(delay.min) + " to " + Number(delay.max);
}

std::string FormatFlags(const ra::Motion& motion) {
    std::string text;
    for (const auto& [isSet, pName] : {std::pair(motion.m_flag, "flag "),
                                       {motion.m_ignoreTransitions, "no transitions "},
                                       {motion.m_secondFlag, "second flag "}})
        text += isSet ? pName : "";
    return text.empty() ? "-" : text;
}

void PrintMotions(std::string& out, const ra::MotionList& motions) {
    TextTable table({{"motion"},
                     {"animations"},
                     {"mode"},
                     {"transition", Right},
                     {"delay 1"},
                     {"delay 2"},
                     {"delay 3"},
                     {"delay 4"},
                     {"flags"},
                     {"modifier"}});
    TextTable randoms({{"motion"}, {"random motion"}, {"weight", Right}});
    TextTable events({{"motion"}, {"event"}, {"time", Right}});
    for (uint32_t i = 0; i < motions.GetCount(); ++i) {
        const ra::Motion& motion = motions[i];
        std::vector<std::string> row = {Name(motion.GetName()), JoinNames(motion.m_animNodes),
                                        ra::Motion::GetText(motion.m_playMode), Number(motion.m_transitionTime)};
        for (const ra::DelayRange& delay : motion.m_delays)
            row.push_back(FormatDelay(delay));
        row.push_back(FormatFlags(motion));
        row.push_back(NameOrDash(motion.m_timingModifier));
        table.AddRow(std::move(row));
        for (const ra::Motion::RandMotion& random : motion.m_randMotions)
            randoms.AddRow({Name(motion.GetName()), Name(random.motion), Number(random.weight)});
        for (const ra::Motion::TimedEvent& event : motion.m_events)
            events.AddRow({Name(motion.GetName()), Name(event.event), Number(event.time)});
    }
    table.PrintSection(out, Count(motions.GetCount(), "motion", "motions"));
    randoms.PrintSection(out, "motions by chance");
    events.PrintSection(out, "events of motions");
}

void PrintActions(std::string& out, const ra::ActionTree& actions) {
    TextTable table({{"action"}, {"plays"}, {"name"}, {"mode", Right}, {"condition"}});
    for (uint32_t i = 0; i < actions.GetCount(); ++i) {
        const ra::Action& action = actions[i];
        std::string name = Name(action.m_Name);
        if (action.m_motions.empty() && action.m_subActions.empty())
            table.AddRow({name, "-"});
        for (const auto& [pKind, pChoices] : {std::pair("motion", &action.m_motions), {"action", &action.m_subActions}})
            for (const ra::Action::Choice& choice : *pChoices)
                table.AddRow({std::exchange(name, {}), pKind, Name(choice.target), std::to_string(choice.conditionMode),
                              NameOrDash(choice.condition)});
    }
    table.PrintSection(out, Count(actions.GetCount(), "action", "actions"));
}

void PrintSelection(std::string& out, const SelectionInfo& info) {
    TextTable table({{"mode", Right}, {"extent x, z"}, {"centre x, z"}, {"box centre"}, {"box half extents"}});
    table.AddRow({std::to_string(info.mode), Number(info.extentX) + ", " + Number(info.extentZ),
                  Number(info.centreX) + ", " + Number(info.centreZ), TextFormat::Vector(info.box.centre),
                  TextFormat::Vector(info.box.halfExtents) + (info.box.rotation != glm::mat3(1.0f) ? ", turned" : "")});
    table.PrintSection(out, "selection");
}

} // namespace

void PrintMotionFile(std::string& out, const MotionContent& content) {
    out += std::string(content.pKind) + ", " + GetText(content.level) + ": " +
           Count(content.motions.GetCount(), "motion", "motions") + ", " +
           Count(content.actions.GetCount(), "action", "actions") + ", " +
           Count(content.events.GetCount(), "event", "events") + '\n';
    PrintAnimations(out, content.animations);
    PrintEvents(out, content.events);
    PrintConditions(out, content);
    PrintModifiers(out, content.modifiers);
    PrintMotions(out, content.motions);
    PrintActions(out, content.actions);
    if (content.selection)
        PrintSelection(out, *content.selection);
    PrintUndecoded(out, content.undecoded);
}
