#pragma once

#include "Host/Gltf/KeyTrack.h"
#include "Host/Gltf/Messages.h"
#include "Host/Gltf/NodeTree.h"
#include "Host/Gltf/Transforms.h"
#include "Host/Scene/Controller.h"
#include "Host/Sdk/Types.h"

#include <map>
#include <memory>
#include <optional>

namespace gltf {

// What an animation moves of one node.
struct NodeTracks {
    std::optional<KeyTrack> translation;
    std::optional<KeyTrack> rotation;
    std::optional<KeyTrack> scale;
};

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

// A node that an animation moves.
class KeyController : public scene::Controller {
public:
    KeyController(Class_ID classId, std::shared_ptr<const BufferStore> pBuffers, const NodeTransform& rest,
                  const NodeTracks& tracks, AxesChange change);

    scene::Affine Evaluate(TimeValue t) const override;
    bool IsAnimated() const override { return true; }

private:
    std::shared_ptr<const BufferStore> m_pBuffers; // what the samplers look into
    NodeTransform m_Rest;
    // They remember where they were, which shows in nothing but the time that they take.
    mutable std::optional<KeySampler> m_Translation;
    mutable std::optional<KeySampler> m_Rotation;
    mutable std::optional<KeySampler> m_Scale;
    AxesChange m_Change;
};

} // namespace gltf
