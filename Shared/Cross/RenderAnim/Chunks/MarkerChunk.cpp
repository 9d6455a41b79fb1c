#include "Shared/Cross/RenderAnim/Chunks/MarkerChunk.h"

#include <string>

// "MARK", data, version 1, name of the marker:
//   string  parent bone's name, empty for none
//   mat43   transform
//
// "CMRA" in a model, data, version 2, name of the camera:
//   vec3    position
//   quat    rotation
//   float   field of view
//   float   near clip
//   float   far clip
//   vec3    target; not in version 1

namespace ra {

namespace {

constexpr uint32_t s_MarkerVersion = 1;
constexpr uint32_t s_CameraVersion = 2;
constexpr uint32_t s_OldestCameraVersion = 1;

} // namespace

void WriteMarkerFields(PayloadWriter& writer, const Marker& marker) {
    writer.WriteString(marker.m_parentName.GetText());
    writer.WriteMat43(marker.m_transform);
}

void ReadMarkerFields(PayloadReader& reader, Marker& marker) {
    const std::string parentName = reader.ReadString("parent name");
    if (!parentName.empty())
        marker.m_parentName = Name(parentName.c_str());
    marker.m_transform = reader.ReadMat43("transform");
}

void WriteCameraFields(PayloadWriter& writer, const CameraDef& camera) {
    writer.WriteVec3(camera.position);
    writer.WriteQuat(camera.rotation);
    writer.Write(camera.fieldOfView);
    writer.Write(camera.nearClip);
    writer.Write(camera.farClip);
    writer.WriteVec3(camera.target);
}

void ReadCameraFields(PayloadReader& reader, CameraDef& camera, bool hasTarget) {
    camera.position = reader.ReadVec3("position");
    camera.rotation = reader.ReadQuat("rotation");
    camera.fieldOfView = reader.Read<float>("field of view");
    camera.nearClip = reader.Read<float>("near clip");
    camera.farClip = reader.Read<float>("far clip");
    if (hasTarget)
        camera.target = reader.ReadVec3("target");
}

void WriteMarker(Chunky& chunky, PayloadWriter& writer, const Marker& marker) {
    WriteMarkerFields(writer, marker);
    writer.WriteChunk(chunky, s_MarkerChunk, s_MarkerVersion, marker.name.GetText());
}

Marker ReadMarker(Chunky& chunky) {
    const ChunkInfo info = EnterData(chunky, s_MarkerChunk, s_MarkerVersion, s_MarkerVersion);
    PayloadReader reader(chunky, "marker", info.name.GetText());
    Marker marker;
    marker.name = Name(info.name.GetText());
    ReadMarkerFields(reader, marker);
    chunky.EndChunk();
    return marker;
}

void WriteCamera(Chunky& chunky, PayloadWriter& writer, const CameraDef& camera) {
    WriteCameraFields(writer, camera);
    writer.WriteChunk(chunky, s_CameraChunk, s_CameraVersion, camera.name.GetText());
}

CameraDef ReadCamera(Chunky& chunky) {
    const ChunkInfo info = EnterData(chunky, s_CameraChunk, s_OldestCameraVersion, s_CameraVersion);
    PayloadReader reader(chunky, "camera", info.name.GetText());
    CameraDef camera;
    camera.name = Name(info.name.GetText());
    ReadCameraFields(reader, camera, info.version >= 2);
    chunky.EndChunk();
    return camera;
}

} // namespace ra
