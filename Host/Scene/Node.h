#pragma once

#include "Host/Scene/Controller.h"
#include "Host/Scene/Track.h"
#include "Host/Scene/UserProperties.h"
#include "Host/Sdk/Node.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace scene {

class Scene;

// A node of the stand-alone scene. Scene makes and owns it. Names are taken as they are; making them unique is the
// loader's work.
class Node : public INode {
public:
    Node(Scene& scene, std::string name) : m_Scene(scene), m_Name(std::move(name)) {}
    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;

    Scene& GetScene() const { return m_Scene; }
    Node* GetParent() const { return m_pParent; }
    const std::vector<Node*>& GetChildren() const { return m_Children; }

    // The transformation relative to the parent: one that stays, or a controller of its own, whose class is its own.
    void SetLocal(const Affine& local);
    void SetLocal(const glm::dvec3& translation, const glm::dquat& rotation = {1, 0, 0, 0},
                  const glm::dvec3& scale = {1, 1, 1});
    void SetController(std::unique_ptr<Controller> pController);
    Controller& GetController();
    const Controller& GetController() const;

    // From the object's space to the node's; the identity at first.
    void SetObjectOffset(const Affine& offset);
    // The object is in world space already: the object's transformation is the identity, whatever the node's is.
    void SetWorldSpaceObject(bool worldSpace) { m_WorldSpaceObject = worldSpace; }

    // Objects, materials and targets are borrowed from the scene; null for none.
    void SetObject(Object* pObject) { m_pObject = pObject; }
    void SetMaterial(Mtl* pMaterial) { m_pMaterial = pMaterial; }
    void SetTarget(Node* pTarget) { m_pTarget = pTarget; }

    void SetWireColor(uint8_t red, uint8_t green, uint8_t blue);
    void SetRenderable(bool renderable) { m_Renderable = renderable; }
    void SetBoneNodeOnOff(bool on) { m_BoneNode = on; }
    void SetVisibility(FloatTrack visibility) { m_Visibility = std::move(visibility); }
    UserProperties& GetUserProperties() { return m_UserProperties; }

    // In double; what GetNodeTM hands out.
    Affine GetWorld(TimeValue t) const;

    const char* GetName() const override { return m_Name.c_str(); }
    COLORREF GetWireColor() const override { return m_WireColor; }
    bool IsRootNode() const override;
    INode* GetParentNode() const override { return m_pParent; }
    int NumberOfChildren() const override { return static_cast<int>(m_Children.size()); }
    INode* GetChildNode(int index) const override;
    Matrix3 GetNodeTM(TimeValue t, Interval* pValid = nullptr) override;
    Matrix3 GetObjectTM(TimeValue t, Interval* pValid = nullptr) override;
    Matrix3 GetObjTMAfterWSM(TimeValue t, Interval* pValid = nullptr) override;
    ObjectState EvalWorldState(TimeValue t, bool evalHidden = true) override;
    Object* GetObjectRef() const override { return m_pObject; }
    bool Renderable() const override { return m_Renderable; }
    bool GetBoneNodeOnOff() const override { return m_BoneNode; }
    INode* GetTarget() const override { return m_pTarget; }
    bool GetTargetTM(TimeValue t, Matrix3& m) override;
    Control* GetTMController() const override;
    float GetVisibility(TimeValue t, Interval* pValid = nullptr) const override;
    Mtl* GetMtl() const override { return m_pMaterial; }
    bool UserPropExists(const char* pKey) const override;
    bool GetUserPropString(const char* pKey, std::string& out) const override;
    bool GetUserPropInt(const char* pKey, int& out) const override;

private:
    friend class Scene;
    friend class Evaluator;

    static constexpr COLORREF s_DefaultWireColor = 0x808080;

    Scene& m_Scene;
    std::string m_Name;
    Node* m_pParent = nullptr;
    std::vector<Node*> m_Children;

    RestController m_Rest;
    std::unique_ptr<Controller> m_pController; // null: m_Rest
    std::unique_ptr<Affine> m_pObjectOffset;   // null: the identity

    Object* m_pObject = nullptr;
    Mtl* m_pMaterial = nullptr;
    Node* m_pTarget = nullptr;
    FloatTrack m_Visibility = 1.0f;
    UserProperties m_UserProperties;
    COLORREF m_WireColor = s_DefaultWireColor;
    bool m_Renderable = true;
    bool m_BoneNode = false;
    bool m_WorldSpaceObject = false;

    // Kept by the Evaluator.
    int32_t m_Moving = -1; // the place among the moving nodes; -1: the node stands still, at m_World
    Affine m_World = IdentityAffine();
};

} // namespace scene
