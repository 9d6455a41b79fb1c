#include "Shared_Tools/PVXExport/NodeRoles.h"

#include <algorithm>
#include <array>
#include <span>

#include "Host/Sdk/ClassIds.h"
#include "Host/Sdk/Node.h"

namespace {

constexpr SClass_ID s_HelperSuperClass = 0xff;

constexpr std::array s_CameraClasses = {SIMPLE_CAM_CLASS_ID, LOOKAT_CAM_CLASS_ID};
constexpr std::array s_LightClasses = {OMNI_LIGHT_CLASS_ID, SPOT_LIGHT_CLASS_ID, DIR_LIGHT_CLASS_ID,
                                       FSPOT_LIGHT_CLASS_ID, TDIR_LIGHT_CLASS_ID};

bool Contains(std::span<const Class_ID> classes, Class_ID classId) {
    return std::ranges::find(classes, classId) != classes.end();
}

bool IsMeshObject(const Object& object) {
    const Class_ID classId = object.ClassID();
    return (object.SuperClassID() == GEOMOBJECT_CLASS_ID && classId == TRIOBJ_CLASS_ID) ||
           classId == EDITTRIOBJ_CLASS_ID || classId == PATCHOBJ_CLASS_ID;
}

bool IsBiped(INode* pNode) {
    const Control* pController = pNode->GetTMController();
    return pController &&
           (pController->ClassID() == BIPSLAVE_CONTROL_CLASS_ID || pController->ClassID() == BIPBODY_CONTROL_CLASS_ID);
}

bool IsBoneObject(INode* pNode, const Object* pObject) {
    if (pNode->GetBoneNodeOnOff())
        return true;
    if (pObject) {
        const Class_ID classId = pObject->ClassID();
        if (classId == BONE_OBJ_CLASS_ID || classId == BOXOBJ_CLASS_ID)
            return true;
        if (classId == DUMMY_CLASS_ID)
            return false;
    }
    return IsBiped(pNode);
}

} // namespace

namespace PVXUtil {

NodeRoles GetNodeRoles(INode* pNode, TimeValue t) {
    if (!pNode || pNode->IsRootNode())
        return {};
    const Object* pObject = pNode->EvalWorldState(t, true).obj;
    NodeRoles roles{.bone = IsBoneObject(pNode, pObject)};
    if (!pObject)
        return roles;
    const Class_ID classId = pObject->ClassID();
    roles.camera = Contains(s_CameraClasses, classId);
    roles.light = Contains(s_LightClasses, classId);
    roles.marker = classId == POINTHELP_CLASS_ID;
    roles.mesh = pNode->Renderable() && IsMeshObject(*pObject);
    return roles;
}

bool IsBone(INode* pNode, TimeValue t) { return GetNodeRoles(pNode, t).bone; }
bool IsMesh(INode* pNode, TimeValue t) { return GetNodeRoles(pNode, t).mesh; }
bool IsMarker(INode* pNode, TimeValue t) { return GetNodeRoles(pNode, t).marker; }
bool IsCamera(INode* pNode, TimeValue t) { return GetNodeRoles(pNode, t).camera; }
bool IsLight(INode* pNode, TimeValue t) { return GetNodeRoles(pNode, t).light; }

bool IsHelper(INode* pNode, TimeValue t) {
    if (!pNode || pNode->IsRootNode())
        return false;
    const Object* pObject = pNode->EvalWorldState(t, true).obj;
    return pObject && pObject->SuperClassID() == s_HelperSuperClass;
}

bool IsXRef(INode* pNode) {
    const Object* pReference = pNode ? pNode->GetObjectRef() : nullptr;
    return pReference && pReference->SuperClassID() == SYSTEM_CLASS_ID && pReference->ClassID() == XREFOBJ_CLASS_ID &&
           !pNode->UserPropExists("ForceLocal");
}

} // namespace PVXUtil
