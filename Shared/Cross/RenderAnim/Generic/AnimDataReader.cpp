#include "Shared/Cross/RenderAnim/Generic/AnimDataReader.h"

#include <string>
#include <utility>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/Chunks/AnimParts.h"
#include "Shared/Cross/RenderAnim/Chunks/PayloadReader.h"
#include "Shared/Cross/RenderAnim/Generic/AnimLayout.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"
#include "Shared/Cross/RenderAnim/Skeleton.h"

namespace ra::generic {

namespace {

struct Length {
    int64_t frameCount;
    float duration;
};

Length ReadLength(AnimPartReader& reader, uint32_t version) {
    if (version >= 5) {
        const auto frameCount = reader.Read<int32_t>("frame count");
        return {frameCount, reader.Read<float>("duration")};
    }
    if (version < 2)
        reader.Read<int32_t>("unused number");
    const int64_t firstFrame = reader.Read<int32_t>("first frame");
    const int64_t lastFrame = reader.Read<int32_t>("last frame");
    const auto rate = reader.Read<float>("frame rate");
    const int64_t frameCount = lastFrame - firstFrame + 1;
    return {frameCount, static_cast<float>(frameCount) / rate};
}

void SkipVectors(AnimPartReader& reader) {
    for (int i = 0; i < 2; ++i)
        reader.ReadVec3("unused vectors");
}

// What stood behind the length.
void SkipOldFields(AnimPartReader& reader, uint32_t version) {
    if (version < 4)
        SkipVectors(reader);
    if (version < 3)
        reader.Read<int32_t>("unused number");
    if (version < 4)
        SkipVectors(reader);
}

class DataReader {
public:
    DataReader(Chunky& chunky, const RenderModel* pModel, Anim& anim)
        : m_Chunky(chunky), m_pModel(pModel), m_Anim(anim) {}

    void Read() {
        m_Chunky.EnterFolder(s_AnimDataChunk, s_AnimDataVersion);
        ReadInfo();
        SetBones();
        for (ChunkInfo child; m_Chunky.NextChunk(child);)
            if (child.kind == ChunkKind_Data)
                ReadPart(child);
        m_Chunky.EndChunk();
    }

private:
    void ReadInfo() {
        const ChunkInfo info = EnterData(m_Chunky, s_AnimInfoChunk, s_OldestVersion, s_AnimInfoVersion);
        AnimPartReader reader(m_Chunky, std::string("animation '") + m_Anim.GetName() + '\'');
        const Length length = ReadLength(reader, info.version);
        SetAnimLength(m_Anim, reader, length.frameCount, length.duration);
        SkipOldFields(reader, info.version);
        m_Chunky.EndChunk();
    }

    void SetBones() {
        const Skeleton* pSkeleton = m_pModel ? m_pModel->GetSkeleton() : nullptr;
        const uint32_t boneCount = pSkeleton ? pSkeleton->GetBoneCount() : 0;
        m_Anim.SetBoneCount(boneCount);
        for (uint32_t i = 0; i < boneCount; ++i) {
            const auto index = static_cast<int32_t>(i);
            m_Anim.SetBoneName(index, pSkeleton->GetBone(index).GetName());
        }
    }

    void ReadPart(const ChunkInfo& child) {
        if (child.id == s_BoneAnimChunk)
            ReadBone();
        else if (child.id == s_ControlAnimChunk)
            ReadControl();
        else if (child.id == s_CameraAnimChunk)
            ReadCamera();
    }

    void ReadBone() {
        const ChunkInfo info = EnterData(m_Chunky, s_BoneAnimChunk, s_OldestVersion, s_BoneAnimVersion);
        AnimPartReader reader(m_Chunky, DescribeAnimPart(m_Anim.GetName(), "bone", info.name.GetText()));
        const int32_t boneIndex = PlaceBone(info.name.GetText());
        dbAssertText(boneIndex != Anim::InvalidIndex, "boneIndex != InvalidIndex");
        if (boneIndex != Anim::InvalidIndex) {
            std::unique_ptr<Vec3Stream> pPosition = reader.ReadKeys<glm::vec3>("position key");
            m_Anim.SetBoneStreams(boneIndex, std::move(pPosition), reader.ReadKeys<glm::quat>("rotation key"));
            m_Anim.SetBoneAnimated(boneIndex, ReadAnimated(reader, info.version));
        }
        m_Chunky.EndChunk();
    }

    int32_t PlaceBone(const char* pName) {
        if (!m_pModel)
            return m_Anim.AddBone(Name(pName));
        // A name that was never made is no bone's.
        Name name;
        return Name::Find(pName, name) ? m_Anim.FindBone(name) : Anim::InvalidIndex;
    }

    static bool ReadAnimated(AnimPartReader& reader, uint32_t version) {
        return version < 2 ? reader.Read<int32_t>("animated mark") > 0 : reader.Read<uint8_t>("animated mark") != 0;
    }

    void ReadControl() {
        uint32_t version = s_ControlAnimVersion;
        Anim::ControlStream control = ReadControlAnim(m_Chunky, m_Anim.GetName(), s_ControlAnimChunk, version);
        if (version < 2 && control.ref.type == ControlTarget_Shader && control.pValues)
            for (FloatKey& key : control.pValues->GetKeys())
                key.value += 1.0f;
        m_Anim.TakeControl(std::move(control));
    }

    void ReadCamera() {
        Anim::CameraStream camera = ReadCameraAnim(m_Chunky, m_Anim.GetName());
        if (!m_pModel || m_pModel->FindCamera(camera.name) != RenderModel::InvalidIndex)
            m_Anim.TakeCamera(std::move(camera));
        else
            dbWarningf("Could not find camera '%s' in model '%s' for animation '%s'", camera.name.GetTextOrEmpty(),
                       m_pModel->GetName(), m_Anim.GetName());
    }

    Chunky& m_Chunky;
    const RenderModel* m_pModel; // null for the plain file
    Anim& m_Anim;
};

} // namespace

std::unique_ptr<Anim> ReadAnimData(Chunky& chunky, const RenderModel* pModel, const char* pName) {
    auto pAnim = std::make_unique<Anim>();
    pAnim->SetName(pName);
    DataReader(chunky, pModel, *pAnim).Read();
    return pAnim;
}

} // namespace ra::generic
