#pragma once

#include <array>
#include <cstdint>

namespace gz {

// The components of a vertex, by index. The index is also the component's bit in a format mask.
enum VertexComponent : uint32_t {
    VC_Position = 0,  // 3 floats
    VC_Weights = 1,   // a VertexWeight of 16 bytes, and 4 bytes more that follow it in place
    VC_Normal = 2,    // 3 floats
    VC_Colour0 = 3,   // 4 bytes
    VC_Colour1 = 4,   // 4 bytes
    VC_TexCoord0 = 5, // 2 floats, as the three behind it
    VC_TexCoord1 = 6,
    VC_TexCoord2 = 7,
    VC_TexCoord3 = 8,
    VC_Count = 9
};

// In bytes, without the 4 bytes behind the weights. These are also the sizes in files.
constexpr std::array<uint32_t, VC_Count> s_ComponentSizes = {12, 16, 12, 4, 4, 8, 8, 8, 8};
constexpr uint32_t s_BoneIndexBytes = 4;

constexpr uint32_t s_AllComponents = (1u << VC_Count) - 1;

constexpr uint32_t ComponentBit(VertexComponent component) { return 1u << component; }

// Bytes from a vertex to the next one. Bits above the components count for nothing.
constexpr uint32_t GetVertexStride(uint32_t format) {
    uint32_t stride = (format & ComponentBit(VC_Weights)) != 0 ? s_BoneIndexBytes : 0;
    for (uint32_t i = 0; i < VC_Count; ++i)
        if ((format >> i & 1) != 0)
            stride += s_ComponentSizes[i];
    return stride;
}

// Bytes from the start of a vertex to the component, whether or not the format has it.
constexpr uint32_t GetComponentOffset(uint32_t format, VertexComponent component) {
    return GetVertexStride(format & (ComponentBit(component) - 1));
}

} // namespace gz
