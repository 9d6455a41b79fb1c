#pragma once

#include <glm/gtc/quaternion.hpp>
#include <glm/gtc/type_ptr.hpp>
#include <glm/mat4x3.hpp>
#include <glm/mat4x4.hpp>
#include <glm/vec3.hpp>
#include <nlohmann/json.hpp>

#include "Shared/Cross/RenderAnim/BoundVolume.h"
#include "Shared/Cross/RenderAnim/Chunks/AnimRecord.h"

// Values that several kinds of files hold, as lists of numbers.

inline nlohmann::json FloatsToJson(const float* pValues, size_t count) {
    nlohmann::json values = nlohmann::json::array();
    for (size_t i = 0; i < count; ++i)
        values.push_back(pValues[i]);
    return values;
}

inline nlohmann::json ValueToJson(const glm::vec3& v) { return {v.x, v.y, v.z}; }
inline nlohmann::json ValueToJson(const glm::quat& q) { return {q.x, q.y, q.z, q.w}; }
inline nlohmann::json ValueToJson(const glm::mat4x3& m) { return FloatsToJson(glm::value_ptr(m), 12); }
inline nlohmann::json ValueToJson(const glm::mat4& m) { return FloatsToJson(glm::value_ptr(m), 16); }

inline nlohmann::json ValueToJson(const OrientedBox& box) {
    nlohmann::json rows = nlohmann::json::array();
    for (int row = 0; row < 3; ++row)
        rows.push_back(ValueToJson(box.rotation[row]));
    return {{"centre", ValueToJson(box.centre)}, {"halfExtents", ValueToJson(box.halfExtents)}, {"rotation", rows}};
}

// Null without one.
inline nlohmann::json ValueToJson(const BoundVolume& volume) {
    return volume.IsValid() ? ValueToJson(volume.GetBox()) : nlohmann::json();
}

inline nlohmann::json ValueToJson(const ra::AnimBounds& bounds) {
    return {{"minimum", ValueToJson(bounds.minimum)}, {"maximum", ValueToJson(bounds.maximum)}};
}
