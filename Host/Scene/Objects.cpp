#include "Host/Scene/Objects.h"

#include "Host/Scene/Scene.h"
#include "Host/Sdk/Mesh.h"

#include <array>

namespace scene {

namespace {

struct ClassInfo {
    Class_ID id;
    const char* pName;
};

// Each in the order of its enumeration.
constexpr std::array s_Geometry = {
    ClassInfo{TRIOBJ_CLASS_ID, "Mesh"},    ClassInfo{EDITTRIOBJ_CLASS_ID, "Editable Mesh"},
    ClassInfo{PATCHOBJ_CLASS_ID, "Patch"}, ClassInfo{BONE_OBJ_CLASS_ID, "Bone"},
    ClassInfo{BOXOBJ_CLASS_ID, "Box"},
};
constexpr std::array s_Helpers = {ClassInfo{DUMMY_CLASS_ID, "Dummy"}, ClassInfo{POINTHELP_CLASS_ID, "Point"}};
constexpr std::array s_Lights = {
    ClassInfo{OMNI_LIGHT_CLASS_ID, "Omni"},          ClassInfo{SPOT_LIGHT_CLASS_ID, "Target Spot"},
    ClassInfo{DIR_LIGHT_CLASS_ID, "Free Direct"},    ClassInfo{FSPOT_LIGHT_CLASS_ID, "Free Spot"},
    ClassInfo{TDIR_LIGHT_CLASS_ID, "Target Direct"},
};

template <class Kind>
const ClassInfo& Describe(const auto& table, Kind kind) {
    return table[static_cast<size_t>(kind)];
}

} // namespace

MeshSource::~MeshSource() = default;

ReadyMeshSource::ReadyMeshSource(Mesh mesh) : m_pMesh(std::make_unique<const Mesh>(std::move(mesh))) {}
ReadyMeshSource::~ReadyMeshSource() = default;
std::unique_ptr<Mesh> ReadyMeshSource::Build(TimeValue) const { return std::make_unique<Mesh>(*m_pMesh); }

GeometryObject::GeometryObject(GeometryClass kind, std::unique_ptr<MeshSource> pSource)
    : m_Class(kind), m_pSource(std::move(pSource)) {}

Class_ID GeometryObject::ClassID() const { return Describe(s_Geometry, m_Class).id; }
void GeometryObject::GetClassName(std::string& out) const { out = Describe(s_Geometry, m_Class).pName; }

Mesh* GeometryObject::GetRenderMesh(TimeValue t, INode* pNode, View&, bool& needDelete) {
    needDelete = false;
    if (!m_pSource)
        return nullptr;
    if (const Node* pSceneNode = static_cast<Node*>(pNode))
        if (SceneObserver* pObserver = pSceneNode->GetScene().GetObserver())
            pObserver->OnMesh(*pSceneNode);
    std::unique_ptr<Mesh> pMesh = m_pSource->Build(t);
    needDelete = pMesh != nullptr;
    return pMesh.release();
}

Class_ID HelperObject::ClassID() const { return Describe(s_Helpers, m_Class).id; }
void HelperObject::GetClassName(std::string& out) const { out = Describe(s_Helpers, m_Class).pName; }

Class_ID LightObject::ClassID() const { return Describe(s_Lights, m_Class).id; }
void LightObject::GetClassName(std::string& out) const { out = Describe(s_Lights, m_Class).pName; }

Class_ID CameraObject::ClassID() const { return m_Settings.hasTarget ? LOOKAT_CAM_CLASS_ID : SIMPLE_CAM_CLASS_ID; }
void CameraObject::GetClassName(std::string& out) const {
    out = m_Settings.hasTarget ? "Target Camera" : "Free Camera";
}

float CameraObject::GetTDist(TimeValue t, Interval*) const {
    return m_MeasuredDistance.value_or(m_Settings.targetDistance.Evaluate(t));
}

void CameraObject::UpdateTargDistance(TimeValue t, INode* pNode) {
    m_MeasuredDistance.reset();
    Matrix3 target = IdentityMatrix();
    if (m_Settings.hasTarget && pNode && pNode->GetTargetTM(t, target))
        m_MeasuredDistance = Length(GetRow(target, 3) - GetRow(pNode->GetNodeTM(t), 3));
}

float CameraObject::GetFOV(TimeValue t, Interval*) const { return m_Settings.fieldOfView.Evaluate(t); }

float CameraObject::GetClipDist(TimeValue, int which, Interval*) const {
    return which == CAM_HITHER_CLIP ? m_Settings.nearClip : m_Settings.farClip;
}

void XRef::GetClassName(std::string& out) const { out = "XRefObject"; }
// The scene keeps one name: a file that couldn't be resolved bears it too.
const char* XRef::GetFileName(bool) const { return m_FileName.c_str(); }

} // namespace scene
