#include "Shared/Cross/RenderAnim/Chunks/MeshGroupChunk.h"

#include "Shared/Cross/RenderAnim/Chunks/BoundVolumeChunk.h"
#include "Shared/Cross/RenderAnim/Chunks/PayloadReader.h"
#include "Shared/Cross/RenderAnim/MeshGroup.h"

// "MSGR", folder, version 1: "MSLC" for each mesh of the model's own, in the order of the group; "DATA"; "BVOL".
//
// "DATA", data, version 1:
//   uint32   meshes; for each:
//     string   name
//     string   name of the model that it belongs to, empty for a mesh of this one
//     int32    parent bone, -1 for none

namespace ra {

namespace {

constexpr uint32_t s_GroupDataChunk = FourCC("DATA");
constexpr uint32_t s_MeshGroupVersion = 1;
constexpr uint32_t s_GroupDataVersion = 1;
constexpr size_t s_EntryMinBytes = 12; // two empty names and a bone
constexpr const char* s_GroupKind = "mesh group";

std::vector<MeshEntryRecord> ReadEntries(Chunky& chunky) {
    EnterData(chunky, s_GroupDataChunk, s_GroupDataVersion, s_GroupDataVersion);
    PayloadReader reader(chunky, s_GroupKind, "");
    std::vector<MeshEntryRecord> entries(reader.ReadCount(s_EntryMinBytes, "mesh count"));
    for (MeshEntryRecord& entry : entries) {
        entry.name = reader.ReadString("mesh name");
        entry.xrefModel = reader.ReadString("cross-reference name");
        entry.parentBone = reader.Read<int32_t>("parent bone");
    }
    chunky.EndChunk();
    return entries;
}

} // namespace

void WriteMeshGroup(Chunky& chunky, PayloadWriter& writer, const MeshGroup& group, MeshForm form) {
    chunky.BeginFolder(s_MeshGroupChunk, s_MeshGroupVersion);
    for (uint32_t i = 0; i < group.GetMeshCount(); ++i)
        if (group.IsLocal(i) && group.GetMesh(i).IsValid())
            WriteMesh(chunky, writer, *group.GetMesh(i).GetData(), form);
    writer.Write(group.GetMeshCount());
    for (uint32_t i = 0; i < group.GetMeshCount(); ++i) {
        writer.WriteString(group.GetMeshName(i).GetText());
        writer.WriteString(group.GetXRefName(i).GetText());
        writer.Write(group.GetParentBone(i));
    }
    writer.WriteChunk(chunky, s_GroupDataChunk, s_GroupDataVersion);
    WriteBoundVolume(chunky, writer, group.GetBoundVolume(),
                     form == MeshForm::Final ? s_FinalGroupBoundVersion : s_BoundVolumeVersion);
    chunky.EndChunk();
}

void ReadMeshGroup(Chunky& chunky, MeshGroupSink& sink, MeshForm form) {
    chunky.EnterFolder(s_MeshGroupChunk, s_MeshGroupVersion);
    bool hasData = false;
    for (ChunkInfo child; chunky.NextChunk(child);)
        if (child.kind == ChunkKind_Folder && child.id == s_MeshChunk)
            sink.AddMesh(ReadMeshRecord(chunky, form));
        else if (child.kind == ChunkKind_Data && child.id == s_GroupDataChunk && !hasData) {
            sink.SetEntries(ReadEntries(chunky));
            hasData = true;
        } else if (child.kind == ChunkKind_Data && child.id == s_BoundVolumeChunk)
            sink.SetBoundVolume(ReadBoundVolume(chunky, s_GroupKind, ""));
    if (!hasData)
        throw Chunky::Exception(ChunkyError_MissingChunk, "Missing Chunk Type! (table of the mesh group)");
    chunky.EndChunk();
}

} // namespace ra
