#include "Shared/Cross/RenderAnim/Motion/Chunks/CheckReferences.h"

#include <vector>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/Motion/Chunks/EventFile.h"

namespace ra {

namespace {

void CheckAnimations(Motion& motion, const MotionContext& context) {
    std::erase_if(motion.m_animNodes, [&](const Name& anim) {
        if (context.hasAnimation && context.hasAnimation(anim))
            return false;
        dbWarningf("'%s': Animation '%s' referenced in motion '%s' is missing!", context.pModelName,
                   anim.GetTextOrEmpty(), motion.GetName().GetTextOrEmpty());
        return true;
    });
    if (motion.GetAnimNodeCount() <= 1)
        return;
    dbWarningf("'%s': Motion '%s' has more than one animation:", context.pModelName, motion.GetName().GetTextOrEmpty());
    for (const Name& anim : motion.m_animNodes)
        dbWarningf("'%s': Animation: %s", context.pModelName, anim.GetTextOrEmpty());
}

void CheckRandMotions(Motion& motion, const MotionParts& parts, const MotionContext& context) {
    std::erase_if(motion.m_randMotions, [&](const Motion::RandMotion& randMotion) {
        if (parts.motions.Has(randMotion.motion))
            return false;
        dbWarningf("'%s': Motion '%s' referenced in motion '%s' is missing!", context.pModelName,
                   randMotion.motion.GetTextOrEmpty(), motion.GetName().GetTextOrEmpty());
        return true;
    });
}

void CheckEvents(Motion& motion, const MotionParts& parts, const MotionContext& context) {
    std::erase_if(motion.m_events, [&](const Motion::TimedEvent& event) {
        if (parts.events.Has(event.event) || LoadEvent(event.event, parts.events, context.pModelName))
            return false;
        dbWarningf("EVENTS -- '%s': Event '%s' referenced in motion '%s' is missing!", context.pModelName,
                   event.event.GetTextOrEmpty(), motion.GetName().GetTextOrEmpty());
        return true;
    });
}

void CheckModifier(Motion& motion, const MotionParts& parts, const MotionContext& context) {
    if (!motion.HasTimingModifier())
        return;
    const Modifier* pModifier = parts.modifiers.Find(motion.m_timingModifier);
    if (!pModifier) {
        dbWarningf("'%s': Modifier '%s' referenced in motion '%s' is missing!", context.pModelName,
                   motion.m_timingModifier.GetTextOrEmpty(), motion.GetName().GetTextOrEmpty());
        motion.m_timingModifier = Name();
        return;
    }
    if (pModifier->m_mode == Modifier::Mode_Absolute && !motion.m_events.empty() && !motion.m_ignoreTransitions)
        dbWarningf("'%s': WARNING -- Motion '%s' has an absolute modifier, has events, and does not ignore transitions "
                   "-- it may skip events",
                   context.pModelName, motion.GetName().GetTextOrEmpty());
}

// The conditions of an action's choices. A choice whose condition is missing stays without one.
void CheckChoices(const Action& action, std::vector<Action::Choice>& choices, const MotionParts& parts,
                  const MotionContext& context) {
    for (Action::Choice& choice : choices)
        if (choice.condition.IsValid() && !parts.conditions.Has(choice.condition)) {
            dbWarningf("'%s': Condition '%s' referenced in action '%s' is missing!", context.pModelName,
                       choice.condition.GetTextOrEmpty(), action.m_Name.GetTextOrEmpty());
            choice.condition = Name();
        }
}

template <class List>
void CheckTargets(const Action& action, std::vector<Action::Choice>& choices, const List& targets, const char* pKind,
                  const MotionContext& context) {
    std::erase_if(choices, [&](const Action::Choice& choice) {
        if (targets.Has(choice.target))
            return false;
        dbWarningf("'%s': %s '%s' referenced in action '%s' is missing!", context.pModelName, pKind,
                   choice.target.GetTextOrEmpty(), action.m_Name.GetTextOrEmpty());
        return true;
    });
}

} // namespace

void CheckConditions(const MotionParts& parts, const MotionContext& context, uint32_t first) {
    for (uint32_t i = first; i < parts.conditions.GetCount(); ++i) {
        Condition& condition = parts.conditions[i];
        std::erase_if(condition.m_clauses, [&](const Name& clause) {
            if (parts.clauses.Has(clause))
                return false;
            dbWarningf("'%s': Clause '%s' referenced in condition '%s' is missing!", context.pModelName,
                       clause.GetTextOrEmpty(), condition.m_Name.GetTextOrEmpty());
            return true;
        });
    }
}

void CheckMotions(const MotionParts& parts, const MotionContext& context, uint32_t first) {
    for (uint32_t i = first; i < parts.motions.GetCount(); ++i) {
        Motion& motion = parts.motions[i];
        CheckAnimations(motion, context);
        CheckRandMotions(motion, parts, context);
        CheckEvents(motion, parts, context);
        CheckModifier(motion, parts, context);
    }
}

void CheckActions(const MotionParts& parts, const MotionContext& context, uint32_t first) {
    for (uint32_t i = first; i < parts.actions.GetCount(); ++i) {
        Action& action = parts.actions[i];
        // Ahead of the targets, with which choices go.
        CheckChoices(action, action.m_motions, parts, context);
        CheckChoices(action, action.m_subActions, parts, context);
        CheckTargets(action, action.m_motions, parts.motions, "Motion", context);
        CheckTargets(action, action.m_subActions, parts.actions, "Action", context);
    }
}

} // namespace ra
