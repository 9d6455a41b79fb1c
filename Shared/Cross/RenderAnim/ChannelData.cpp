#include "Shared/Cross/RenderAnim/ChannelData.h"

#include <array>

#include "Shared/Cross/Debug/db.h"

namespace {

constexpr Colour s_White = Colour::FromValue(0xFFFFFFFF);
constexpr Colour s_Black = Colour::FromValue(0xFF000000);

// A surface that shows its own colour in full: no shine, no glow, no mirror image, nothing to see through.
std::array<ChannelData, CN_Count> MakeDefaults() {
    std::array<ChannelData, CN_Count> channels;
    for (ChannelData& channel : channels)
        channel.colour = channel.animatedColour = s_Black;
    for (const ShaderChannel n : {CN_Diffuse, CN_Opacity})
        channels[n].colour = channels[n].animatedColour = s_White;
    return channels;
}

} // namespace

const ChannelData& GetDefaultChannel(uint32_t n) {
    static const std::array<ChannelData, CN_Count> s_DefaultChannels = MakeDefaults();
    dbAssert(n < CN_Count);
    return s_DefaultChannels[n < CN_Count ? n : 0];
}
