#include "Shared/Cross/RenderAnim/Intermediate/AnimChunk.h"

#include <string>
#include <utility>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/AnimInterm.h"
#include "Shared/Cross/RenderAnim/Chunks/AnimParts.h"
#include "Shared/Cross/RenderAnim/Chunks/PayloadReader.h"
#include "Shared/Cross/RenderAnim/Intermediate/AnimReader.h"

// "ANIM", folder, version 1, name of the animation: one "DATA", folder, version 1, of the same name, with
//
// "INFO", data, version 1:
//   int32   frames, above 0
//   float   duration in seconds, above 0
//
// "BANM", data, version 1, name of the bone; one for each bone, in the skeleton's order:
//   uint32  keys; for each:
//     float   time
//     mat43   transform in the world
//   uint8   whether the bone is animated
//
// "CONS", data, version 1, name of the shader or mesh; and "CMRA": as Chunks/AnimParts.cpp tells.

namespace ra::intermediate {

namespace {

constexpr uint32_t s_ControlAnimChunk = FourCC("CONS");
constexpr uint32_t s_AnimPartVersion = 1; // of all of these

void WriteBone(Chunky& chunky, const AnimInterm& anim, int32_t index) {
    const Anim::BoneStream& bone = anim.GetBone(index);
    const char* name = bone.name.GetTextOrEmpty();
    dbAssert(name[0] != '\0');
    chunky.BeginData(s_BoneAnimChunk, s_AnimPartVersion, name);
    WriteKeys(chunky, anim.GetMatrixStream(index));
    WriteAnimField(chunky, static_cast<uint8_t>(bone.isAnimated));
    chunky.EndChunk();
}

// The file's own bones in its order.
class PlainReader : public AnimReader {
public:
    PlainReader(Chunky& chunky, AnimInterm& anim) : AnimReader(chunky, anim), m_Interm(anim) {}

private:
    int32_t PlaceBone(const char* pName) override {
        const auto index = static_cast<int32_t>(m_Interm.GetBoneCount());
        m_Interm.SetBoneCount(m_Interm.GetBoneCount() + 1);
        m_Interm.SetBoneName(index, Name(pName));
        return index;
    }
    void TakeMatrices(int32_t index, std::unique_ptr<MatrixStream> pStream) override {
        m_Interm.SetMatrixStream(index, std::move(pStream));
    }

    AnimInterm& m_Interm;
};

} // namespace

void WriteAnim(Chunky& chunky, const AnimInterm& anim) {
    chunky.BeginFolder(s_AnimChunk, s_AnimVersion, anim.GetName());
    chunky.BeginFolder(s_AnimDataChunk, s_AnimPartVersion, anim.GetName());
    WriteAnimInfo(chunky, anim, s_AnimPartVersion);
    for (uint32_t i = 0; i < anim.GetBoneCount(); ++i)
        WriteBone(chunky, anim, static_cast<int32_t>(i));
    for (uint32_t i = 0; i < anim.GetControlCount(); ++i)
        WriteControlAnim(chunky, anim.GetControl(static_cast<int32_t>(i)), s_ControlAnimChunk, s_AnimPartVersion);
    for (uint32_t i = 0; i < anim.GetCameraCount(); ++i)
        WriteCameraAnim(chunky, anim.GetCamera(static_cast<int32_t>(i)));
    chunky.EndChunk();
    chunky.EndChunk();
}

std::unique_ptr<AnimInterm> ReadAnim(Chunky& chunky) {
    auto pAnim = std::make_unique<AnimInterm>();
    PlainReader(chunky, *pAnim).Read();
    return pAnim;
}

void AnimReader::Read() {
    m_Anim.SetName(m_Chunky.EnterFolder(s_AnimChunk, s_AnimVersion).name.GetText());
    m_Chunky.EnterFolder(s_AnimDataChunk, s_AnimPartVersion);
    ReadInfo();
    Begin();
    for (ChunkInfo child; m_Chunky.NextChunk(child);)
        if (child.kind == ChunkKind_Data)
            ReadPart(child);
    m_Chunky.EndChunk();
    m_Chunky.EndChunk();
}

void AnimReader::ReadInfo() {
    EnterData(m_Chunky, s_AnimInfoChunk, s_AnimPartVersion, s_AnimPartVersion);
    AnimPartReader reader(m_Chunky, std::string("animation '") + m_Anim.GetName() + '\'');
    const auto frameCount = reader.Read<int32_t>("frame count");
    const auto duration = reader.Read<float>("duration");
    SetAnimLength(m_Anim, reader, frameCount, duration);
    m_Chunky.EndChunk();
}

void AnimReader::ReadPart(const ChunkInfo& child) {
    if (child.id == s_BoneAnimChunk)
        ReadBone(child);
    else if (child.id == s_ControlAnimChunk) {
        uint32_t version = s_AnimPartVersion;
        TakeControl(ReadControlAnim(m_Chunky, m_Anim.GetName(), s_ControlAnimChunk, version));
    } else if (child.id == s_CameraAnimChunk)
        m_Anim.TakeCamera(ReadCameraAnim(m_Chunky, m_Anim.GetName()));
}

void AnimReader::ReadBone(const ChunkInfo& child) {
    std::string what = DescribeAnimPart(m_Anim.GetName(), "bone", child.name.GetText());
    if (child.name.GetView().empty())
        throw Chunky::Exception(ChunkyError_BadChunk, what + ": name is empty");
    const int32_t index = PlaceBone(child.name.GetText());
    if (index == Anim::InvalidIndex)
        return;
    EnterData(m_Chunky, s_BoneAnimChunk, s_AnimPartVersion, s_AnimPartVersion);
    AnimPartReader reader(m_Chunky, std::move(what));
    TakeMatrices(index, reader.ReadKeys<glm::mat4x3>("key"));
    m_Anim.SetBoneAnimated(index, reader.Read<uint8_t>("animated mark") != 0);
    m_Chunky.EndChunk();
}

} // namespace ra::intermediate
