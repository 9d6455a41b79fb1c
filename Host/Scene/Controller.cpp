#include "Host/Scene/Controller.h"

namespace scene {

void Controller::GetClassName(std::string& out) const {
    if (m_ClassId == BIPSLAVE_CONTROL_CLASS_ID)
        out = "BipSlave Control";
    else if (m_ClassId == BIPBODY_CONTROL_CLASS_ID)
        out = "Vertical Horizontal Turn";
    else
        out = "Position/Rotation/Scale";
}

void Controller::EvaluateRun(std::span<const TimeValue> times, Affine* pLocals) const {
    for (const TimeValue t : times)
        *pLocals++ = Evaluate(t);
}

} // namespace scene
