#pragma once

#include "Shared/Cross/RenderAnim/Motion/Action.h"
#include "Shared/Cross/RenderAnim/Motion/Clause.h"
#include "Shared/Cross/RenderAnim/Motion/Condition.h"
#include "Shared/Cross/RenderAnim/Motion/Event.h"
#include "Shared/Cross/RenderAnim/Motion/Modifier.h"
#include "Shared/Cross/RenderAnim/Motion/Motion.h"

namespace ra {

// The lists of one model that make up its motion side, to be filled. Each refers by name to those ahead of it, and
// actions and motions to others of their own list as well.
struct MotionParts {
    EventList& events;
    ClauseList& clauses;
    ConditionList& conditions;
    ModifierList& modifiers;
    MotionList& motions;
    ActionTree& actions;
};

// Such lists that belong to no model.
struct MotionLists {
    EventList events;
    ClauseList clauses;
    ConditionList conditions;
    ModifierList modifiers;
    MotionList motions;
    ActionTree actions;

    MotionParts GetParts() { return {events, clauses, conditions, modifiers, motions, actions}; }
};

// The lists of one model to be looked at.
struct ConstMotionParts {
    const EventList& events;
    const ClauseList& clauses;
    const ConditionList& conditions;
    const ModifierList& modifiers;
    const MotionList& motions;
    const ActionTree& actions;
};

inline ConstMotionParts AsConst(const MotionParts& parts) {
    return {parts.events, parts.clauses, parts.conditions, parts.modifiers, parts.motions, parts.actions};
}

} // namespace ra
