#include "Shared/Cross/RenderAnim/Intermediate/SkeletonChunk.h"

#include "Shared/Cross/RenderAnim/Chunks/BuildSkeleton.h"
#include "Shared/Cross/RenderAnim/Chunks/ParentField.h"
#include "Shared/Cross/RenderAnim/Chunks/PayloadReader.h"

// "SKEL", data, version 2:
//   int32   bones; for each:
//     string  name
//     int32   parent, -1 for none
//     mat43   transform in the world

namespace ra::intermediate {

namespace {

constexpr uint32_t s_SkeletonVersion = 2;
constexpr size_t s_BoneMinBytes = 56; // an empty name, a parent and a matrix

} // namespace

void WriteSkeleton(Chunky& chunky, PayloadWriter& writer, const Skeleton& skeleton) {
    writer.Write(skeleton.GetBoneCount());
    for (uint32_t i = 0; i < skeleton.GetBoneCount(); ++i) {
        const Bone& bone = skeleton.GetBone(static_cast<int32_t>(i));
        writer.WriteString(bone.GetName().GetText());
        WriteParent(writer, skeleton, static_cast<int32_t>(i));
        writer.WriteMat43(bone.GetReferenceMatrix());
    }
    writer.WriteChunk(chunky, s_SkeletonChunk, s_SkeletonVersion);
}

std::vector<BoneRecord> ReadBoneRecords(Chunky& chunky) {
    EnterData(chunky, s_SkeletonChunk, s_SkeletonVersion, s_SkeletonVersion);
    PayloadReader reader(chunky, "skeleton", "");
    std::vector<BoneRecord> bones(reader.ReadCount(s_BoneMinBytes, "bone count"));
    const auto count = static_cast<int32_t>(bones.size());
    for (int32_t i = 0; i < count; ++i) {
        BoneRecord& bone = bones[static_cast<size_t>(i)];
        bone.name = reader.ReadString("bone name");
        bone.parent = ReadParent(reader, i, count);
        bone.transform = reader.ReadMat43("bone transform");
    }
    chunky.EndChunk();
    return bones;
}

std::unique_ptr<Skeleton> BuildSkeleton(const std::vector<BoneRecord>& bones) {
    auto pSkeleton = BuildBones(bones, [](Skeleton& skeleton, int32_t index, const BoneRecord& bone) {
        skeleton.SetReferenceMatrix(index, bone.transform);
    });
    pSkeleton->DeriveLocalPose();
    return pSkeleton;
}

} // namespace ra::intermediate
