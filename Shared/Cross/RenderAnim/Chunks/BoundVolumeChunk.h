#pragma once

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/RenderAnim/BoundVolume.h"
#include "Shared/Cross/RenderAnim/Chunks/PayloadReader.h"
#include "Shared/Cross/RenderAnim/Chunks/PayloadWriter.h"

namespace ra {

constexpr uint32_t s_BoundVolumeChunk = FourCC("BVOL");
constexpr uint32_t s_BoundVolumeVersion = 2;
constexpr uint32_t s_FinalGroupBoundVersion = 1; // of a mesh group in final files

// The box alone, 60 bytes: centre, half extents, and the three axes as rows.
void WriteBox(PayloadWriter& writer, const OrientedBox& box);
OrientedBox ReadBox(PayloadReader& reader);

void WriteBoundVolume(Chunky& chunky, PayloadWriter& writer, const BoundVolume& volume,
                      uint32_t version = s_BoundVolumeVersion);
// The next chunk is this one, of either version. `pKind` and `pName` as for PayloadReader.
BoundVolume ReadBoundVolume(Chunky& chunky, const char* pKind, const char* pName);

} // namespace ra
