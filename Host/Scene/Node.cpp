#include "Host/Scene/Node.h"

#include "Host/Scene/Modifiers.h"
#include "Host/Scene/Scene.h"

#include <charconv>

namespace scene {

void Node::SetLocal(const Affine& local) {
    m_pController.reset();
    m_Rest.SetLocal(local);
    m_Scene.InvalidateTransforms();
}

void Node::SetLocal(const glm::dvec3& translation, const glm::dquat& rotation, const glm::dvec3& scale) {
    SetLocal(ComposeTransform(translation, rotation, scale));
}

void Node::SetController(std::unique_ptr<Controller> pController) {
    m_pController = std::move(pController);
    m_Scene.InvalidateTransforms();
}

Controller& Node::GetController() {
    if (m_pController)
        return *m_pController;
    return m_Rest;
}

const Controller& Node::GetController() const { return const_cast<Node*>(this)->GetController(); }

void Node::SetObjectOffset(const Affine& offset) { m_pObjectOffset = std::make_unique<Affine>(offset); }

void Node::SetWireColor(uint8_t red, uint8_t green, uint8_t blue) {
    m_WireColor = red | static_cast<COLORREF>(green) << 8 | static_cast<COLORREF>(blue) << 16;
}

Affine Node::GetWorld(TimeValue t) const { return m_Scene.GetEvaluator().GetWorld(m_Scene, *this, t); }

bool Node::IsRootNode() const { return this == &m_Scene.GetRoot(); }

INode* Node::GetChildNode(int index) const {
    return index >= 0 && index < NumberOfChildren() ? m_Children[static_cast<size_t>(index)] : nullptr;
}

Matrix3 Node::GetNodeTM(TimeValue t, Interval*) { return m_Scene.GetEvaluator().GetMatrix(m_Scene, *this, t); }

Matrix3 Node::GetObjectTM(TimeValue t, Interval*) {
    if (m_WorldSpaceObject)
        return IdentityMatrix();
    if (!m_pObjectOffset)
        return GetNodeTM(t);
    return ToMatrix3(Concatenate(*m_pObjectOffset, GetWorld(t)));
}

// There are no space warps.
Matrix3 Node::GetObjTMAfterWSM(TimeValue t, Interval* pValid) { return GetObjectTM(t, pValid); }

ObjectState Node::EvalWorldState(TimeValue, bool) { return {EvaluateObject(m_pObject)}; }

bool Node::GetTargetTM(TimeValue t, Matrix3& m) {
    if (!m_pTarget)
        return false;
    m = m_pTarget->GetNodeTM(t);
    return true;
}

Control* Node::GetTMController() const { return const_cast<Controller*>(&GetController()); }

float Node::GetVisibility(TimeValue t, Interval*) const { return m_Visibility.Evaluate(t); }

bool Node::UserPropExists(const char* pKey) const { return m_UserProperties.Find(pKey) != nullptr; }

bool Node::GetUserPropString(const char* pKey, std::string& out) const {
    const std::string* pValue = m_UserProperties.Find(pKey);
    if (pValue)
        out = *pValue;
    return pValue != nullptr;
}

bool Node::GetUserPropInt(const char* pKey, int& out) const {
    const std::string* pValue = m_UserProperties.Find(pKey);
    if (!pValue)
        return false;
    const size_t start = pValue->find_first_not_of(" \t");
    if (start == std::string::npos)
        return false;
    const char* pFirst = pValue->data() + start + ((*pValue)[start] == '+' ? 1 : 0);
    return std::from_chars(pFirst, pValue->data() + pValue->size(), out).ec == std::errc();
}

} // namespace scene
