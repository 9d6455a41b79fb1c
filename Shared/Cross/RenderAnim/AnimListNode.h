#pragma once

#include <cstdint>
#include <vector>

#include <glm/vec3.hpp>

#include "Shared/Cross/RenderAnim/Anim.h"
#include "Shared/Cross/RenderAnim/AnimPool.h"

// Binds an animation, which several models may share, to one model. The list that it is added to fills the maps.
class AnimListNode : public MMPooled<AnimStaticPool> {
public:
    static constexpr int32_t InvalidIndex = -1;

    // By the model's bones and cameras; nothing is mapped yet.
    AnimListNode(uint32_t boneCount, uint32_t cameraCount);

    const AnimRef& GetAnim() const { return m_AnimRef; }
    // An animation with all its controls.
    void SetAnim(const AnimRef& anim);

    // The model that the animation is taken from; INVALID for one of the model's own.
    const ra::Name& GetXRefModel() const { return m_XRefModel; }
    void SetXRefModel(const ra::Name& name) { m_XRefModel = name; }
    bool IsLocal() const { return !m_XRefModel.IsValid(); }

    // For each bone and each camera of the model its index in the animation, or InvalidIndex.
    std::vector<int32_t> m_BoneMappings;
    std::vector<int32_t> m_CameraMappings;
    // For each control stream of the animation the index of its shader or mesh in the model, or InvalidIndex.
    std::vector<int32_t> m_ControlMappings;

    bool HasBounds() const { return m_HasBounds; }
    const glm::vec3& GetMinimum() const { return m_Minimum; }
    const glm::vec3& GetMaximum() const { return m_Maximum; }
    void SetBounds(const glm::vec3& minimum, const glm::vec3& maximum);

private:
    AnimRef m_AnimRef;
    ra::Name m_XRefModel;
    bool m_HasBounds = false;
    glm::vec3 m_Minimum = glm::vec3(0.0f);
    glm::vec3 m_Maximum = glm::vec3(0.0f);
};
