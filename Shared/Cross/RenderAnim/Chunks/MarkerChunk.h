#pragma once

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/RenderAnim/Chunks/PayloadWriter.h"
#include "Shared/Cross/RenderAnim/Marker.h"

namespace ra {

constexpr uint32_t s_MarkerChunk = FourCC("MARK");
constexpr uint32_t s_CameraChunk = FourCC("CMRA");

void WriteMarker(Chunky& chunky, PayloadWriter& writer, const Marker& marker);
// The next chunk is a "MARK". The parent's index is left for the model to find.
Marker ReadMarker(Chunky& chunky);

void WriteCamera(Chunky& chunky, PayloadWriter& writer, const CameraDef& camera);
// The next chunk is a "CMRA" of a model.
CameraDef ReadCamera(Chunky& chunky);

} // namespace ra
