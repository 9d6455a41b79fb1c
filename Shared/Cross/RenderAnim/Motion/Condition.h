#pragma once

#include <vector>

#include "Shared/Cross/RenderAnim/Motion/NamedList.h"

namespace ra {

// Clauses of the model's list, which an action asks together.
struct Condition {
    Name m_Name;
    std::vector<Name> m_clauses = {};

    const Name& GetName() const { return m_Name; }
};

using ConditionList = NamedList<Condition>;

} // namespace ra
