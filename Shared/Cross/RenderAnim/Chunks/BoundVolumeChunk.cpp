#include "Shared/Cross/RenderAnim/Chunks/BoundVolumeChunk.h"

// "BVOL", data, version 2, of a mesh group in final files version 1, which holds the same:
//   uint8     valid
//   when valid:
//   vec3      centre
//   vec3      half extents
//   9 floats  rotation, the three axes as rows

namespace ra {

void WriteBox(PayloadWriter& writer, const OrientedBox& box) {
    writer.WriteVec3(box.centre);
    writer.WriteVec3(box.halfExtents);
    for (int row = 0; row < 3; ++row)
        writer.WriteVec3(box.rotation[row]);
}

OrientedBox ReadBox(PayloadReader& reader) {
    OrientedBox box;
    box.centre = reader.ReadVec3("box centre");
    box.halfExtents = reader.ReadVec3("box half extents");
    for (int row = 0; row < 3; ++row)
        box.rotation[row] = reader.ReadVec3("box rotation");
    return box;
}

void WriteBoundVolume(Chunky& chunky, PayloadWriter& writer, const BoundVolume& volume, uint32_t version) {
    writer.Write<uint8_t>(volume.IsValid() ? 1 : 0);
    if (volume.IsValid())
        WriteBox(writer, volume.GetBox());
    writer.WriteChunk(chunky, s_BoundVolumeChunk, version);
}

BoundVolume ReadBoundVolume(Chunky& chunky, const char* pKind, const char* pName) {
    EnterData(chunky, s_BoundVolumeChunk, s_FinalGroupBoundVersion, s_BoundVolumeVersion);
    PayloadReader reader(chunky, pKind, pName);
    BoundVolume volume;
    if (reader.Read<uint8_t>("bound volume") != 0)
        volume.SetBox(ReadBox(reader));
    chunky.EndChunk();
    return volume;
}

} // namespace ra
