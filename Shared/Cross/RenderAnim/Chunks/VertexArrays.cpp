#include "Shared/Cross/RenderAnim/Chunks/VertexArrays.h"

#include <cstring>

#include "Shared/Cross/Debug/db.h"

namespace ra {

namespace {

// With the size known the copy is a few moves.
template <size_t Size>
void Copy(std::byte* pTarget, size_t targetStride, const std::byte* pSource, size_t sourceStride, size_t count) {
    for (size_t i = 0; i < count; ++i, pTarget += targetStride, pSource += sourceStride)
        std::memcpy(pTarget, pSource, Size);
}

void Copy(size_t size, std::byte* pTarget, size_t targetStride, const std::byte* pSource, size_t sourceStride,
          size_t count) {
    switch (size) {
    case 8:
        return Copy<8>(pTarget, targetStride, pSource, sourceStride, count);
    case 12:
        return Copy<12>(pTarget, targetStride, pSource, sourceStride, count);
    case 16:
        return Copy<16>(pTarget, targetStride, pSource, sourceStride, count);
    default:
        dbBreak(); // no component in files has another size
    }
}

} // namespace

void GatherComponent(const gz::VertexSet& vertexSet, gz::VertexComponent component, std::span<std::byte> array) {
    const size_t size = gz::s_ComponentSizes[component];
    const auto* pSource = static_cast<const std::byte*>(vertexSet.GetData(component));
    dbAssert(pSource && array.size() == size * vertexSet.GetSize());
    if (pSource && array.size() == size * vertexSet.GetSize())
        Copy(size, array.data(), size, pSource, vertexSet.GetStride(), vertexSet.GetSize());
}

void ScatterComponent(gz::VertexSet& vertexSet, gz::VertexComponent component, std::span<const std::byte> array) {
    const size_t size = gz::s_ComponentSizes[component];
    dbAssert(array.size() == size * vertexSet.GetSize());
    if (array.empty() || array.size() != size * vertexSet.GetSize())
        return;
    uint32_t stride = 0;
    if (void* pTarget = vertexSet.Lock(component, 0, gz::VertexSet::WholeSet, stride)) {
        Copy(size, static_cast<std::byte*>(pTarget), stride, array.data(), size, vertexSet.GetSize());
        vertexSet.Unlock(component);
    }
}

} // namespace ra
