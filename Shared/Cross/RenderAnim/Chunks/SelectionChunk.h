#pragma once

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/RenderAnim/Chunks/PayloadWriter.h"

struct SelectionInfo;

namespace ra {

constexpr uint32_t s_SelectionChunk = FourCC("SEUI");

void WriteSelection(Chunky& chunky, PayloadWriter& writer, const SelectionInfo& info);
// The next chunk is a "SEUI".
SelectionInfo ReadSelection(Chunky& chunky);

} // namespace ra
