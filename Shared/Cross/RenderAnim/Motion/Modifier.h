#pragma once

#include <cstdint>
#include <string>

#include "Shared/Cross/RenderAnim/Motion/NamedList.h"

namespace ra {

// Lets a variable of the model set or scale the timing of motions.
struct Modifier {
    // The numbers are in files.
    enum Mode : int32_t { Mode_Absolute = 0, Mode_Scaled = 1 };

    Name m_Name;
    Name m_variable;
    Mode m_mode = Mode_Absolute;
    float m_refValue = 1.0f;    // above 0 where it scales
    float m_secondValue = 0.0f; // carried for the game

    const Name& GetName() const { return m_Name; }
    float GetRefValue() const { return m_refValue; }

    // For people: the variable, the mode and the two values.
    std::string Print() const;
};

using ModifierList = NamedList<Modifier>;

} // namespace ra
