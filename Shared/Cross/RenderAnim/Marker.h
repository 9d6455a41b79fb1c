#pragma once

#include <cstdint>

#include <glm/gtc/quaternion.hpp>
#include <glm/mat4x3.hpp>
#include <glm/vec3.hpp>

#include "Shared/Cross/RenderAnim/RenderAnimName.h"

// A named place on a model, where effects and other models are put.
struct Marker {
    static constexpr uint32_t NoParent = 0xFFFFFFFF;

    ra::Name name;
    glm::mat4x3 m_transform = glm::mat4x3(1.0f); // relative to the parent bone, if there is one
    ra::Name m_parentName = {};                  // invalid when the marker hangs on nothing
    uint32_t m_parentIndex = NoParent;           // of that bone in the skeleton
};

// A view of a model.
struct CameraDef {
    ra::Name name;
    glm::vec3 position = glm::vec3(0.0f);
    glm::vec3 target = glm::vec3(0.0f);
    glm::quat rotation = glm::quat(1.0f, 0.0f, 0.0f, 0.0f);
    float fieldOfView = 0.0f; // radians
    float nearClip = 0.0f;
    float farClip = 0.0f;
};
