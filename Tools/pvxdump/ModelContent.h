#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/RenderAnim/BoundVolume.h"
#include "Shared/Cross/RenderAnim/Chunks/MeshChunk.h"
#include "Shared/Cross/RenderAnim/Chunks/MeshGroupChunk.h"
#include "Shared/Cross/RenderAnim/Chunks/ShaderChunk.h"
#include "Shared/Cross/RenderAnim/Marker.h"
#include "Tools/pvxdump/AnimContent.h"
#include "Tools/pvxdump/TextureContent.h"

// A mesh of a model file, by the group's table.
struct MeshContent {
    ra::MeshEntryRecord entry;
    bool isLocal = true;
    // Of a local mesh, which a table may list twice; an empty one otherwise. Without its vertices and indices unless
    // they were asked for.
    std::shared_ptr<const ra::MeshRecord> pMesh = std::make_shared<const ra::MeshRecord>();
    std::vector<std::array<uint32_t, ra::s_MeshLevelCount>> indexCounts; // by primitive set and level
};

// At the intermediate level the place in the world is stored, otherwise the one in the parent.
struct BoneContent {
    std::string name;
    int32_t parent = -1;
    glm::mat4x3 transform = glm::mat4x3(1.0f);  // in the world; intermediate alone
    glm::vec3 position = glm::vec3(0.0f);       // as it is stored
    glm::quat rotation = glm::quat(1, 0, 0, 0); // in the parent; not intermediate
};

// By id.
using UndecodedChunks = std::map<uint32_t, uint32_t>;

// What a model file holds, as it stands there: no device, no inventory, and nothing made up for what is missing.
struct ModelContent {
    std::string name;
    uint32_t version = 0;
    DataLevel level = DataLevel::Intermediate; // also of a generic file without bones and animations: they look alike
    std::vector<TextureContent> textures;
    std::vector<ra::ShaderRecord> shaders;
    std::vector<std::string> sharedShaders;
    bool hasSkeleton = false;
    std::vector<BoneContent> bones;
    bool hasMeshGroup = false;
    std::vector<MeshContent> meshes;
    BoundVolume boundVolume; // of the group
    std::vector<Marker> markers;
    std::vector<CameraDef> cameras;
    std::vector<AnimationContent> animations;
    UndecodedChunks undecoded; // what this program doesn't decode
};

// The next chunk is a "QPVX", or the "SHRF" of a shader in a file of its own, which has only textures and shaders.
// With `pFiles` the textures' pictures are written. Throws what the readers of its parts throw.
ModelContent ReadModelContent(Chunky& chunky, bool withVertices, TextureFiles* pFiles);
ModelContent ReadShaderFileContent(Chunky& chunky, TextureFiles* pFiles);
