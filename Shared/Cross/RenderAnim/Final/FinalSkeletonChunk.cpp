#include "Shared/Cross/RenderAnim/Final/FinalSkeletonChunk.h"

#include "Shared/Cross/RenderAnim/Chunks/ModelLayout.h"
#include "Shared/Cross/RenderAnim/Chunks/ParentField.h"
#include "Shared/Cross/RenderAnim/Chunks/PayloadReader.h"
#include "Shared/Cross/RenderAnim/Skeleton.h"

// "SKEL", data, version 5:
//   int32   bones; for each:
//     string  name
//     int32   parent, -1 for none
//     vec3    position, relative to the parent
//     quat    rotation

namespace ra {

namespace {

constexpr uint32_t s_FinalSkeletonVersion = 5;
constexpr size_t s_BoneMinBytes = 36; // an empty name, a parent, a position and a rotation

} // namespace

void WriteFinalSkeleton(Chunky& chunky, PayloadWriter& writer, const Skeleton& skeleton) {
    writer.Write(skeleton.GetBoneCount());
    for (uint32_t i = 0; i < skeleton.GetBoneCount(); ++i) {
        const Bone& bone = skeleton.GetBone(static_cast<int32_t>(i));
        writer.WriteString(bone.GetName().GetText());
        WriteParent(writer, skeleton, static_cast<int32_t>(i));
        writer.WriteVec3(bone.GetLocalPosition());
        writer.WriteQuat(bone.GetLocalRotation());
    }
    writer.WriteChunk(chunky, s_SkeletonChunk, s_FinalSkeletonVersion);
}

std::vector<generic::BoneRecord> ReadFinalBoneRecords(Chunky& chunky) {
    EnterData(chunky, s_SkeletonChunk, s_FinalSkeletonVersion, s_FinalSkeletonVersion);
    PayloadReader reader(chunky, "skeleton", "");
    std::vector<generic::BoneRecord> bones(reader.ReadCount(s_BoneMinBytes, "bone count"));
    const auto count = static_cast<int32_t>(bones.size());
    for (int32_t i = 0; i < count; ++i) {
        generic::BoneRecord& bone = bones[static_cast<size_t>(i)];
        bone.name = reader.ReadString("bone name");
        bone.parent = ReadParent(reader, i, count);
        bone.position = reader.ReadVec3("bone position");
        bone.rotation = reader.ReadQuat("bone rotation");
    }
    chunky.EndChunk();
    return bones;
}

} // namespace ra
