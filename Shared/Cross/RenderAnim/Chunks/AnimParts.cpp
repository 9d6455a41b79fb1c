#include "Shared/Cross/RenderAnim/Chunks/AnimParts.h"

#include <stdexcept>
#include <utility>

#include "Shared/Cross/RenderAnim/Chunks/PayloadReader.h"

// "CMRA" in an animation, data, version 1, name of the camera:
//   uint32  keys; for each:
//     float   time
//     vec3    position
//   uint32  keys; for each:
//     float   time
//     quat    rotation
//
// A control, "CONS" or "CANM", data, name of the shader or mesh:
//   int32   target kind
//   int32   parameter
//   int32   channel
//   uint32  keys; for each:
//     float   time
//     float   value
//
// Times go from 0 to 1 over the animation and never back. A list of keys in a file is the stream's own memory.

namespace ra {

namespace {

constexpr uint32_t s_CameraAnimVersion = 1;

void WriteBytes(Chunky& chunky, const void* pBytes, size_t size) {
    if (chunky.GetStream().Write(pBytes, static_cast<uint32_t>(size)) != size)
        throw std::runtime_error("Unable to write to file!");
}

} // namespace

template <StreamScalar T>
void WriteAnimField(Chunky& chunky, T value) {
    if (!chunky.GetStream().WriteValue(value))
        throw std::runtime_error("Unable to write to file!");
}

void WriteAnimName(Chunky& chunky, const Name& name) {
    if (!chunky.GetStream().WriteString(name.GetTextOrEmpty()))
        throw std::runtime_error("Unable to write to file!");
}

template void WriteAnimField(Chunky& chunky, uint8_t value);
template void WriteAnimField(Chunky& chunky, uint32_t value);
template void WriteAnimField(Chunky& chunky, int32_t value);
template void WriteAnimField(Chunky& chunky, float value);

template <class V>
void WriteKeys(Chunky& chunky, const AnimStream<V>* pStream) {
    const std::span<const AnimKey<V>> keys = pStream ? pStream->GetKeys() : std::span<const AnimKey<V>>();
    const auto count = static_cast<uint32_t>(keys.size());
    WriteBytes(chunky, &count, sizeof(count));
    WriteBytes(chunky, keys.data(), keys.size_bytes());
}

template void WriteKeys(Chunky& chunky, const FloatStream* pStream);
template void WriteKeys(Chunky& chunky, const Vec3Stream* pStream);
template void WriteKeys(Chunky& chunky, const QuatStream* pStream);
template void WriteKeys(Chunky& chunky, const MatrixStream* pStream);

void WriteAnimInfo(Chunky& chunky, const Anim& anim, uint32_t version) {
    chunky.BeginData(s_AnimInfoChunk, version);
    WriteAnimField(chunky, anim.GetFrameCount());
    WriteAnimField(chunky, anim.GetDuration());
    chunky.EndChunk();
}

void SetAnimLength(Anim& anim, const AnimPartReader& reader, int64_t frameCount, float duration) {
    if (frameCount <= 0)
        reader.Fail("frame count", std::to_string(frameCount) + " isn't above 0");
    if (frameCount > INT32_MAX)
        reader.Fail("frame count", std::to_string(frameCount) + " is above " + std::to_string(INT32_MAX));
    if (!(duration > 0.0f))
        reader.Fail("duration", std::to_string(duration) + " isn't above 0");
    anim.SetFrameCount(static_cast<int32_t>(frameCount));
    anim.SetDuration(duration);
}

void WriteControlAnim(Chunky& chunky, const Anim::ControlStream& control, uint32_t id, uint32_t version) {
    chunky.BeginData(id, version, control.name.GetText());
    WriteAnimField(chunky, control.ref.type);
    WriteAnimField(chunky, control.ref.property);
    WriteAnimField(chunky, control.ref.channel);
    WriteKeys(chunky, control.pValues.get());
    chunky.EndChunk();
}

Anim::ControlStream ReadControlAnim(Chunky& chunky, const char* pAnimName, uint32_t id, uint32_t& version) {
    const ChunkInfo info = EnterData(chunky, id, 1, version);
    version = info.version;
    AnimPartReader reader(chunky, DescribeAnimPart(pAnimName, "control", info.name.GetText()));
    Anim::ControlStream control;
    control.name = Name(info.name.GetText());
    control.ref.type = reader.Read<int32_t>("target kind");
    control.ref.property = reader.Read<int32_t>("parameter");
    control.ref.channel = reader.Read<int32_t>("channel");
    control.pValues = reader.ReadKeys<float>("key");
    chunky.EndChunk();
    return control;
}

void WriteCameraAnim(Chunky& chunky, const Anim::CameraStream& camera) {
    chunky.BeginData(s_CameraAnimChunk, s_CameraAnimVersion, camera.name.GetText());
    WriteKeys(chunky, camera.pPosition.get());
    WriteKeys(chunky, camera.pRotation.get());
    chunky.EndChunk();
}

Anim::CameraStream ReadCameraAnim(Chunky& chunky, const char* pAnimName) {
    const ChunkInfo info = EnterData(chunky, s_CameraAnimChunk, s_CameraAnimVersion, s_CameraAnimVersion);
    AnimPartReader reader(chunky, DescribeAnimPart(pAnimName, "camera", info.name.GetText()));
    Anim::CameraStream camera;
    camera.name = Name(info.name.GetText());
    camera.pPosition = reader.ReadKeys<glm::vec3>("position key");
    camera.pRotation = reader.ReadKeys<glm::quat>("rotation key");
    chunky.EndChunk();
    return camera;
}

std::string DescribeAnimPart(const char* pAnimName, const char* pPart, const char* pPartName) {
    return std::string("animation '") + pAnimName + "', " + pPart + " '" + pPartName + '\'';
}

} // namespace ra
