#include "Shared/Cross/RenderAnim/Intermediate/LocalStreams.h"

#include <algorithm>
#include <span>
#include <utility>

#include <glm/gtc/quaternion.hpp>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/Skeleton.h"
#include "Shared/Cross/RenderAnim/Transform.h"

namespace ra::intermediate {

namespace {

using MatrixKeys = std::span<const MatrixKey>;

MatrixKeys GetKeys(const WorldStreams& world, int32_t bone) {
    const MatrixStream* pStream = world[static_cast<size_t>(bone)].get();
    return pStream ? pStream->GetKeys() : MatrixKeys();
}

void MakeLocal(Anim& anim, int32_t bone, MatrixKeys keys, MatrixKeys parentKeys, const glm::quat& rest) {
    auto pPosition = std::make_unique<Vec3Stream>();
    auto pRotation = std::make_unique<QuatStream>();
    const std::span<Vec3Key> positions = pPosition->SetKeyCount(static_cast<uint32_t>(keys.size()));
    const std::span<QuatKey> rotations = pRotation->SetKeyCount(static_cast<uint32_t>(keys.size()));
    glm::quat previous = rest;
    for (size_t i = 0; i < keys.size(); ++i) {
        const glm::mat4x3 local =
            i < parentKeys.size() ? Multiply(keys[i].value, Inverse(parentKeys[i].value)) : keys[i].value;
        const float time = std::clamp(keys[i].time, 0.0f, 1.0f);
        const glm::quat rotation = GetRotation(local);
        previous = glm::dot(previous, rotation) < 0.0f ? -rotation : rotation;
        positions[i] = {time, local[3]};
        rotations[i] = {time, previous};
    }
    anim.SetBoneStreams(bone, std::move(pPosition), std::move(pRotation));
}

} // namespace

void MakeLocalStreams(Anim& anim, const WorldStreams& world, const Skeleton& skeleton) {
    for (uint32_t i = 0; i < skeleton.GetBoneCount(); ++i) {
        const auto index = static_cast<int32_t>(i);
        const MatrixKeys keys = GetKeys(world, index);
        if (!anim.GetBone(index).isAnimated || keys.empty())
            continue;
        const Bone& bone = skeleton.GetBone(index);
        const MatrixKeys parentKeys =
            bone.GetParent() ? GetKeys(world, bone.GetParent()->GetSkeletonIndex()) : MatrixKeys();
        if (bone.GetParent() && parentKeys.size() < keys.size())
            dbWarningf("'%s': The bone %s's parent bone does not have animation keys - the skeleton hierarchy does not "
                       "match the REF skeleton!",
                       anim.GetName(), bone.GetName().GetTextOrEmpty());
        MakeLocal(anim, index, keys, parentKeys, bone.GetLocalRotation());
    }
}

} // namespace ra::intermediate
