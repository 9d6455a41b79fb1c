#include "Shared/Cross/RenderAnim/Skeleton.h"

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/Transform.h"

namespace {

const Bone s_NoBone;

} // namespace

Skeleton::Skeleton(uint32_t boneCount) : m_Bones(boneCount) {
    for (uint32_t i = 0; i < boneCount; ++i)
        m_Bones[i].m_SkeletonIndex = static_cast<int32_t>(i);
}

const Bone& Skeleton::GetBone(int32_t index) const {
    // Above every count when negative, so that one test is enough behind the assertions.
    const auto place = static_cast<uint32_t>(index);
    dbAssertText(index != Bone::InvalidIndex, "index != Bone::InvalidIndex");
    dbAssertText(place < m_Bones.size(), "index < m_Bones.size()");
    return place < m_Bones.size() ? m_Bones[place] : s_NoBone;
}

Bone* Skeleton::GetOwnBone(int32_t index) {
    const Bone& bone = GetBone(index);
    return &bone != &s_NoBone ? &m_Bones[static_cast<uint32_t>(index)] : nullptr;
}

int32_t Skeleton::FindBone(const ra::Name& name) const {
    if (m_BoneIndicesStale) {
        m_BoneIndices.clear();
        m_BoneIndices.reserve(m_Bones.size());
        for (const Bone& bone : m_Bones)
            m_BoneIndices.try_emplace(bone.m_Name, bone.m_SkeletonIndex);
        m_BoneIndicesStale = false;
    }
    const auto it = m_BoneIndices.find(name);
    return it != m_BoneIndices.end() ? it->second : Bone::InvalidIndex;
}

int32_t Skeleton::GetParentIndex(int32_t index) const {
    const Bone* pParent = GetBone(index).m_pParent;
    if (!pParent)
        return Bone::InvalidIndex;
    dbAssertText(pParent->m_SkeletonIndex != Bone::InvalidIndex, "m_SkeletonIndex != InvalidIndex");
    return pParent->m_SkeletonIndex;
}

void Skeleton::SetBoneName(int32_t index, const ra::Name& nameKey) {
    dbAssertText(nameKey != ra::Name::INVALID, "nameKey != ra::Name::INVALID");
    if (Bone* pBone = GetOwnBone(index)) {
        pBone->m_Name = nameKey;
        m_BoneIndicesStale = true;
    }
}

void Skeleton::SetLocalPosition(int32_t index, const glm::vec3& position) {
    if (Bone* pBone = GetOwnBone(index))
        pBone->m_LocalPosition = position;
}

void Skeleton::SetLocalRotation(int32_t index, const glm::quat& rotation) {
    if (Bone* pBone = GetOwnBone(index))
        pBone->m_LocalRotation = rotation;
}

void Skeleton::SetParent(int32_t index, int32_t parentIndex) {
    Bone* pBone = GetOwnBone(index);
    if (pBone)
        pBone->m_pParent = parentIndex == Bone::InvalidIndex ? nullptr : GetOwnBone(parentIndex);
}

void Skeleton::SetReferenceMatrix(int32_t index, const glm::mat4x3& matrix) {
    if (Bone* pBone = GetOwnBone(index)) {
        pBone->m_ReferenceMatrix = matrix;
        pBone->m_InverseReferenceMatrix = ra::Inverse(matrix);
    }
}

void Skeleton::BuildRefPose() {
    for (Bone& bone : m_Bones) {
        const glm::mat4x3 local = ra::MakeTransform(bone.m_LocalRotation, bone.m_LocalPosition);
        bone.m_ReferenceMatrix = bone.m_pParent ? ra::Multiply(local, bone.m_pParent->m_ReferenceMatrix) : local;
        bone.m_InverseReferenceMatrix = ra::Inverse(bone.m_ReferenceMatrix);
    }
}

void Skeleton::DeriveLocalPose() {
    for (Bone& bone : m_Bones) {
        const glm::mat4x3 local = bone.m_pParent
                                      ? ra::Multiply(bone.m_ReferenceMatrix, bone.m_pParent->m_InverseReferenceMatrix)
                                      : bone.m_ReferenceMatrix;
        bone.m_LocalPosition = local[3];
        bone.m_LocalRotation = ra::GetRotation(local);
    }
}
