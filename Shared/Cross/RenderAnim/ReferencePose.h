#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include <glm/mat4x3.hpp>

#include "Shared/Cross/RenderAnim/ChannelData.h"

class RenderModel;

// A model as it stands when nothing is played: what every animation starts from.
class ReferencePose {
public:
    // What control streams move in one channel of a shader.
    struct ChannelPose {
        float value = 0.0f; // 0 to 1: the channel's strength
        float offsetU = 0.0f;
        float offsetV = 0.0f;
        float scaleU = 1.0f;
        float scaleV = 1.0f;
    };
    using ShaderPose = std::array<ChannelPose, ChannelCount>;

    // The model has a mesh group.
    explicit ReferencePose(const RenderModel& model);

    // By the mesh group's shaders and the skeleton's bones.
    const std::vector<ShaderPose>& GetShaderPoses() const { return m_ShaderPoses; }
    const std::vector<glm::mat4x3>& GetBoneMatrices() const { return m_BoneMatrices; }

    // The strength that a channel's colour stands for.
    static float GetAnimatableValue(uint32_t channel, Colour colour);

private:
    std::vector<ShaderPose> m_ShaderPoses;
    std::vector<glm::mat4x3> m_BoneMatrices;
};
