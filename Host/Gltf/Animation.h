#pragma once

#include "Host/Gltf/Accessor.h"
#include "Host/Gltf/Messages.h"
#include "Host/Gltf/NodeTree.h"
#include "Host/Gltf/Transforms.h"
#include "Host/Scene/Controller.h"
#include "Host/Sdk/Types.h"

#include <map>
#include <memory>
#include <optional>

namespace gltf {

enum class Interpolation { Linear, Step, CubicSpline };

// The keys of one channel, in the file's buffers.
struct KeyTrack {
    AccessorView times; // seconds, never descending
    AccessorView values;
    Interpolation interpolation = Interpolation::Linear;

    // The value at a time, of `size` components. Before the first key and after the last it stands still. Rotations
    // turn evenly, along the shorter way.
    void Evaluate(double seconds, double* pOut, unsigned size, bool isRotation) const;
};

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
                  const NodeTracks& tracks, AxesChange change)
        : Controller(classId), m_pBuffers(std::move(pBuffers)), m_Rest(rest), m_Tracks(tracks), m_Change(change) {}

    scene::Affine Evaluate(TimeValue t) const override;
    bool IsAnimated() const override { return true; }

private:
    std::shared_ptr<const BufferStore> m_pBuffers; // what the tracks look into
    NodeTransform m_Rest;
    NodeTracks m_Tracks;
    AxesChange m_Change;
};

} // namespace gltf
