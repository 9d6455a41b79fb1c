#include "Shared/Cross/RenderAnim/AnimListNode.h"

AnimListNode::AnimListNode(uint32_t boneCount, uint32_t cameraCount)
    : m_BoneMappings(boneCount, InvalidIndex), m_CameraMappings(cameraCount, InvalidIndex) {}

void AnimListNode::SetAnim(const AnimRef& anim) {
    m_AnimRef = anim;
    m_ControlMappings.assign(anim.IsValid() ? anim->GetControlCount() : 0, InvalidIndex);
}

void AnimListNode::SetBounds(const glm::vec3& minimum, const glm::vec3& maximum) {
    m_HasBounds = true;
    m_Minimum = minimum;
    m_Maximum = maximum;
}
