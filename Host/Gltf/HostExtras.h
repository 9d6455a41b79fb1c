#pragma once

#include "Host/Gltf/Messages.h"
#include "Host/Scene/Objects.h"
#include "Host/Scene/UserProperties.h"
#include "Host/Sdk/Interface.h"
#include "Host/Sdk/Matrix3.h"

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace gltf {

// The classes that a node's `extras.host` can ask for.
enum class NodeClass { Mesh, Patch, Bone, Box, Dummy, Point };

// What glTF can't say of a node: its `extras.host`. What isn't set isn't told.
struct NodeExtras {
    std::optional<NodeClass> nodeClass;
    std::optional<Class_ID> controller;
    std::optional<bool> bone;
    std::optional<bool> renderable;
    std::string target;
    std::string xref;
    std::optional<std::array<uint8_t, 3>> wireColor;
    std::shared_ptr<const std::vector<uint32_t>> pSmoothing;
    std::optional<scene::FloatTrack> visibility;
};

// The same of a camera.
struct CameraExtras {
    std::optional<std::array<float, 2>> clip; // near, far
    std::optional<float> targetDistance;
};

// `owner` is the node's or the camera's own object.
NodeExtras ReadNodeExtras(const Messages& messages, const Place& place, const Json& owner);
CameraExtras ReadCameraExtras(const Messages& messages, const Place& place, const Json& owner);

// The members of a node's `extras` but `host`, each as a text.
void ReadUserProperties(const Json& owner, scene::UserProperties& properties);

// A value as the user property that it makes: strings as they stand, numbers printed with as many digits as tell them
// apart, booleans as true or false, anything else as JSON.
std::string PrintValue(const Json& value);
// The same value as a file property.
PROPVARIANT ToFileProperty(const Json& value);

// The readers of single values that several `host` objects share. Each answers false, and stores nothing, for a value
// of another type.
bool ReadValue(const Json& value, bool& out);
bool ReadValue(const Json& value, float& out);
bool ReadValue(const Json& value, std::string& out);
bool ReadValue(const Json& value, glm::vec2& out);
bool ReadValue(const Json& value, glm::vec3& out);
// [[seconds, value], ...]
bool ReadValue(const Json& value, scene::FloatTrack& out);

template <typename T>
bool ReadValue(const Json& value, std::optional<T>& out) {
    T read{};
    const bool ok = ReadValue(value, read);
    if (ok)
        out = std::move(read);
    return ok;
}

} // namespace gltf
