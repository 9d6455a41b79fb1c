#include "Host/Scene/Evaluator.h"

#include "Host/Scene/Scene.h"
#include "Host/Sdk/Core.h"

namespace scene {

namespace {

// What the root stands on.
const Affine s_Origin = IdentityAffine();

} // namespace

const Affine& Evaluator::GetWorld(Scene& scene, const Node& node, TimeValue t) {
    if (!m_Valid)
        Prepare(scene.GetRoot());
    if (node.m_Moving < 0)
        return node.m_World;
    Tick& tick = GetTick(t);
    if (!tick.filled || tick.t != t) {
        if (SceneObserver* pObserver = scene.GetObserver())
            pObserver->OnTick(t);
        FillTick(tick, t);
    }
    return tick.worlds[static_cast<size_t>(node.m_Moving)];
}

void Evaluator::Prepare(Node& root) {
    m_Moving.clear();
    m_Ticks.clear();
    // A scene may be as deep as it likes, so the way back isn't kept on the program's stack.
    std::vector<Node*> open = {&root};
    while (!open.empty()) {
        Node& node = *open.back();
        open.pop_back();
        PlaceNode(node);
        open.insert(open.end(), node.m_Children.begin(), node.m_Children.end());
    }
    if (!m_Moving.empty())
        m_Ticks.resize(FramesKept);
    m_TicksPerFrame = GetTicksPerFrame();
    m_Valid = true;
}

void Evaluator::PlaceNode(Node& node) {
    const Node* pParent = node.m_pParent;
    const int32_t parentPlace = pParent ? pParent->m_Moving : -1;
    const Controller& controller = node.GetController();
    node.m_Moving = -1;
    if (parentPlace >= 0 || controller.IsAnimated()) {
        node.m_Moving = static_cast<int32_t>(m_Moving.size());
        m_Moving.push_back(
            {&controller, parentPlace < 0 ? (pParent ? &pParent->m_World : &s_Origin) : nullptr, parentPlace});
        return;
    }
    const Affine local = controller.Evaluate(0);
    node.m_World = pParent ? Concatenate(local, pParent->m_World) : local;
}

void Evaluator::FillTick(Tick& tick, TimeValue t) {
    // Not filled until it is whole: a controller may throw.
    tick.filled = false;
    tick.t = t;
    tick.worlds.resize(m_Moving.size());
    for (size_t i = 0; i < m_Moving.size(); ++i) {
        const Moving& moving = m_Moving[i];
        const Affine& parent = moving.pStill ? *moving.pStill : tick.worlds[static_cast<size_t>(moving.parent)];
        tick.worlds[i] = Concatenate(moving.pController->Evaluate(t), parent);
    }
    tick.filled = true;
    ++m_PassCount;
}

Evaluator::Tick& Evaluator::GetTick(TimeValue t) {
    const int place = t / m_TicksPerFrame % FramesKept;
    return m_Ticks[static_cast<size_t>(place < 0 ? place + FramesKept : place)];
}

} // namespace scene
