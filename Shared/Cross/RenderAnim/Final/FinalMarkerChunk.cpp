#include "Shared/Cross/RenderAnim/Final/FinalMarkerChunk.h"

#include "Shared/Cross/RenderAnim/Chunks/MarkerChunk.h"

// "MARK", data, version 1, without a name:
//   uint32   markers; for each:
//     string   name
//     string   parent bone's name, empty for none
//     mat43    transform
//
// "CAMS", data, version 1, without a name:
//   uint32   cameras; for each:
//     string   name
//     vec3     position
//     quat     rotation
//     float    field of view
//     float    near clip
//     float    far clip
//     vec3     target

namespace ra {

namespace {

constexpr uint32_t s_MarkersVersion = 1;
constexpr uint32_t s_CamerasVersion = 1;
constexpr size_t s_MarkerMinBytes = 56; // two empty names and a matrix
constexpr size_t s_CameraMinBytes = 56; // an empty name and 13 floats

} // namespace

void WriteFinalMarkers(Chunky& chunky, PayloadWriter& writer, std::span<const Marker> markers) {
    writer.Write(static_cast<uint32_t>(markers.size()));
    for (const Marker& marker : markers) {
        writer.WriteString(marker.name.GetText());
        WriteMarkerFields(writer, marker);
    }
    writer.WriteChunk(chunky, s_MarkerChunk, s_MarkersVersion);
}

std::vector<Marker> ReadFinalMarkers(Chunky& chunky) {
    EnterData(chunky, s_MarkerChunk, s_MarkersVersion, s_MarkersVersion);
    PayloadReader reader(chunky, "markers", "");
    std::vector<Marker> markers(reader.ReadCount(s_MarkerMinBytes, "marker count"));
    for (Marker& marker : markers) {
        marker.name = Name(reader.ReadString("marker name").c_str());
        ReadMarkerFields(reader, marker);
    }
    chunky.EndChunk();
    return markers;
}

void WriteFinalCameras(Chunky& chunky, PayloadWriter& writer, std::span<const CameraDef> cameras) {
    writer.Write(static_cast<uint32_t>(cameras.size()));
    for (const CameraDef& camera : cameras) {
        writer.WriteString(camera.name.GetText());
        WriteCameraFields(writer, camera);
    }
    writer.WriteChunk(chunky, s_CamerasChunk, s_CamerasVersion);
}

std::vector<CameraDef> ReadFinalCameras(Chunky& chunky) {
    EnterData(chunky, s_CamerasChunk, s_CamerasVersion, s_CamerasVersion);
    PayloadReader reader(chunky, "cameras", "");
    std::vector<CameraDef> cameras(reader.ReadCount(s_CameraMinBytes, "camera count"));
    for (CameraDef& camera : cameras) {
        camera.name = Name(reader.ReadString("camera name").c_str());
        ReadCameraFields(reader, camera, true);
    }
    chunky.EndChunk();
    return cameras;
}

} // namespace ra
