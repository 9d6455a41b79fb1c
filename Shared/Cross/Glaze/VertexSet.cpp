#include "Shared/Cross/Glaze/VertexSet.h"

#include <cstddef>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/Glaze/StridedCopy.h"

namespace gz {

bool VertexSet::WriteArray(VertexComponent component, const void* pSource, uint32_t start, uint32_t range) {
    if (!HasComponent(component)) {
        dbWarningf("VertexSet does not have the requested vertex component.");
        return false;
    }
    if ((start == NotGiven) != (range == NotGiven)) {
        dbWarningf("Must set both 'start' and 'range' parameters for WriteArray().");
        return false;
    }
    const uint32_t first = start == NotGiven ? 0 : start;
    const uint32_t count = range == NotGiven || range == WholeSet ? GetSize() : range;
    if (count == 0)
        return true;
    uint32_t stride = 0;
    auto* pTarget = static_cast<std::byte*>(Lock(component, first, count, stride));
    if (!pTarget)
        return false;
    const size_t size = s_ComponentSizes[component];
    CopyStrided(size, pTarget, stride, static_cast<const std::byte*>(pSource), size, count);
    Unlock(component);
    return true;
}

} // namespace gz
