#pragma once

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/RenderAnim/Chunks/PayloadReader.h"
#include "Shared/Cross/RenderAnim/Chunks/PayloadWriter.h"
#include "Shared/Cross/RenderAnim/Marker.h"

namespace ra {

// The fields behind the name, which all forms of files have in common. A parent's index is left for the model to find.
void WriteMarkerFields(PayloadWriter& writer, const Marker& marker);
void ReadMarkerFields(PayloadReader& reader, Marker& marker);
void WriteCameraFields(PayloadWriter& writer, const CameraDef& camera);
void ReadCameraFields(PayloadReader& reader, CameraDef& camera, bool hasTarget);

constexpr uint32_t s_MarkerChunk = FourCC("MARK");
constexpr uint32_t s_CameraChunk = FourCC("CMRA");

void WriteMarker(Chunky& chunky, PayloadWriter& writer, const Marker& marker);
// The next chunk is a "MARK". The parent's index is left for the model to find.
Marker ReadMarker(Chunky& chunky);

void WriteCamera(Chunky& chunky, PayloadWriter& writer, const CameraDef& camera);
// The next chunk is a "CMRA" of a model.
CameraDef ReadCamera(Chunky& chunky);

} // namespace ra
