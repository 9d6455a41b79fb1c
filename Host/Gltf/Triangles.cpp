#include "Host/Gltf/Triangles.h"

#include <algorithm>

namespace gltf {

namespace {

// Calls `visit` with a function from a corner's place to its vertex, made for the type that the indices have.
template <typename Visit>
void WithIndices(const AccessorView& indices, const Visit& visit) {
    const auto load = [&]<typename T>(T) {
        const std::byte* pData = indices.pData;
        const size_t stride = indices.stride;
        visit([pData, stride](uint32_t place) -> uint32_t {
            T index;
            std::memcpy(&index, pData + place * stride, sizeof index);
            return index;
        });
    };
    if (indices.IsEmpty())
        visit([](uint32_t place) { return place; });
    else if (!indices.pData)
        visit([](uint32_t) { return 0u; });
    else if (indices.type == ComponentType::UnsignedByte)
        load(uint8_t{});
    else if (indices.type == ComponentType::UnsignedShort)
        load(uint16_t{});
    else
        load(uint32_t{});
}

} // namespace

uint32_t CountTriangles(PrimitiveMode mode, uint32_t count) {
    if (!HasTriangles(mode))
        return 0;
    if (mode == PrimitiveMode::Triangles)
        return count / 3;
    return count < 3 ? 0 : count - 2;
}

void AppendTriangles(PrimitiveMode mode, const AccessorView& indices, uint32_t first, uint32_t count,
                     std::vector<uint32_t>& corners) {
    const size_t start = corners.size();
    corners.resize(start + size_t{count} * 3);
    uint32_t* pOut = corners.data() + start;
    WithIndices(indices, [&](const auto& indexAt) {
        if (mode == PrimitiveMode::Triangles) {
            for (uint32_t place = first * 3; place < (first + count) * 3; ++place)
                *pOut++ = indexAt(place);
            return;
        }
        for (uint32_t i = first; i < first + count; ++i) {
            // Every other triangle of a strip is turned; the corners of a fan come before its centre.
            const bool isFan = mode == PrimitiveMode::TriangleFan;
            const uint32_t odd = i & 1;
            *pOut++ = indexAt(isFan ? i + 1 : i);
            *pOut++ = indexAt(isFan ? i + 2 : i + 1 + odd);
            *pOut++ = indexAt(isFan ? 0 : i + 2 - odd);
        }
    });
}

std::optional<uint32_t> FindHighestIndex(const AccessorView& indices) {
    if (indices.count == 0)
        return std::nullopt;
    uint32_t highest = 0;
    WithIndices(indices, [&](const auto& indexAt) {
        for (uint32_t place = 0; place < indices.count; ++place)
            highest = std::max(highest, indexAt(place));
    });
    return highest;
}

} // namespace gltf
