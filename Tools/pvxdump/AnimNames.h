#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "Shared/Cross/RenderAnim/Anim.h"
#include "Tools/pvxdump/ModelNames.h"

// What people call the numbers of an animation.

constexpr std::array<const char*, 5> s_PropertyNames = {"amount", "U offset", "V offset", "U scale", "V scale"};

template <class V>
uint32_t GetKeyCount(const AnimStream<V>* pStream) {
    return pStream ? pStream->GetKeyCount() : 0;
}

inline double GetFramesPerSecond(const Anim& anim) {
    return anim.GetFrameCount() / static_cast<double>(anim.GetDuration());
}

inline std::string GetTargetName(int32_t type) {
    switch (type) {
    case ControlTarget_Shader:
        return "shader";
    case ControlTarget_Mesh:
        return "mesh";
    default:
        return std::to_string(type);
    }
}

inline std::string GetPropertyName(const ControlRef& ref) {
    if (ref.type == ControlTarget_Mesh && ref.property == ControlProperty_Amount)
        return "visibility";
    const auto place = static_cast<uint32_t>(ref.property);
    return place < s_PropertyNames.size() ? s_PropertyNames[place] : std::to_string(ref.property);
}

// With the channel, for a shader.
inline std::string GetDrivenName(const ControlRef& ref) {
    if (ref.type == ControlTarget_Mesh && ref.channel == 0)
        return GetPropertyName(ref);
    const auto place = static_cast<uint32_t>(ref.channel);
    return (place < s_ChannelNames.size() ? s_ChannelNames[place] : "channel " + std::to_string(ref.channel)) + ' ' +
           GetPropertyName(ref);
}
