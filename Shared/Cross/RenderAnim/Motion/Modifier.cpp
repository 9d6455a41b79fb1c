#include "Shared/Cross/RenderAnim/Motion/Modifier.h"

#include "Shared/Cross/RenderAnim/Motion/PrintNumber.h"

namespace ra {

std::string Modifier::Print() const {
    return m_variable.GetTextOrEmpty() + std::string(m_mode == Mode_Absolute ? "Absolute [" : ", Scaled [") +
           PrintNumber(m_refValue) + ", " + PrintNumber(m_secondValue) + "]";
}

} // namespace ra
