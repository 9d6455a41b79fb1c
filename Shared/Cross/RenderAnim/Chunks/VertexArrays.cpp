#include "Shared/Cross/RenderAnim/Chunks/VertexArrays.h"

#include <algorithm>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/Glaze/StridedCopy.h"

namespace ra {

namespace {

constexpr size_t s_BlockSize = 128; // vertices that stay in the cache while one component after the other is copied

} // namespace

size_t GetArraysSize(const gz::VertexSet& vertexSet, std::span<const gz::VertexComponent> components) {
    size_t size = 0;
    for (const gz::VertexComponent component : components)
        size += gz::s_ComponentSizes[component];
    return size * vertexSet.GetSize();
}

void GatherComponents(const gz::VertexSet& vertexSet, std::span<const gz::VertexComponent> components,
                      std::span<std::byte> arrays) {
    dbAssert(arrays.size() == GetArraysSize(vertexSet, components));
    if (arrays.size() != GetArraysSize(vertexSet, components))
        return;
    const size_t stride = vertexSet.GetStride();
    for (size_t start = 0; start < vertexSet.GetSize(); start += s_BlockSize) {
        const size_t count = std::min(s_BlockSize, vertexSet.GetSize() - start);
        std::byte* pArray = arrays.data();
        for (const gz::VertexComponent component : components) {
            const size_t size = gz::s_ComponentSizes[component];
            const auto* pSource = static_cast<const std::byte*>(vertexSet.GetData(component));
            gz::CopyStrided(size, pArray + size * start, size, pSource + stride * start, stride, count);
            pArray += size * vertexSet.GetSize();
        }
    }
}

} // namespace ra
