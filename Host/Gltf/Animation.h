#pragma once

#include "Host/Gltf/KeyController.h"
#include "Host/Gltf/Messages.h"
#include "Host/Gltf/NodeTree.h"
#include "Host/Sdk/Types.h"

#include <map>
#include <optional>

namespace gltf {

// The animation that is the scene's timeline.
struct Clip {
    std::map<uint32_t, NodeTracks> tracks; // by node
    double lastKey = 0.0;                  // seconds: the last key of any channel that has a node
};

// Finds the animation that `options` ask for and reads it; nothing for "none" and for a file without animations. Faults
// for an unknown one.
std::optional<Clip> ReadClip(const SceneFile& file, BufferStore& buffers, const NodeTree& tree,
                             const LoadOptions& options, const Messages& messages);

// The range from 0 to the last key, rounded to the nearest frame, in ticks. Faults when it has more frames than a
// stream of keys can hold.
Interval GetRange(const std::optional<Clip>& clip, int ticksPerFrame);

} // namespace gltf
