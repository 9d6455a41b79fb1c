#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

#include <glm/gtc/quaternion.hpp>
#include <glm/mat4x3.hpp>
#include <glm/vec3.hpp>

#include "Shared/Cross/RenderAnim/RenderAnimName.h"

// One bone of a skeleton, which owns it.
class Bone {
public:
    static constexpr int32_t InvalidIndex = -1;

    const ra::Name& GetName() const { return m_Name; }
    int32_t GetSkeletonIndex() const { return m_SkeletonIndex; }
    // Relative to the parent bone, or to the world for a root.
    const glm::vec3& GetLocalPosition() const { return m_LocalPosition; }
    const glm::quat& GetLocalRotation() const { return m_LocalRotation; }
    // The bone's place in the world at rest, and its inverse.
    const glm::mat4x3& GetReferenceMatrix() const { return m_ReferenceMatrix; }
    const glm::mat4x3& GetInverseReferenceMatrix() const { return m_InverseReferenceMatrix; }
    const Bone* GetParent() const { return m_pParent; } // null for a root

private:
    friend class Skeleton;
    ra::Name m_Name;
    int32_t m_SkeletonIndex = InvalidIndex;
    glm::vec3 m_LocalPosition = glm::vec3(0.0f);
    glm::quat m_LocalRotation = glm::quat(1.0f, 0.0f, 0.0f, 0.0f);
    glm::mat4x3 m_ReferenceMatrix = glm::mat4x3(1.0f);
    glm::mat4x3 m_InverseReferenceMatrix = glm::mat4x3(1.0f);
    const Bone* m_pParent = nullptr; // in the same skeleton
};

// The bones of a model in their order, parents ahead of their children. Meshes and animations name a bone while they
// load and know it by its index from then on. An index out of range is a mistake of the caller: setters then do
// nothing.
class Skeleton {
public:
    explicit Skeleton(uint32_t boneCount);
    // Bones point at one another, so that a copy would point into the original.
    Skeleton(const Skeleton&) = delete;
    Skeleton& operator=(const Skeleton&) = delete;

    uint32_t GetBoneCount() const { return static_cast<uint32_t>(m_Bones.size()); }
    // A bone at rest at the origin, without a name, for an index out of range.
    const Bone& GetBone(int32_t index) const;
    // The first bone of that name; -1 without one, which is no mistake. In constant time after the first call.
    int32_t FindBone(const ra::Name& name) const;
    int32_t GetParentIndex(int32_t index) const; // -1 for a root

    void SetBoneName(int32_t index, const ra::Name& name);
    void SetLocalPosition(int32_t index, const glm::vec3& position);
    void SetLocalRotation(int32_t index, const glm::quat& rotation);
    void SetParent(int32_t index, int32_t parentIndex); // -1 for none
    // The bone's place in the world, with its inverse. The local data doesn't follow; see DeriveLocalPose.
    void SetReferenceMatrix(int32_t index, const glm::mat4x3& matrix);

    // The world matrices from the local data, in one pass: a bone that stands ahead of its parent comes out wrong.
    void BuildRefPose();
    // The other way round: the local data from the world matrices, in any order of the bones.
    void DeriveLocalPose();

private:
    Bone* GetOwnBone(int32_t index);

    std::vector<Bone> m_Bones; // never grows, since bones point at their parents
    // The first index of each name. Only ever looked up, never walked.
    mutable std::unordered_map<ra::Name, int32_t> m_BoneIndices;
    mutable bool m_BoneIndicesStale = true;
};
