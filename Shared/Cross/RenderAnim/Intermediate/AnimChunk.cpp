#include "Shared/Cross/RenderAnim/Intermediate/AnimChunk.h"

#include <stdexcept>
#include <string>
#include <unordered_map>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/AnimInterm.h"
#include "Shared/Cross/RenderAnim/Chunks/PayloadReader.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"
#include "Shared/Cross/RenderAnim/Skeleton.h"

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
// "CONS", data, version 1, name of the shader or mesh:
//   int32   target kind
//   int32   parameter
//   int32   channel
//   uint32  keys; for each:
//     float   time
//     float   value
//
// "CMRA", data, version 1, name of the camera:
//   uint32  keys; for each:
//     float   time
//     vec3    position
//   uint32  keys; for each:
//     float   time
//     quat    rotation
//
// Times go from 0 to 1 over the animation and never back. A list of keys in a file is the stream's own memory.

namespace ra::intermediate {

namespace {

constexpr uint32_t s_AnimDataChunk = FourCC("DATA");
constexpr uint32_t s_AnimInfoChunk = FourCC("INFO");
constexpr uint32_t s_BoneAnimChunk = FourCC("BANM");
constexpr uint32_t s_ControlAnimChunk = FourCC("CONS");
constexpr uint32_t s_CameraAnimChunk = FourCC("CMRA");
constexpr uint32_t s_AnimPartVersion = 1; // of all of these

// Writing

template <class T>
void Write(Chunky& chunky, T value) {
    if (!chunky.GetStream().WriteValue(value))
        throw std::runtime_error("Unable to write to file!");
}

template <class V>
void WriteKeys(Chunky& chunky, const AnimStream<V>* pStream) {
    const std::span<const AnimKey<V>> keys = pStream ? pStream->GetKeys() : std::span<const AnimKey<V>>();
    Write(chunky, static_cast<uint32_t>(keys.size()));
    if (chunky.GetStream().Write(static_cast<const void*>(keys.data()), static_cast<uint32_t>(keys.size_bytes())) !=
        keys.size_bytes())
        throw std::runtime_error("Unable to write to file!");
}

void WriteInfo(Chunky& chunky, const AnimInterm& anim) {
    chunky.BeginData(s_AnimInfoChunk, s_AnimPartVersion);
    Write(chunky, anim.GetFrameCount());
    Write(chunky, anim.GetDuration());
    chunky.EndChunk();
}

void WriteBone(Chunky& chunky, const AnimInterm& anim, int32_t index) {
    const Anim::BoneStream& bone = anim.GetBone(index);
    const char* name = bone.name.GetTextOrEmpty();
    dbAssert(name[0] != '\0');
    chunky.BeginData(s_BoneAnimChunk, s_AnimPartVersion, name);
    WriteKeys(chunky, anim.GetMatrixStream(index));
    Write(chunky, static_cast<uint8_t>(bone.isAnimated));
    chunky.EndChunk();
}

void WriteControl(Chunky& chunky, const Anim::ControlStream& control) {
    chunky.BeginData(s_ControlAnimChunk, s_AnimPartVersion, control.name.GetText());
    Write(chunky, control.ref.type);
    Write(chunky, control.ref.property);
    Write(chunky, control.ref.channel);
    WriteKeys(chunky, control.pValues.get());
    chunky.EndChunk();
}

void WriteCamera(Chunky& chunky, const Anim::CameraStream& camera) {
    chunky.BeginData(s_CameraAnimChunk, s_AnimPartVersion, camera.name.GetText());
    WriteKeys(chunky, camera.pPosition.get());
    WriteKeys(chunky, camera.pRotation.get());
    chunky.EndChunk();
}

// Reading

// The data chunk that has been entered. Keys go from the stream to where they stay.
class PartReader {
public:
    PartReader(Chunky& chunky, std::string what) : m_Chunky(chunky), m_What(std::move(what)) {}

    template <StreamScalar T>
    T Read(const char* pField) {
        T value{};
        if (m_Chunky.GetRemaining() < sizeof(value) || !m_Chunky.GetStream().ReadValue(value))
            Fail(std::string(pField) + " goes beyond its chunk");
        return value;
    }

    // Null for no keys.
    template <class V>
    std::unique_ptr<AnimStream<V>> ReadKeys(const std::string& field) {
        using Stream = AnimStream<V>;
        const auto count = Read<uint32_t>((field + " count").c_str());
        if (count > m_Chunky.GetRemaining() / sizeof(AnimKey<V>))
            Fail(field + " count " + std::to_string(count) + " exceeds its chunk");
        if (count > Stream::MaxKeyCount)
            Fail(field + " count " + std::to_string(count) + " exceeds " + std::to_string(Stream::MaxKeyCount));
        if (count == 0)
            return nullptr;
        auto pStream = std::make_unique<Stream>();
        const std::span<AnimKey<V>> keys = pStream->SetKeyCount(count);
        const auto size = static_cast<uint32_t>(keys.size_bytes());
        if (m_Chunky.GetStream().Read(static_cast<void*>(keys.data()), size) != size)
            Fail(field + " is cut off");
        for (size_t i = 1; i < keys.size(); ++i)
            if (!(keys[i - 1].time <= keys[i].time))
                Fail(field + ' ' + std::to_string(i) + " is earlier than the one before it");
        return pStream;
    }

    [[noreturn]] void Fail(const std::string& fault) const {
        throw Chunky::Exception(ChunkyError_BadChunk, m_What + ": " + fault);
    }

private:
    Chunky& m_Chunky;
    std::string m_What;
};

// One pass over an animation. Its kinds say where a bone belongs.
class AnimReader {
public:
    explicit AnimReader(Chunky& chunky) : m_Chunky(chunky), m_pAnim(std::make_unique<AnimInterm>()) {}
    virtual ~AnimReader() = default;
    AnimReader(const AnimReader&) = delete;
    AnimReader& operator=(const AnimReader&) = delete;

    std::unique_ptr<AnimInterm> Read() {
        m_Name = m_Chunky.EnterFolder(s_AnimChunk, s_AnimVersion).name;
        m_pAnim->SetName(m_Name.GetText());
        m_Chunky.EnterFolder(s_AnimDataChunk, s_AnimPartVersion);
        ReadInfo();
        Begin();
        for (ChunkInfo child; m_Chunky.NextChunk(child);)
            if (child.kind == ChunkKind_Data)
                ReadPart(child);
        m_Chunky.EndChunk();
        m_Chunky.EndChunk();
        return std::move(m_pAnim);
    }

protected:
    virtual void Begin() {}
    // The bone's index; InvalidIndex leaves its stream out.
    virtual int32_t PlaceBone(const char* pName) = 0;

    AnimInterm& GetAnim() { return *m_pAnim; }

private:
    std::string Describe(const char* pPart, const ChunkInfo& chunk) const {
        return std::string("animation '") + m_Name.GetText() + "', " + pPart + " '" + chunk.name.GetText() + '\'';
    }

    void ReadInfo() {
        EnterData(m_Chunky, s_AnimInfoChunk, s_AnimPartVersion, s_AnimPartVersion);
        PartReader reader(m_Chunky, std::string("animation '") + m_Name.GetText() + '\'');
        const auto frameCount = reader.Read<int32_t>("frame count");
        const auto duration = reader.Read<float>("duration");
        if (frameCount <= 0)
            reader.Fail("frame count " + std::to_string(frameCount) + " isn't above 0");
        if (!(duration > 0.0f))
            reader.Fail("duration " + std::to_string(duration) + " isn't above 0");
        m_pAnim->SetFrameCount(frameCount);
        m_pAnim->SetDuration(duration);
        m_Chunky.EndChunk();
    }

    void ReadPart(const ChunkInfo& child) {
        if (child.id == s_BoneAnimChunk)
            ReadBone(child);
        else if (child.id == s_ControlAnimChunk)
            ReadControl();
        else if (child.id == s_CameraAnimChunk)
            ReadCamera();
    }

    void ReadBone(const ChunkInfo& child) {
        PartReader reader(m_Chunky, Describe("bone", child));
        if (child.name.GetView().empty())
            reader.Fail("name is empty");
        const int32_t index = PlaceBone(child.name.GetText());
        if (index == Anim::InvalidIndex)
            return;
        EnterData(m_Chunky, s_BoneAnimChunk, s_AnimPartVersion, s_AnimPartVersion);
        m_pAnim->SetMatrixStream(index, reader.ReadKeys<glm::mat4x3>("key"));
        m_pAnim->SetBoneAnimated(index, reader.Read<uint8_t>("animated mark") != 0);
        m_Chunky.EndChunk();
    }

    void ReadControl() {
        const ChunkInfo info = EnterData(m_Chunky, s_ControlAnimChunk, s_AnimPartVersion, s_AnimPartVersion);
        PartReader reader(m_Chunky, Describe("control", info));
        ControlRef ref;
        ref.type = reader.Read<int32_t>("target kind");
        ref.property = reader.Read<int32_t>("parameter");
        ref.channel = reader.Read<int32_t>("channel");
        const int32_t index = m_pAnim->AddControl(Name(info.name.GetText()), ref);
        m_pAnim->SetControlStream(index, reader.ReadKeys<float>("key"));
        m_Chunky.EndChunk();
    }

    void ReadCamera() {
        const ChunkInfo info = EnterData(m_Chunky, s_CameraAnimChunk, s_AnimPartVersion, s_AnimPartVersion);
        PartReader reader(m_Chunky, Describe("camera", info));
        const int32_t index = m_pAnim->AddCamera(Name(info.name.GetText()));
        std::unique_ptr<Vec3Stream> pPosition = reader.ReadKeys<glm::vec3>("position key");
        m_pAnim->SetCameraStreams(index, std::move(pPosition), reader.ReadKeys<glm::quat>("rotation key"));
        m_Chunky.EndChunk();
    }

    Chunky& m_Chunky;
    std::unique_ptr<AnimInterm> m_pAnim;
    RefCountString m_Name;
};

class PlainReader : public AnimReader {
public:
    using AnimReader::AnimReader;

private:
    int32_t PlaceBone(const char* pName) override {
        const auto index = static_cast<int32_t>(GetAnim().GetBoneCount());
        GetAnim().SetBoneCount(GetAnim().GetBoneCount() + 1);
        GetAnim().SetBoneName(index, Name(pName));
        return index;
    }
};

class ModelReader : public AnimReader {
public:
    ModelReader(Chunky& chunky, const RenderModel& model) : AnimReader(chunky), m_pSkeleton(model.GetSkeleton()) {}

private:
    void Begin() override {
        const uint32_t boneCount = m_pSkeleton ? m_pSkeleton->GetBoneCount() : 0;
        GetAnim().SetBoneCount(boneCount);
        for (uint32_t i = 0; i < boneCount; ++i) {
            const auto index = static_cast<int32_t>(i);
            GetAnim().SetBoneName(index, m_pSkeleton->GetBone(index).GetName());
        }
    }

    int32_t PlaceBone(const char* pName) override {
        if (!m_pSkeleton)
            throw std::runtime_error("Trying to load bone stream, but render model doesn't have a skeleton.  Make sure "
                                     "you aren't trying to merge an animation with a ref file that doesn't have a "
                                     "skeleton");
        // A name that was never made is no bone's.
        Name streamName;
        const int32_t index = Name::Find(pName, streamName) ? GetAnim().FindBone(streamName) : Anim::InvalidIndex;
        if (index == Anim::InvalidIndex)
            dbWarningf("Unable to find bone %s in skeleton, ignoring it!", pName);
        return index;
    }

    const Skeleton* m_pSkeleton; // null without one
};

} // namespace

void WriteAnim(Chunky& chunky, const AnimInterm& anim) {
    chunky.BeginFolder(s_AnimChunk, s_AnimVersion, anim.GetName());
    chunky.BeginFolder(s_AnimDataChunk, s_AnimPartVersion, anim.GetName());
    WriteInfo(chunky, anim);
    for (uint32_t i = 0; i < anim.GetBoneCount(); ++i)
        WriteBone(chunky, anim, static_cast<int32_t>(i));
    for (uint32_t i = 0; i < anim.GetControlCount(); ++i)
        WriteControl(chunky, anim.GetControl(static_cast<int32_t>(i)));
    for (uint32_t i = 0; i < anim.GetCameraCount(); ++i)
        WriteCamera(chunky, anim.GetCamera(static_cast<int32_t>(i)));
    chunky.EndChunk();
    chunky.EndChunk();
}

std::unique_ptr<AnimInterm> ReadAnim(Chunky& chunky) { return PlainReader(chunky).Read(); }

std::unique_ptr<AnimInterm> ReadAnimOf(Chunky& chunky, const RenderModel& model) {
    return ModelReader(chunky, model).Read();
}

} // namespace ra::intermediate
