#include "Shared/Cross/RenderAnim/Chunks/VertexArrays.h"

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/Glaze/StridedCopy.h"

namespace ra {

void GatherComponent(const gz::VertexSet& vertexSet, gz::VertexComponent component, std::span<std::byte> array) {
    const size_t size = gz::s_ComponentSizes[component];
    const auto* pSource = static_cast<const std::byte*>(vertexSet.GetData(component));
    dbAssert(pSource && array.size() == size * vertexSet.GetSize());
    if (pSource && array.size() == size * vertexSet.GetSize())
        gz::CopyStrided(size, array.data(), size, pSource, vertexSet.GetStride(), vertexSet.GetSize());
}

} // namespace ra
