#pragma once

#include "Host/Scene/Transform.h"
#include "Host/Sdk/Types.h"

#include <cstdint>
#include <vector>

namespace scene {

class Controller;
class Node;
class Scene;

// The world transformations of all nodes of a scene. Nodes that never move are worked out once. The others are worked
// out for a whole tick at a time, parents before children, when the first of them is asked for; the last ticks are
// kept. So the nodes are best asked frame by frame.
class Evaluator {
public:
    // The frames that are kept: few, so that they stay in the processor's cache. Node by node through a longer run,
    // every frame is worked out again for every node.
    static constexpr int FramesKept = 4;

    // Everything is to be worked out again: a node was added, or one has got another local transformation.
    void Invalidate() { m_Valid = false; }

    // Good until the next call. A node outside the tree stands at the origin.
    const Affine& GetWorld(Scene& scene, const Node& node, TimeValue t);

    // How many passes over the moving nodes there have been; for tests, and to see progress.
    uint64_t GetPassCount() const { return m_PassCount; }

private:
    struct Moving {
        const Controller* pController;
        const Affine* pStill; // the transformation of a parent that stands still; otherwise
        int32_t parent;       // the parent's place among the moving ones
    };
    struct Tick {
        TimeValue t = 0;
        bool filled = false;
        std::vector<Affine> worlds; // by place among the moving nodes
    };

    void Prepare(Node& root);
    void PlaceNode(Node& node);
    void FillTick(Tick& tick, TimeValue t);
    // The one place that a time can have.
    Tick& GetTick(TimeValue t);

    bool m_Valid = false;
    int m_TicksPerFrame = 1;
    std::vector<Moving> m_Moving; // parents before children
    std::vector<Tick> m_Ticks;    // a time has one place, by its frame
    uint64_t m_PassCount = 0;
};

} // namespace scene
