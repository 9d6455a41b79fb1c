#include "Shared/Cross/RenderAnim/Generic/SkeletonChunk.h"

#include "Shared/Cross/RenderAnim/Chunks/BuildSkeleton.h"
#include "Shared/Cross/RenderAnim/Chunks/ParentField.h"
#include "Shared/Cross/RenderAnim/Chunks/PayloadReader.h"
#include "Shared/Cross/RenderAnim/Transform.h"

// "SKEL", folder, version 3: "INFO", and "BONE" for each bone.
//
// "INFO", data, version 1:
//   int32     bones
//
// "BONE", data, version 5, name of the bone:
//   float     before version 5; means nothing
//   3 floats  before version 2; mean nothing
//   int32     parent, -1 for none
//   vec3      position
//   quat      rotation
//   mat43     before version 5, in place of position and rotation
//   2 vec3    before version 4; mean nothing
//   int32     before version 3; means nothing

namespace ra::generic {

namespace {

constexpr uint32_t s_InfoChunk = FourCC("INFO");
constexpr uint32_t s_BoneChunk = FourCC("BONE");
constexpr uint32_t s_SkeletonVersion = 3;
constexpr uint32_t s_InfoVersion = 1;
constexpr uint32_t s_BoneVersion = 5;
constexpr uint32_t s_BoneMinBytes = 52; // a chunk's header, a parent, a position and a rotation

void WriteBone(Chunky& chunky, PayloadWriter& writer, const Skeleton& skeleton, int32_t index) {
    const Bone& bone = skeleton.GetBone(index);
    WriteParent(writer, skeleton, index);
    writer.WriteVec3(bone.GetLocalPosition());
    writer.WriteQuat(bone.GetLocalRotation());
    writer.WriteChunk(chunky, s_BoneChunk, s_BoneVersion, bone.GetName().GetText());
}

uint32_t ReadBoneCount(Chunky& chunky) {
    EnterData(chunky, s_InfoChunk, s_InfoVersion, s_InfoVersion);
    PayloadReader reader(chunky, "skeleton", "");
    const auto count = reader.Read<uint32_t>("bone count");
    chunky.EndChunk();
    if (count > chunky.GetRemaining() / s_BoneMinBytes)
        reader.Fail("bone count", std::to_string(count) + " exceeds its chunk");
    return count;
}

void ReadPlace(PayloadReader& reader, uint32_t version, BoneRecord& bone) {
    if (version < 5) {
        const glm::mat4x3 transform = reader.ReadMat43("transform");
        bone.position = transform[3];
        bone.rotation = GetRotation(transform);
    } else {
        bone.position = reader.ReadVec3("position");
        bone.rotation = reader.ReadQuat("rotation");
    }
}

BoneRecord ReadBone(Chunky& chunky, uint32_t index, uint32_t count) {
    const ChunkInfo info = chunky.EnterData(s_BoneChunk, s_BoneVersion);
    PayloadReader reader(chunky, "bone", info.name.GetText());
    BoneRecord bone;
    bone.name = info.name.GetView();
    if (info.version < 5)
        reader.Read<float>("unused float");
    if (info.version < 2)
        reader.ReadVec3("unused floats");
    bone.parent = ReadParent(reader, index, count);
    ReadPlace(reader, info.version, bone);
    if (info.version < 4)
        for (int i = 0; i < 2; ++i)
            reader.ReadVec3("unused vectors");
    if (info.version < 3)
        reader.Read<int32_t>("unused number");
    chunky.EndChunk();
    return bone;
}

} // namespace

void WriteSkeleton(Chunky& chunky, PayloadWriter& writer, const Skeleton& skeleton) {
    chunky.BeginFolder(s_SkeletonChunk, s_SkeletonVersion);
    writer.Write(skeleton.GetBoneCount());
    writer.WriteChunk(chunky, s_InfoChunk, s_InfoVersion);
    for (uint32_t i = 0; i < skeleton.GetBoneCount(); ++i)
        WriteBone(chunky, writer, skeleton, static_cast<int32_t>(i));
    chunky.EndChunk();
}

std::vector<BoneRecord> ReadBoneRecords(Chunky& chunky) {
    chunky.EnterFolder(s_SkeletonChunk, s_SkeletonVersion);
    const uint32_t count = ReadBoneCount(chunky);
    std::vector<BoneRecord> bones;
    bones.reserve(count);
    for (uint32_t i = 0; i < count; ++i)
        bones.push_back(ReadBone(chunky, i, count));
    chunky.EndChunk();
    return bones;
}

std::unique_ptr<Skeleton> BuildSkeleton(const std::vector<BoneRecord>& bones) {
    auto pSkeleton = BuildBones(bones, [](Skeleton& skeleton, int32_t index, const BoneRecord& bone) {
        skeleton.SetLocalPosition(index, bone.position);
        skeleton.SetLocalRotation(index, bone.rotation);
    });
    pSkeleton->BuildRefPose();
    return pSkeleton;
}

} // namespace ra::generic
