#pragma once

#include "Host/Gltf/HostExtras.h"
#include "Host/Sdk/Material.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace gltf {

// A map slot of `extras.host.maps`. What isn't set isn't told.
struct MapExtras {
    std::optional<uint32_t> texture;
    std::optional<std::string> mapClass;
    std::optional<float> amount;
    std::optional<bool> enabled;
    std::optional<int> tile;   // bits of U_WRAP and V_WRAP
    std::optional<int> mirror; // bits of U_MIRROR and V_MIRROR
    std::optional<int> filter;
    std::optional<glm::vec2> offset;
    std::optional<glm::vec2> scale;
    std::optional<int> channel;
    std::optional<bool> environment;
};

// The tracks of one map slot.
struct MapTracks {
    std::optional<scene::FloatTrack> amount;
    std::optional<scene::FloatTrack> uOffset;
    std::optional<scene::FloatTrack> vOffset;
    std::optional<scene::FloatTrack> uScale;
    std::optional<scene::FloatTrack> vScale;
};

// What glTF can't say of a material: its `extras.host`.
struct MaterialExtras {
    std::optional<std::string> materialClass;
    std::optional<std::vector<int32_t>> subs; // materials; -1 for an empty place
    std::optional<bool> faceMap;
    std::optional<bool> twoSided;
    std::optional<bool> supersample;
    std::optional<Color> diffuse;
    std::optional<Color> specular;
    std::optional<float> shininess;
    std::optional<float> specularLevel;
    std::optional<float> opacity;
    std::optional<float> selfIllum;
    std::optional<Color> selfIllumColor;
    std::optional<int> transparency;
    std::vector<std::pair<int, MapExtras>> maps; // by slot id
    std::optional<scene::FloatTrack> selfIllumTrack;
    std::optional<scene::FloatTrack> opacityTrack;
    std::vector<std::pair<int, MapTracks>> mapTracks; // by slot id
};

// The material's `extras.host`, of a file with so many materials and textures.
MaterialExtras ReadMaterialExtras(const Messages& messages, const Place& place, const Json& owner, size_t materialCount,
                                  size_t textureCount);

} // namespace gltf
