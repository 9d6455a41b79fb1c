#pragma once

#include "Host/Gltf/Messages.h"
#include "Host/Gltf/Names.h"
#include "Host/Gltf/SceneFile.h"

#include <cstdint>
#include <string>
#include <vector>

namespace gltf {

// A node of the file, and what the rest of the file makes of it.
struct NodeRecord {
    const Json* pJson = nullptr;
    std::string name = {}; // unique
    int32_t parent = -1;
    std::vector<uint32_t> children = {};
    int32_t mesh = -1;
    int32_t skin = -1;
    int32_t camera = -1;
    int32_t light = -1;
    bool isJoint = false; // some skin lists it
    bool isMoved = false; // some animation moves it or an ancestor
    bool isLoaded = false;
};

// The nodes of a file.
struct NodeTree {
    std::vector<NodeRecord> nodes;
    // The nodes to load, parents before their children, children in the file's order.
    std::vector<uint32_t> order;
    // The scene that is loaded; null when the file has none.
    const Json* pScene = nullptr;

    Place GetPlace(size_t node) const { return {.kind = "node", .index = node, .name = nodes[node].name}; }
};

// Reads nodes, skins and which nodes the animations move, checks that the nodes form a tree, and chooses those that are
// loaded: the file's scene, otherwise the first, otherwise all; and the joints of its skins with what they hang on,
// wherever they are. Names are made unique in `names`.
NodeTree ReadNodeTree(const SceneFile& file, UniqueNames& names);

// The light of KHR_lights_punctual with that index.
const Json& GetLight(const SceneFile& file, int32_t index);

} // namespace gltf
