#pragma once

#include "Host/Scene/Transform.h"
#include "Host/Sdk/Types.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace scene {

class Controller;
class Node;
class Scene;

// The world transformations of all nodes of a scene. Nodes that never move are worked out once. The others are worked
// out together, parents before children, when the first of them is asked for a time. Who asks frame by frame is
// expected to go on: then the next few frames of the scene's range are worked out with it, node by node, so that a
// node's keys are read while they are at hand. So the nodes are best asked frame by frame.
class Evaluator {
public:
    // The frames that are worked out at once, and kept: few, so that they stay in the processor's cache. Node by node
    // through more of them, every frame is worked out again for every node.
    static constexpr int FramesInRun = 8;

    // Everything is to be worked out again: a node was added, or one has got another local transformation.
    void Invalidate() { m_Valid = false; }

    // Good until the next call. A node outside the tree stands at the origin.
    const Affine& GetWorld(Scene& scene, const Node& node, TimeValue t);
    // The same as modules get it.
    Matrix3 GetMatrix(Scene& scene, const Node& node, TimeValue t);

    // For how many times the moving nodes have been worked out; for tests, and to see progress.
    uint64_t GetTimeCount() const { return m_TimeCount; }

private:
    struct Moving {
        const Controller* pController;
        const Affine* pStill; // the transformation of a parent that stands still; otherwise
        int32_t parent;       // the parent's place among the moving ones
    };

    void Prepare(Node& root);
    void PlaceNode(Node& node);
    // Has the node's transformation at that time ready; false for a node that never moves.
    bool MoveTo(Scene& scene, const Node& node, TimeValue t);
    void FindTime(Scene& scene, TimeValue t);
    void FillRun(Scene& scene, TimeValue t);
    size_t ChooseRunLength(const Scene& scene, TimeValue t) const;
    void EvaluateNodes(std::span<const TimeValue> times);

    bool m_Valid = false;
    TimeValue m_TicksPerFrame = 1;
    std::vector<Moving> m_Moving; // parents before children
    // The run: its times, and for each of the moving nodes the transformations at them.
    std::array<TimeValue, FramesInRun> m_Times = {};
    size_t m_RunLength = 0;
    size_t m_Last = 0;               // which of the times was asked for last
    std::vector<Affine> m_Worlds;    // node by node
    std::vector<Matrix3> m_Matrices; // the same for modules, time by time, which is how they ask
    uint64_t m_TimeCount = 0;
};

} // namespace scene
