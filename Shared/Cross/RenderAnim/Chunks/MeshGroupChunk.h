#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/RenderAnim/BoundVolume.h"
#include "Shared/Cross/RenderAnim/Chunks/MeshChunk.h"
#include "Shared/Cross/RenderAnim/Chunks/PayloadWriter.h"

namespace ra {

class MeshGroup;

constexpr uint32_t s_MeshGroupChunk = FourCC("MSGR");

struct MeshEntryRecord {
    std::string name;
    std::string xrefModel; // empty for a mesh of this file
    int32_t parentBone = -1;
};

// Is handed the parts of a mesh group as they are read, so that only one mesh at a time is held in the file's form.
class MeshGroupSink {
public:
    virtual ~MeshGroupSink() = default;
    virtual void AddMesh(MeshRecord mesh) = 0;
    // Once; after all the meshes that it may name.
    virtual void SetEntries(std::vector<MeshEntryRecord> entries) = 0;
    virtual void SetBoundVolume(const BoundVolume& volume) = 0;
};

void WriteMeshGroup(Chunky& chunky, PayloadWriter& writer, const MeshGroup& group, MeshForm form = MeshForm::Generic);
// The next chunk is a "MSGR" of that form.
void ReadMeshGroup(Chunky& chunky, MeshGroupSink& sink, MeshForm form = MeshForm::Generic);

// Reads the next chunk and builds the group with all its meshes. `pModelName` is for messages. A mesh of another model
// that can't be found is logged; the first mesh of the missing model stands in for it, or none.
std::unique_ptr<MeshGroup> BuildMeshGroup(Chunky& chunky, const char* pModelName, MeshForm form = MeshForm::Generic);

} // namespace ra
