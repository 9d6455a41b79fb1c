#pragma once

#include <span>
#include <vector>

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/RenderAnim/Chunks/PayloadWriter.h"
#include "Shared/Cross/RenderAnim/Marker.h"

namespace ra {

constexpr uint32_t s_CamerasChunk = FourCC("CAMS");

// All markers of a model in one "MARK", all cameras in one "CAMS".

void WriteFinalMarkers(Chunky& chunky, PayloadWriter& writer, std::span<const Marker> markers);
// The next chunk is such a "MARK". The parents' indices are left for the model to find.
std::vector<Marker> ReadFinalMarkers(Chunky& chunky);

void WriteFinalCameras(Chunky& chunky, PayloadWriter& writer, std::span<const CameraDef> cameras);
// The next chunk is a "CAMS".
std::vector<CameraDef> ReadFinalCameras(Chunky& chunky);

} // namespace ra
