#pragma once

#include <string>
#include <vector>

#include "Shared/Cross/RenderAnim/Motion/NamedList.h"

namespace ra {

// What happens at a moment of a motion, a sound or an effect: only the game knows the parameters.
struct Event {
    struct Parameter {
        std::string name;
        std::string value;
    };

    Name m_Name;
    std::vector<Parameter> m_parameters = {};

    const Name& GetName() const { return m_Name; }
};

using EventList = NamedList<Event>;

// The form in which events are known: without a drive or alias ahead and a slash behind that, with forward slashes.
std::string NormaliseEventName(const char* pName);

} // namespace ra
