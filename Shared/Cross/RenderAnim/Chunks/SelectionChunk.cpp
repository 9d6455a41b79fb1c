#include "Shared/Cross/RenderAnim/Chunks/SelectionChunk.h"

#include "Shared/Cross/RenderAnim/Chunks/BoundVolumeChunk.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"

// "SEUI", data, version 3:
//   int32     mode
//   2 floats  extent, x and z
//   2 floats  centre, x and z
//   box       as in "BVOL"

namespace ra {

namespace {

constexpr uint32_t s_SelectionVersion = 3;

} // namespace

void WriteSelection(Chunky& chunky, PayloadWriter& writer, const SelectionInfo& info) {
    writer.Write(info.mode);
    writer.Write(info.extentX);
    writer.Write(info.extentZ);
    writer.Write(info.centreX);
    writer.Write(info.centreZ);
    WriteBox(writer, info.box);
    writer.WriteChunk(chunky, s_SelectionChunk, s_SelectionVersion);
}

SelectionInfo ReadSelection(Chunky& chunky) {
    EnterData(chunky, s_SelectionChunk, s_SelectionVersion, s_SelectionVersion);
    PayloadReader reader(chunky, "selection", "");
    SelectionInfo info;
    info.mode = reader.Read<int32_t>("mode");
    info.extentX = reader.Read<float>("extent");
    info.extentZ = reader.Read<float>("extent");
    info.centreX = reader.Read<float>("centre");
    info.centreZ = reader.Read<float>("centre");
    info.box = ReadBox(reader);
    chunky.EndChunk();
    return info;
}

} // namespace ra
