#include "Shared/Cross/RenderAnim/RenderModel.h"

#include <algorithm>
#include <memory>
#include <random>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/AnimList.h"
#include "Shared/Cross/RenderAnim/MeshGroup.h"
#include "Shared/Cross/RenderAnim/RenderModelTypeInfo.h"
#include "Shared/Cross/RenderAnim/Skeleton.h"
#include "Shared/Cross/RenderAnim/Transform.h"

namespace {

int32_t PickBelow(int32_t count) {
    static std::minstd_rand s_random;
    return std::uniform_int_distribution<int32_t>(0, count - 1)(s_random);
}

} // namespace

Inv::ResourceTypeInfo& RenderModel::GetTypeInfo() {
    static RenderModelTypeInfo s_typeInfo;
    return s_typeInfo;
}

RenderModel::RenderModel() : m_pMotionList(std::make_unique<ra::MotionList>()) {}

RenderModel::~RenderModel() = default;

void RenderModel::SetMeshGroup(std::unique_ptr<ra::MeshGroup> pMeshGroup) {
    m_pMeshGroup = std::move(pMeshGroup);
    if (!m_pMeshGroup)
        return;
    const OrientedBox& box = m_pMeshGroup->GetBoundVolume().GetBox();
    m_SelectionInfo.extentX = box.halfExtents.x;
    m_SelectionInfo.extentZ = box.halfExtents.z;
    m_SelectionInfo.centreX = box.centre.x;
    m_SelectionInfo.centreZ = box.centre.z;
    m_SelectionInfo.box = box;
}

void RenderModel::SetSkeleton(std::unique_ptr<Skeleton> pSkeleton) { m_pSkeleton = std::move(pSkeleton); }

void RenderModel::SetAnimList(std::unique_ptr<AnimList> pAnimList) { m_pAnimList = std::move(pAnimList); }

void RenderModel::BindMarker(Marker& marker) const {
    if (m_pSkeleton)
        marker.m_parentIndex = static_cast<uint32_t>(
            marker.m_parentName.IsValid() ? m_pSkeleton->FindBone(marker.m_parentName) : Bone::InvalidIndex);
}

void RenderModel::SetMarker(uint32_t index, const Marker& marker) {
    dbAssert(index < m_cMarkers.size());
    if (index >= m_cMarkers.size())
        return;
    m_cMarkers[index] = marker;
    BindMarker(m_cMarkers[index]);
}

void RenderModel::AddMarker(const Marker& marker) {
    m_cMarkers.push_back(marker);
    BindMarker(m_cMarkers.back());
}

int32_t RenderModel::GetMarkerCount() const {
    return static_cast<int32_t>(m_cMarkers.size() + (m_pSkeleton ? m_pSkeleton->GetBoneCount() : 0));
}

int32_t RenderModel::FindMarker(const ra::Name& name) const {
    static const ra::Name s_Root("root");
    static const ra::Name s_Random("random");

    const int32_t markerCount = GetMarkerCount();
    if (markerCount == 0)
        return InvalidIndex;
    const auto ownCount = static_cast<int32_t>(m_cMarkers.size());
    if (name == s_Root)
        return m_pSkeleton ? ownCount : 0;
    if (name == s_Random)
        return PickBelow(markerCount);
    const auto it = std::ranges::find(m_cMarkers, name, &Marker::name);
    if (it != m_cMarkers.end())
        return static_cast<int32_t>(it - m_cMarkers.begin());
    const int32_t bone = m_pSkeleton ? m_pSkeleton->FindBone(name) : Bone::InvalidIndex;
    return bone != Bone::InvalidIndex ? bone + ownCount : InvalidIndex;
}

glm::mat4x3 RenderModel::GetMarkerTransform(int32_t index) const {
    const int32_t markerCount = GetMarkerCount();
    dbAssert(index != InvalidIndex);
    dbAssert(index < markerCount);
    if (index < 0 || index >= markerCount)
        return glm::mat4x3(1.0f);
    const auto ownCount = static_cast<int32_t>(m_cMarkers.size());
    if (index >= ownCount)
        return m_pSkeleton->GetBone(index - ownCount).GetReferenceMatrix();
    const Marker& marker = m_cMarkers[static_cast<size_t>(index)];
    if (!m_pSkeleton || marker.m_parentIndex >= m_pSkeleton->GetBoneCount())
        return marker.m_transform;
    const Bone& parent = m_pSkeleton->GetBone(static_cast<int32_t>(marker.m_parentIndex));
    return ra::Multiply(marker.m_transform, parent.GetReferenceMatrix());
}

void RenderModel::SetCamera(uint32_t index, const CameraDef& camera) {
    dbAssert(index < m_cCameras.size());
    if (index < m_cCameras.size())
        m_cCameras[index] = camera;
}

int32_t RenderModel::FindCamera(const ra::Name& name) const {
    const auto it = std::ranges::find(m_cCameras, name, &CameraDef::name);
    return it != m_cCameras.end() ? static_cast<int32_t>(it - m_cCameras.begin()) : InvalidIndex;
}

ra::MotionParts RenderModel::GetMotionParts() {
    return {m_EventList, m_ClauseList, m_ConditionList, m_ModifierList, *m_pMotionList, m_ActionTree};
}

ra::ConstMotionParts RenderModel::GetMotionParts() const {
    return {m_EventList, m_ClauseList, m_ConditionList, m_ModifierList, *m_pMotionList, m_ActionTree};
}

void RenderModel::BuildReferencePose() {
    dbAssert(m_pMeshGroup.get());
    if (!m_pReferencePose)
        m_pReferencePose = std::make_unique<ReferencePose>(*this);
}
