#include "Host/Gltf/MaterialExtras.h"

#include <algorithm>

namespace gltf {

namespace {

constexpr std::pair<std::string_view, int> s_Slots[] = {
    {"diffuse", ID_DI},   {"specular", ID_SP}, {"specularLevel", ID_SS},
    {"selfIllum", ID_SI}, {"opacity", ID_OP},  {"reflection", ID_RL},
};

constexpr std::pair<std::string_view, int> s_Transparencies[] = {
    {"subtractive", TRANSP_SUBTRACTIVE},
    {"additive", TRANSP_ADDITIVE},
    {"filter", TRANSP_FILTER},
};

constexpr std::pair<std::string_view, int> s_Filters[] = {
    {"pyramidal", FILTER_PYR},
    {"summed", FILTER_SAT},
    {"none", FILTER_NADA},
};

constexpr std::pair<std::string_view, std::optional<scene::FloatTrack> MapTracks::*> s_MapTracks[] = {
    {"amount", &MapTracks::amount}, {"uOffset", &MapTracks::uOffset}, {"vOffset", &MapTracks::vOffset},
    {"uScale", &MapTracks::uScale}, {"vScale", &MapTracks::vScale},
};

// A string of the letters u and v.
bool ReadAxes(const Json& value, int uBit, int vBit, std::optional<int>& out) {
    const std::optional<std::string_view> text = ToString(value);
    if (!text || text->find_first_not_of("uvUV") != std::string_view::npos)
        return false;
    const auto bit = [&](const char* pLetters, int mask) {
        return text->find_first_of(pLetters) != std::string_view::npos ? mask : 0;
    };
    out = bit("uU", uBit) | bit("vV", vBit);
    return true;
}

bool ReadIndexBelow(const Json& value, size_t count, std::optional<uint32_t>& out) {
    if (!value.IsUint() || value.GetUint() >= count)
        return false;
    out = value.GetUint();
    return true;
}

bool ReadSubs(const Json& value, size_t materialCount, std::optional<std::vector<int32_t>>& out) {
    if (!value.IsArray())
        return false;
    std::vector<int32_t> subs;
    for (const Json& sub : value.GetArray()) {
        std::optional<uint32_t> index;
        if (!sub.IsNull() && !ReadIndexBelow(sub, materialCount, index))
            return false;
        subs.push_back(index ? static_cast<int32_t>(*index) : -1);
    }
    out = std::move(subs);
    return true;
}

// Calls `read` with the slot and the value of every member of `object` that is named like a slot.
template <typename Read>
bool ForEachSlot(const Messages& messages, const Place& place, const std::string& path, const Json& object,
                 const Read& read) {
    if (!object.IsObject())
        return false;
    for (const auto& member : object.GetObject()) {
        const std::string_view name = ToString(member.name).value_or("");
        const auto slot = std::ranges::find(s_Slots, name, &std::pair<std::string_view, int>::first);
        const std::string memberPath = path + '.' + std::string(name);
        if (slot == std::end(s_Slots))
            messages.Warn(place, "the member " + Quoted(memberPath) + " is unknown", "name a map slot");
        else
            read(slot->second, memberPath, member.value);
    }
    return true;
}

MapExtras ReadMap(const Messages& messages, const Place& place, const std::string& path, const Json& value,
                  size_t textureCount) {
    MapExtras map;
    ReadMembers(
        messages, place, path, value,
        {
            {"texture", "the index of a texture",
             [&](const Json& v) { return ReadIndexBelow(v, textureCount, map.texture); }},
            {"class", "a class name", [&](const Json& v) { return ReadValue(v, map.mapClass); }},
            {"amount", "a number", [&](const Json& v) { return ReadValue(v, map.amount); }},
            {"enabled", "true or false", [&](const Json& v) { return ReadValue(v, map.enabled); }},
            {"tile", "letters of \"uv\"", [&](const Json& v) { return ReadAxes(v, U_WRAP, V_WRAP, map.tile); }},
            {"mirror", "letters of \"uv\"", [&](const Json& v) { return ReadAxes(v, U_MIRROR, V_MIRROR, map.mirror); }},
            {"filter", "\"pyramidal\", \"summed\" or \"none\"",
             [&](const Json& v) { return ReadChoice(v, s_Filters, map.filter); }},
            {"offset", "[u, v]", [&](const Json& v) { return ReadValue(v, map.offset); }},
            {"scale", "[u, v]", [&](const Json& v) { return ReadValue(v, map.scale); }},
            {"channel", "a number from 1",
             [&](const Json& v) {
                 if (!v.IsInt() || v.GetInt() < 1)
                     return false;
                 map.channel = v.GetInt();
                 return true;
             }},
            {"environment", "true or false", [&](const Json& v) { return ReadValue(v, map.environment); }},
        });
    return map;
}

// The tracks of one slot, made when the first of them comes.
MapTracks& GetTracks(MaterialExtras& extras, int slot) {
    const auto found = std::ranges::find(extras.mapTracks, slot, &std::pair<int, MapTracks>::first);
    if (found != extras.mapTracks.end())
        return found->second;
    return extras.mapTracks.emplace_back(slot, MapTracks{}).second;
}

// Where the track of that name goes; null for an unknown name.
std::optional<scene::FloatTrack>* FindTrack(MaterialExtras& extras, std::string_view name) {
    if (name == "selfIllum")
        return &extras.selfIllumTrack;
    if (name == "opacity")
        return &extras.opacityTrack;
    const size_t dot = name.find('.');
    const auto slot = std::ranges::find(s_Slots, name.substr(0, dot), &std::pair<std::string_view, int>::first);
    if (dot == std::string_view::npos || slot == std::end(s_Slots))
        return nullptr;
    for (const auto& [trackName, pTrack] : s_MapTracks)
        if (name.substr(dot + 1) == trackName)
            return &(GetTracks(extras, slot->second).*pTrack);
    return nullptr;
}

bool ReadTracks(const Messages& messages, const Place& place, const Json& object, MaterialExtras& extras) {
    if (!object.IsObject())
        return false;
    for (const auto& member : object.GetObject()) {
        const std::string_view name = ToString(member.name).value_or("");
        const std::string shown = Quoted("extras.host.tracks." + std::string(name));
        std::optional<scene::FloatTrack>* pTrack = FindTrack(extras, name);
        if (!pTrack)
            messages.Warn(place, "the member " + shown + " is unknown", "check its spelling");
        else if (!ReadValue(member.value, *pTrack))
            messages.Warn(place, "the member " + shown + " has the wrong type", "give [[seconds, value], ...]");
    }
    return true;
}

bool ReadSelfIllum(const Json& value, MaterialExtras& extras) {
    return ReadValue(value, extras.selfIllum) || ReadValue(value, extras.selfIllumColor);
}

} // namespace

MaterialExtras ReadMaterialExtras(const Messages& messages, const Place& place, const Json& owner, size_t materialCount,
                                  size_t textureCount) {
    MaterialExtras extras;
    const Json* pHost = FindHostExtras(owner);
    if (!pHost)
        return extras;
    const auto readMaps = [&](const Json& value) {
        return ForEachSlot(messages, place, "extras.host.maps", value,
                           [&](int slot, const std::string& path, const Json& map) {
                               extras.maps.emplace_back(slot, ReadMap(messages, place, path, map, textureCount));
                           });
    };
    ReadMembers(messages, place, "extras.host", *pHost,
                {
                    {"class", "a class name", [&](const Json& v) { return ReadValue(v, extras.materialClass); }},
                    {"subs", "[material index or null, ...]",
                     [&](const Json& v) { return ReadSubs(v, materialCount, extras.subs); }},
                    {"faceMap", "true or false", [&](const Json& v) { return ReadValue(v, extras.faceMap); }},
                    {"twoSided", "true or false", [&](const Json& v) { return ReadValue(v, extras.twoSided); }},
                    {"supersample", "true or false", [&](const Json& v) { return ReadValue(v, extras.supersample); }},
                    {"diffuse", "[r, g, b]", [&](const Json& v) { return ReadValue(v, extras.diffuse); }},
                    {"specular", "[r, g, b]", [&](const Json& v) { return ReadValue(v, extras.specular); }},
                    {"shininess", "a number", [&](const Json& v) { return ReadValue(v, extras.shininess); }},
                    {"specularLevel", "a number", [&](const Json& v) { return ReadValue(v, extras.specularLevel); }},
                    {"opacity", "a number", [&](const Json& v) { return ReadValue(v, extras.opacity); }},
                    {"selfIllum", "a number or [r, g, b]", [&](const Json& v) { return ReadSelfIllum(v, extras); }},
                    {"transparency", "\"subtractive\", \"additive\" or \"filter\"",
                     [&](const Json& v) { return ReadChoice(v, s_Transparencies, extras.transparency); }},
                    {"maps", "an object", readMaps},
                    {"tracks", "an object", [&](const Json& v) { return ReadTracks(messages, place, v, extras); }},
                });
    return extras;
}

} // namespace gltf
