#include "Host/Scene/Evaluator.h"

#include "Host/Scene/Scene.h"
#include "Host/Sdk/Core.h"

#include <algorithm>

namespace scene {

namespace {

static_assert(Evaluator::FramesInRun <= Controller::LongestRun);

// What the root stands on.
const Affine s_Origin = IdentityAffine();

} // namespace

inline bool Evaluator::MoveTo(Scene& scene, const Node& node, TimeValue t) {
    if (!m_Valid)
        Prepare(scene.GetRoot());
    if (node.m_Moving < 0)
        return false;
    if (m_Last >= m_RunLength || m_Times[m_Last] != t)
        FindTime(scene, t);
    return true;
}

const Affine& Evaluator::GetWorld(Scene& scene, const Node& node, TimeValue t) {
    if (!MoveTo(scene, node, t))
        return node.m_World;
    return m_Worlds[static_cast<size_t>(node.m_Moving) * FramesInRun + m_Last];
}

Matrix3 Evaluator::GetMatrix(Scene& scene, const Node& node, TimeValue t) {
    if (!MoveTo(scene, node, t))
        return ToMatrix3(node.m_World);
    return m_Matrices[m_Last * m_Moving.size() + static_cast<size_t>(node.m_Moving)];
}

void Evaluator::FindTime(Scene& scene, TimeValue t) {
    TimeValue* const pEnd = m_Times.data() + m_RunLength;
    TimeValue* pFound = std::find(m_Times.data(), pEnd, t);
    if (pFound == pEnd) {
        FillRun(scene, t);
        pFound = m_Times.data();
    }
    m_Last = static_cast<size_t>(pFound - m_Times.data());
}

void Evaluator::Prepare(Node& root) {
    m_Moving.clear();
    m_RunLength = 0;
    // A scene may be as deep as it likes, so the way back isn't kept on the program's stack.
    std::vector<Node*> open = {&root};
    while (!open.empty()) {
        Node& node = *open.back();
        open.pop_back();
        PlaceNode(node);
        open.insert(open.end(), node.m_Children.begin(), node.m_Children.end());
    }
    m_Worlds.resize(m_Moving.size() * FramesInRun);
    m_Matrices.resize(m_Worlds.size());
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

void Evaluator::FillRun(Scene& scene, TimeValue t) {
    if (SceneObserver* pObserver = scene.GetObserver())
        pObserver->OnTick(t);
    const size_t length = ChooseRunLength(scene, t);
    // Nothing of it counts until it is whole: a controller may throw.
    m_RunLength = 0;
    for (size_t i = 0; i < length; ++i)
        m_Times[i] = t + static_cast<TimeValue>(i) * m_TicksPerFrame;
    EvaluateNodes(std::span(m_Times).first(length));
    m_RunLength = length;
    m_TimeCount += length;
}

// One at first, and where the scene is asked for times here and there.
size_t Evaluator::ChooseRunLength(const Scene& scene, TimeValue t) const {
    if (m_RunLength == 0 || int64_t{t} - m_Times[m_RunLength - 1] != m_TicksPerFrame)
        return 1;
    const int64_t framesLeft = (int64_t{scene.GetAnimRange().End()} - t) / m_TicksPerFrame + 1;
    return static_cast<size_t>(std::clamp<int64_t>(framesLeft, 1, FramesInRun));
}

void Evaluator::EvaluateNodes(std::span<const TimeValue> times) {
    std::array<Affine, FramesInRun> locals;
    Affine* pWorlds = m_Worlds.data();
    Matrix3* pMatrices = m_Matrices.data();
    for (const Moving& moving : m_Moving) {
        moving.pController->EvaluateRun(times, locals.data());
        if (moving.pStill) {
            for (size_t i = 0; i < times.size(); ++i)
                pWorlds[i] = Concatenate(locals[i], *moving.pStill);
        } else {
            const Affine* pParents = m_Worlds.data() + static_cast<size_t>(moving.parent) * FramesInRun;
            for (size_t i = 0; i < times.size(); ++i)
                pWorlds[i] = Concatenate(locals[i], pParents[i]);
        }
        for (size_t i = 0; i < times.size(); ++i)
            pMatrices[i * m_Moving.size()] = ToMatrix3(pWorlds[i]);
        pWorlds += FramesInRun;
        ++pMatrices;
    }
}

} // namespace scene
