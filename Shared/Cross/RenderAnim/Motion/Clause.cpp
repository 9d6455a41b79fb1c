#include "Shared/Cross/RenderAnim/Motion/Clause.h"

#include <array>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/Motion/PrintNumber.h"

namespace ra {

namespace {

// As wide as they are so that one below the other they line up.
constexpr std::array<const char*, Clause::ComparisonCount> s_ComparisonTexts = {" = ",  " != ", "  < ",
                                                                                " <= ", "  > ", " >= "};

} // namespace

void Clause::SetTest(const Name& variable, Comparison comparison) {
    dbAssert(comparison >= 0 && comparison < ComparisonCount);
    m_Variable = variable;
    if (comparison >= 0 && comparison < ComparisonCount)
        m_Comparison = comparison;
}

std::string Clause::Print() const {
    return m_Variable.GetTextOrEmpty() + std::string(s_ComparisonTexts[static_cast<size_t>(m_Comparison)]) +
           PrintValue();
}

std::string ClauseFloat::PrintValue() const { return PrintNumber(GetFirstValue()); }

} // namespace ra
