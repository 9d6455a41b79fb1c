#pragma once

#include "Host/Gltf/KeyTrack.h"
#include "Host/Gltf/Transforms.h"
#include "Host/Scene/Controller.h"

#include <memory>
#include <optional>

namespace gltf {

// What an animation moves of one node.
struct NodeTracks {
    std::optional<KeyTrack> translation;
    std::optional<KeyTrack> rotation;
    std::optional<KeyTrack> scale;
};

// A node that an animation moves.
class KeyController : public scene::Controller {
public:
    KeyController(Class_ID classId, std::shared_ptr<const BufferStore> pBuffers, const NodeTransform& rest,
                  const NodeTracks& tracks, AxesChange change);

    scene::Affine Evaluate(TimeValue t) const override;
    void EvaluateRun(std::span<const TimeValue> times, scene::Affine* pLocals) const override;
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
