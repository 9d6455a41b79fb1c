#include "Shared/Cross/RenderAnim/AnimList.h"

#include <utility>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/MeshGroup.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"
#include "Shared/Cross/RenderAnim/Skeleton.h"

namespace {

const char* OrEmpty(const char* pText) { return pText ? pText : ""; }

} // namespace

AnimListNode* AnimList::GetNode(uint32_t index) const {
    dbAssert(index < m_pAnimNodes.size());
    return index < m_pAnimNodes.size() ? m_pAnimNodes[index].get() : nullptr;
}

int32_t AnimList::FindNode(const char* pName) const {
    const auto it = m_NodeIndices.find(pName);
    return it != m_NodeIndices.end() ? it->second : InvalidIndex;
}

void AnimList::AddNode(std::unique_ptr<AnimListNode> pNode) {
    dbAssert(pNode && pNode->GetAnim().GetData());
    if (!pNode || !pNode->GetAnim().GetData())
        return;
    MapBones(*pNode);
    MapCameras(*pNode);
    MapControls(*pNode);
    m_NodeIndices.try_emplace(pNode->GetAnim()->GetName(), static_cast<int32_t>(m_pAnimNodes.size()));
    m_pAnimNodes.push_back(std::move(pNode));
}

void AnimList::MapBones(AnimListNode& node) const {
    const Skeleton* pSkeleton = m_Model.GetSkeleton();
    if (!pSkeleton)
        return;
    const uint32_t boneCount = pSkeleton->GetBoneCount();
    dbAssertText(node.m_BoneMappings.size() == boneCount, "node.m_BoneMappings.size() == skeleton.GetBoneCount()");
    node.m_BoneMappings.assign(boneCount, InvalidIndex);
    const Anim& anim = *node.GetAnim().GetData();
    for (uint32_t i = 0; i < boneCount; ++i) {
        const auto bone = static_cast<int32_t>(i);
        if (!node.IsLocal())
            node.m_BoneMappings[i] = anim.FindBone(pSkeleton->GetBone(bone).GetName());
        else if (i < anim.GetBoneCount())
            node.m_BoneMappings[i] = bone;
    }
}

void AnimList::MapCameras(AnimListNode& node) const {
    const std::vector<CameraDef>& cameras = m_Model.GetCameras();
    node.m_CameraMappings.resize(cameras.size());
    for (size_t i = 0; i < cameras.size(); ++i)
        node.m_CameraMappings[i] = node.GetAnim()->FindCamera(cameras[i].name);
}

void AnimList::MapControls(AnimListNode& node) {
    const Anim& anim = *node.GetAnim().GetData();
    if (node.m_ControlMappings.size() != anim.GetControlCount())
        dbWarningf("%s: Animation %s has mismatching control counts (node = %d, anim = %d)!",
                   OrEmpty(m_Model.GetName()), OrEmpty(anim.GetName()), static_cast<int>(node.m_ControlMappings.size()),
                   static_cast<int>(anim.GetControlCount()));
    node.m_ControlMappings.resize(anim.GetControlCount());
    for (uint32_t i = 0; i < anim.GetControlCount(); ++i) {
        const Anim::ControlStream& control = anim.GetControl(static_cast<int32_t>(i));
        const int32_t target = FindTarget(control);
        node.m_ControlMappings[i] = target;
        if (control.ref.type != ControlTarget_Shader || target == InvalidIndex)
            continue;
        const auto shader = static_cast<size_t>(target);
        if (shader >= m_bShaderAnimated.size())
            m_bShaderAnimated.resize(shader + 1);
        m_bShaderAnimated[shader] = true;
    }
}

int32_t AnimList::FindTarget(const Anim::ControlStream& control) const {
    const ra::MeshGroup* pGroup = m_Model.GetMeshGroup();
    if (!pGroup || !control.name.IsValid())
        return InvalidIndex;
    switch (control.ref.type) {
    case ControlTarget_Shader:
        return pGroup->FindShader(control.name.GetText());
    case ControlTarget_Mesh:
        return pGroup->FindMesh(control.name);
    default:
        return InvalidIndex;
    }
}

void AnimList::Finalise() {
    if (const ra::MeshGroup* pGroup = m_Model.GetMeshGroup())
        m_bShaderAnimated.resize(pGroup->GetShaderCount());
    m_pAnimNodes.shrink_to_fit();
}
