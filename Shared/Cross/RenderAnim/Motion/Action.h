#pragma once

#include <cstdint>
#include <vector>

#include "Shared/Cross/RenderAnim/Motion/NamedList.h"

namespace ra {

// A choice: the motions and further actions to play, each under a condition or always.
struct Action {
    struct Choice {
        Name target; // a motion, or an action
        // The game's. With 0 and 1 a condition is asked, with others none.
        int32_t conditionMode = 0;
        Name condition; // INVALID for none

        bool HasConditionMode() const { return conditionMode == 0 || conditionMode == 1; }
    };

    Name m_Name;
    std::vector<Choice> m_motions = {};
    std::vector<Choice> m_subActions = {};

    const Name& GetName() const { return m_Name; }
};

using ActionTree = NamedList<Action>;

} // namespace ra
