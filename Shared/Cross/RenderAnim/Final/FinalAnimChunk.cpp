#include "Shared/Cross/RenderAnim/Final/FinalAnimChunk.h"

#include <utility>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/AnimListNode.h"
#include "Shared/Cross/RenderAnim/Chunks/AnimParts.h"
#include "Shared/Cross/RenderAnim/Chunks/ModelLayout.h"
#include "Shared/Cross/RenderAnim/Chunks/PayloadReader.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"
#include "Shared/Cross/RenderAnim/Skeleton.h"

// "ANIM", folder, version 3, name of the animation: "DATA", or "XREF" for one of another model; then "ANBV", if it has
// bounds.
//
// "DATA", data, version 2, name of the animation:
//   int32    frames, above 0
//   float    duration in seconds, above 0
//   uint32   bones, none or all of the skeleton's in its order; for each:
//     string   name
//     keys     of vec3: position
//     keys     of quat: rotation
//     uint8    whether the bone is animated
//   uint32   controls; for each:
//     string   shader or mesh
//     int32    target kind
//     int32    parameter
//     int32    channel
//     keys     of float
//   uint32   cameras; not in version 1; for each:
//     string   name
//     keys     of vec3: position
//     keys     of quat: rotation
// where keys are a uint32 count, and a float of time and a value for each. Times go from 0 to 1 and never back.
//
// "XREF", data, version 1, and "ANBV" are told by Chunks/AnimRecord.cpp.

namespace ra {

namespace {

constexpr uint32_t s_FinalAnimVersion = 3;
constexpr uint32_t s_FinalAnimDataVersion = 2;
constexpr uint32_t s_OldestAnimDataVersion = 1;
constexpr uint32_t s_FinalXRefVersion = 1;
constexpr size_t s_BoneKeysMinBytes = 13;   // an empty name, two empty lists and a mark
constexpr size_t s_ControlMinBytes = 20;    // an empty name, three numbers and an empty list
constexpr size_t s_CameraKeysMinBytes = 12; // an empty name and two empty lists

void WriteBones(Chunky& chunky, const Anim& anim, size_t boneCount) {
    const size_t count = anim.GetBoneCount();
    dbAssertText(count == boneCount || count == 0, "count == boneCount");
    WriteAnimField(chunky, anim.GetBoneCount());
    for (uint32_t i = 0; i < anim.GetBoneCount(); ++i) {
        const Anim::BoneStream& bone = anim.GetBone(static_cast<int32_t>(i));
        WriteAnimName(chunky, bone.name);
        WriteKeys(chunky, bone.pPosition.get());
        WriteKeys(chunky, bone.pRotation.get());
        WriteAnimField(chunky, static_cast<uint8_t>(bone.isAnimated));
    }
}

void WriteControls(Chunky& chunky, const Anim& anim) {
    WriteAnimField(chunky, anim.GetControlCount());
    for (uint32_t i = 0; i < anim.GetControlCount(); ++i) {
        const Anim::ControlStream& control = anim.GetControl(static_cast<int32_t>(i));
        WriteAnimName(chunky, control.name);
        WriteAnimField(chunky, control.ref.type);
        WriteAnimField(chunky, control.ref.property);
        WriteAnimField(chunky, control.ref.channel);
        WriteKeys(chunky, control.pValues.get());
    }
}

void WriteCameras(Chunky& chunky, const Anim& anim) {
    WriteAnimField(chunky, anim.GetCameraCount());
    for (uint32_t i = 0; i < anim.GetCameraCount(); ++i) {
        const Anim::CameraStream& camera = anim.GetCamera(static_cast<int32_t>(i));
        WriteAnimName(chunky, camera.name);
        WriteKeys(chunky, camera.pPosition.get());
        WriteKeys(chunky, camera.pRotation.get());
    }
}

void WriteData(Chunky& chunky, const Anim& anim, size_t boneCount) {
    chunky.BeginData(s_AnimDataChunk, s_FinalAnimDataVersion, anim.GetName());
    WriteAnimField(chunky, anim.GetFrameCount());
    WriteAnimField(chunky, anim.GetDuration());
    WriteBones(chunky, anim, boneCount);
    WriteControls(chunky, anim);
    WriteCameras(chunky, anim);
    chunky.EndChunk();
}

void ReadBones(AnimPartReader& reader, Anim& anim) {
    std::vector<Anim::BoneStream> bones(reader.ReadCount(s_BoneKeysMinBytes, "bone count"));
    for (Anim::BoneStream& bone : bones) {
        bone.name = Name(reader.ReadString("bone name").c_str());
        bone.pPosition = reader.ReadKeys<glm::vec3>("position key");
        bone.pRotation = reader.ReadKeys<glm::quat>("rotation key");
        bone.isAnimated = reader.Read<uint8_t>("animated mark") != 0;
    }
    anim.TakeBones(std::move(bones));
}

void ReadControls(AnimPartReader& reader, Anim& anim) {
    const uint32_t count = reader.ReadCount(s_ControlMinBytes, "control count");
    for (uint32_t i = 0; i < count; ++i) {
        Anim::ControlStream control;
        control.name = Name(reader.ReadString("control's target").c_str());
        control.ref.type = reader.Read<int32_t>("target kind");
        control.ref.property = reader.Read<int32_t>("parameter");
        control.ref.channel = reader.Read<int32_t>("channel");
        control.pValues = reader.ReadKeys<float>("control key");
        anim.TakeControl(std::move(control));
    }
}

void ReadCameras(AnimPartReader& reader, Anim& anim) {
    const uint32_t count = reader.ReadCount(s_CameraKeysMinBytes, "camera count");
    for (uint32_t i = 0; i < count; ++i) {
        Anim::CameraStream camera;
        camera.name = Name(reader.ReadString("camera name").c_str());
        camera.pPosition = reader.ReadKeys<glm::vec3>("camera position key");
        camera.pRotation = reader.ReadKeys<glm::quat>("camera rotation key");
        anim.TakeCamera(std::move(camera));
    }
}

std::unique_ptr<Anim> ReadData(Chunky& chunky, const std::string& name) {
    const ChunkInfo info = EnterData(chunky, s_AnimDataChunk, s_OldestAnimDataVersion, s_FinalAnimDataVersion);
    AnimPartReader reader(chunky, "animation '" + name + '\'');
    auto pAnim = std::make_unique<Anim>();
    pAnim->SetName(name.c_str());
    const auto frameCount = reader.Read<int32_t>("frame count");
    SetAnimLength(*pAnim, reader, frameCount, reader.Read<float>("duration"));
    ReadBones(reader, *pAnim);
    ReadControls(reader, *pAnim);
    if (info.version >= 2)
        ReadCameras(reader, *pAnim);
    chunky.EndChunk();
    return pAnim;
}

// An animation's bones are the skeleton's, by index; it may have none.
void CheckBones(const Anim& anim, const Skeleton& skeleton) {
    if (anim.GetBoneCount() != 0 && anim.GetBoneCount() != skeleton.GetBoneCount())
        throw Chunky::Exception(ChunkyError_BadChunk, std::string("animation '") + anim.GetName() + "' has " +
                                                          std::to_string(anim.GetBoneCount()) +
                                                          " bones, the skeleton " +
                                                          std::to_string(skeleton.GetBoneCount()));
}

} // namespace

void WriteFinalAnim(Chunky& chunky, PayloadWriter& writer, const AnimListNode& node) {
    const Anim& anim = *node.GetAnim().GetData();
    chunky.BeginFolder(s_AnimChunk, s_FinalAnimVersion, anim.GetName());
    if (node.IsLocal())
        WriteData(chunky, anim, node.m_BoneMappings.size());
    else
        WriteXRefAnim(chunky, writer, node, s_FinalXRefVersion);
    WriteAnimBounds(chunky, writer, node);
    chunky.EndChunk();
}

AnimRecord ReadFinalAnimRecord(Chunky& chunky) {
    AnimRecord record;
    const ChunkInfo info = chunky.EnterFolder(s_AnimChunk, s_FinalAnimVersion);
    record.name = info.name.GetView();
    record.version = info.version;
    bool hasContent = false;
    for (ChunkInfo child; chunky.NextChunk(child);) {
        if (child.kind != ChunkKind_Data)
            continue;
        if (child.id == s_AnimDataChunk && !hasContent) {
            record.pAnim = ReadData(chunky, record.name);
            hasContent = true;
        } else if (child.id == s_XRefAnimChunk && !hasContent) {
            ReadXRefAnim(chunky, record, s_FinalXRefVersion);
            hasContent = true;
        } else if (child.id == s_AnimBoundsChunk) {
            record.bounds = ReadAnimBounds(chunky, record.name);
        }
    }
    if (!hasContent)
        throw Chunky::Exception(ChunkyError_MissingChunk,
                                "Missing Chunk Type! (data of animation '" + record.name + "')");
    chunky.EndChunk();
    return record;
}

void AppendFinalAnim(Chunky& chunky, RenderModel& model) {
    AnimRecord record = ReadFinalAnimRecord(chunky);
    if (record.pAnim)
        CheckBones(*record.pAnim, *model.GetSkeleton());
    AppendAnimRecord(model, std::move(record));
}

} // namespace ra
