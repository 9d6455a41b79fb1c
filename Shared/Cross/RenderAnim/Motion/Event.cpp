#include "Shared/Cross/RenderAnim/Motion/Event.h"

#include <algorithm>

namespace ra {

std::string NormaliseEventName(const char* pName) {
    std::string name(pName);
    std::ranges::replace(name, '\\', '/');
    if (const size_t colon = name.find(':'); colon != std::string::npos)
        name.erase(0, colon + 1);
    if (name.starts_with('/'))
        name.erase(0, 1);
    return name;
}

} // namespace ra
