#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "Shared/Cross/RenderAnim/Skeleton.h"

namespace ra {

// Bones with their names and parents, as the records of all forms of skeletons have them. `setPlace` is called with the
// skeleton, each bone's index and its record, and sets what the form has of its place.
template <class BoneRecord, class SetPlace>
std::unique_ptr<Skeleton> BuildBones(const std::vector<BoneRecord>& bones, SetPlace setPlace) {
    auto pSkeleton = std::make_unique<Skeleton>(static_cast<uint32_t>(bones.size()));
    int32_t index = 0;
    for (const BoneRecord& bone : bones) {
        pSkeleton->SetBoneName(index, Name(bone.name.c_str()));
        pSkeleton->SetParent(index, bone.parent);
        setPlace(*pSkeleton, index++, bone);
    }
    return pSkeleton;
}

} // namespace ra
