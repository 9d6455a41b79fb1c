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

constexpr uint32_t s_ItemListVersion = 1;
constexpr size_t s_ItemMinBytes = 56; // two empty names and a matrix, or one and 13 floats

// A count, and the name and what `writeFields` writes of each item.
template <class Item, class WriteFields>
void WriteItems(Chunky& chunky, PayloadWriter& writer, uint32_t id, std::span<const Item> items,
                WriteFields writeFields) {
    writer.Write(static_cast<uint32_t>(items.size()));
    for (const Item& item : items) {
        writer.WriteString(item.name.GetText());
        writeFields(writer, item);
    }
    writer.WriteChunk(chunky, id, s_ItemListVersion);
}

// The same back. The last three are for messages.
template <class Item, class ReadFields>
std::vector<Item> ReadItems(Chunky& chunky, uint32_t id, ReadFields readFields, const char* pKind,
                            const char* pCountField, const char* pNameField) {
    EnterData(chunky, id, s_ItemListVersion, s_ItemListVersion);
    PayloadReader reader(chunky, pKind, "");
    std::vector<Item> items(reader.ReadCount(s_ItemMinBytes, pCountField));
    for (Item& item : items) {
        item.name = Name(reader.ReadString(pNameField).c_str());
        readFields(reader, item);
    }
    chunky.EndChunk();
    return items;
}

} // namespace

void WriteFinalMarkers(Chunky& chunky, PayloadWriter& writer, std::span<const Marker> markers) {
    WriteItems(chunky, writer, s_MarkerChunk, markers, WriteMarkerFields);
}

std::vector<Marker> ReadFinalMarkers(Chunky& chunky) {
    return ReadItems<Marker>(chunky, s_MarkerChunk, ReadMarkerFields, "markers", "marker count", "marker name");
}

void WriteFinalCameras(Chunky& chunky, PayloadWriter& writer, std::span<const CameraDef> cameras) {
    WriteItems(chunky, writer, s_CamerasChunk, cameras, WriteCameraFields);
}

std::vector<CameraDef> ReadFinalCameras(Chunky& chunky) {
    const auto readFields = [](PayloadReader& reader, CameraDef& camera) { ReadCameraFields(reader, camera, true); };
    return ReadItems<CameraDef>(chunky, s_CamerasChunk, readFields, "cameras", "camera count", "camera name");
}

} // namespace ra
