#include "Host/Gltf/HostExtras.h"

#include "Host/Sdk/ClassIds.h"
#include "Host/Sdk/HostSetup.h"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <charconv>
#include <cmath>
#include <limits>
#include <span>

namespace gltf {

namespace {

bool ReadNumbers(const Json& value, std::span<float> out) {
    if (!value.IsArray() || value.Size() != out.size())
        return false;
    for (rapidjson::SizeType i = 0; i < value.Size(); ++i)
        if (!ReadValue(value[i], out[i]))
            return false;
    return true;
}

constexpr std::pair<std::string_view, NodeClass> s_NodeClasses[] = {
    {"mesh", NodeClass::Mesh}, {"patch", NodeClass::Patch}, {"bone", NodeClass::Bone},
    {"box", NodeClass::Box},   {"dummy", NodeClass::Dummy}, {"point", NodeClass::Point},
};

constexpr std::pair<std::string_view, Class_ID> s_Controllers[] = {
    {"biped_slave", BIPSLAVE_CONTROL_CLASS_ID},
    {"biped_root", BIPBODY_CONTROL_CLASS_ID},
};

bool ReadWireColor(const Json& value, std::optional<std::array<uint8_t, 3>>& out) {
    glm::vec3 color;
    if (!ReadValue(value, color))
        return false;
    std::array<uint8_t, 3> bytes{};
    for (int i = 0; i < 3; ++i) {
        if (color[i] < 0.0f || color[i] > 255.0f)
            return false;
        bytes[static_cast<size_t>(i)] = static_cast<uint8_t>(std::lround(color[i]));
    }
    out = bytes;
    return true;
}

bool ReadMasks(const Json& value, std::shared_ptr<const std::vector<uint32_t>>& out) {
    if (!value.IsArray())
        return false;
    auto pMasks = std::make_shared<std::vector<uint32_t>>();
    for (const Json& mask : value.GetArray()) {
        if (!mask.IsUint())
            return false;
        pMasks->push_back(mask.GetUint());
    }
    out = std::move(pMasks);
    return true;
}

template <typename T>
std::string Print(T number) {
    char text[40];
    const std::to_chars_result result = std::to_chars(text, text + sizeof text, number);
    return {text, result.ptr};
}

} // namespace

bool ReadValue(const Json& value, bool& out) {
    if (value.IsBool())
        out = value.GetBool();
    return value.IsBool();
}

bool ReadValue(const Json& value, float& out) {
    const std::optional<float> number = ToFloat(value);
    if (number)
        out = *number;
    return number.has_value();
}

bool ReadValue(const Json& value, std::string& out) {
    const std::optional<std::string_view> text = ToString(value);
    if (text)
        out = *text;
    return text.has_value();
}

bool ReadValue(const Json& value, glm::vec2& out) {
    float numbers[2];
    if (!ReadNumbers(value, numbers))
        return false;
    out = {numbers[0], numbers[1]};
    return true;
}

bool ReadValue(const Json& value, glm::vec3& out) {
    float numbers[3];
    if (!ReadNumbers(value, numbers))
        return false;
    out = {numbers[0], numbers[1], numbers[2]};
    return true;
}

bool ReadValue(const Json& value, scene::FloatTrack& out) {
    if (!value.IsArray())
        return false;
    std::vector<scene::FloatTrack::Key> keys;
    for (const Json& pair : value.GetArray()) {
        glm::vec2 key;
        if (!ReadValue(pair, key))
            return false;
        keys.push_back({.ticks = double{key.x} * TicksPerSecond, .value = key.y});
    }
    if (keys.empty())
        return false;
    out = scene::FloatTrack(std::move(keys));
    return true;
}

NodeExtras ReadNodeExtras(const Messages& messages, const Place& place, const Json& owner) {
    NodeExtras extras;
    const Json* pHost = FindHostExtras(owner);
    if (!pHost)
        return extras;
    ReadMembers(
        messages, place, "extras.host", *pHost,
        {
            {"class", "\"mesh\", \"patch\", \"bone\", \"box\", \"dummy\" or \"point\"",
             [&](const Json& value) { return ReadChoice(value, s_NodeClasses, extras.nodeClass); }},
            {"controller", "\"biped_slave\" or \"biped_root\"",
             [&](const Json& value) { return ReadChoice(value, s_Controllers, extras.controller); }},
            {"bone", "true or false", [&](const Json& value) { return ReadValue(value, extras.bone); }},
            {"renderable", "true or false", [&](const Json& value) { return ReadValue(value, extras.renderable); }},
            {"target", "a node's name", [&](const Json& value) { return ReadValue(value, extras.target); }},
            {"xref", "a scene file's name", [&](const Json& value) { return ReadValue(value, extras.xref); }},
            {"wireColor", "[r, g, b] in 0..255",
             [&](const Json& value) { return ReadWireColor(value, extras.wireColor); }},
            {"smoothing", "one 32-bit mask a face",
             [&](const Json& value) { return ReadMasks(value, extras.pSmoothing); }},
            {"visibility", "[[seconds, value], ...]",
             [&](const Json& value) { return ReadValue(value, extras.visibility); }},
        });
    return extras;
}

CameraExtras ReadCameraExtras(const Messages& messages, const Place& place, const Json& owner) {
    CameraExtras extras;
    const Json* pHost = FindHostExtras(owner);
    if (!pHost)
        return extras;
    ReadMembers(
        messages, place, "extras.host", *pHost,
        {
            {"clip", "[near, far]",
             [&](const Json& value) {
                 std::array<float, 2> clip{};
                 if (!ReadNumbers(value, clip))
                     return false;
                 extras.clip = clip;
                 return true;
             }},
            {"targetDistance", "a number", [&](const Json& value) { return ReadValue(value, extras.targetDistance); }},
        });
    return extras;
}

void ReadUserProperties(const Json& owner, scene::UserProperties& properties) {
    const Json* pExtras = FindMember(owner, "extras");
    if (!pExtras || !pExtras->IsObject())
        return;
    for (const auto& member : pExtras->GetObject()) {
        const std::string_view key = ToString(member.name).value_or("");
        if (key != "host")
            properties.Add(std::string(key), PrintValue(member.value));
    }
}

std::string PrintValue(const Json& value) {
    if (const std::optional<std::string_view> text = ToString(value))
        return std::string(*text);
    if (value.IsUint64())
        return Print(value.GetUint64());
    if (value.IsInt64())
        return Print(value.GetInt64());
    if (value.IsDouble())
        return Print(value.GetDouble());
    rapidjson::StringBuffer buffer;
    rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
    value.Accept(writer);
    return {buffer.GetString(), buffer.GetSize()};
}

PROPVARIANT ToFileProperty(const Json& value) {
    PROPVARIANT property;
    if (value.IsInt()) {
        property.vt = VT_I4;
        property.lVal = value.GetInt();
    } else if (value.IsNumber()) {
        property.vt = VT_R8;
        property.dblVal = value.GetDouble();
    } else if (value.IsBool()) {
        property.vt = VT_BOOL;
        property.boolVal = value.GetBool();
    } else {
        property.vt = VT_LPSTR;
        property.text = PrintValue(value);
    }
    return property;
}

} // namespace gltf
