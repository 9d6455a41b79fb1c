#include "Shared_Tools/PVXExport/ModelNodes.h"

#include <algorithm>

#include "Host/Sdk/Node.h"
#include "Shared/Cross/RenderAnim/Marker.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"
#include "Shared/Cross/RenderAnim/Skeleton.h"
#include "Shared/Cross/RenderAnim/Transform.h"
#include "Shared_Tools/PVXExport/ExportContext.h"
#include "Shared_Tools/PVXExport/ExportScene.h"
#include "Shared_Tools/PVXExport/ModelTransform.h"
#include "Shared_Tools/PVXExport/NodeRoles.h"

namespace {

constexpr float s_DefaultFieldOfView = 1.5707964f;
constexpr float s_NearestClip = 0.1f;
constexpr float s_FarthestClip = 1000.0f;

// Null when the marker hangs on nothing.
INode* GetMarkerParent(INode* pNode, TimeValue t) {
    INode* pParent = pNode->GetParentNode();
    return PVXUtil::IsBone(pParent, t) ? pParent : nullptr;
}

// What the camera itself says; the host's matrix has its scale, which the distance is measured in.
void ReadCamera(GenCamera& camera, INode* pNode, const Matrix3& hostMatrix, TimeValue t, CameraDef& out) {
    camera.UpdateTargDistance(t, pNode);
    float distance = camera.GetTDist(t);
    if (distance <= 0.0f)
        distance = 1.0f;
    out.target = ModelTransform::AxesFromHost(TransformPoint({0.0f, 0.0f, -distance}, hostMatrix));
    out.fieldOfView = camera.GetFOV(t);
    if (camera.GetManualClip()) {
        out.nearClip = std::max(camera.GetClipDist(t, CAM_HITHER_CLIP), s_NearestClip);
        out.farClip = std::min(camera.GetClipDist(t, CAM_YON_CLIP), s_FarthestClip);
    }
}

CameraDef MakeCamera(INode* pNode, TimeValue t) {
    const Matrix3 hostMatrix = pNode->GetObjTMAfterWSM(t);
    CameraDef camera;
    camera.name = ra::Name(pNode->GetName());
    camera.position = ModelTransform::FromHost(hostMatrix)[3];
    camera.target = camera.position + glm::vec3(0, 0, 1);
    camera.fieldOfView = s_DefaultFieldOfView;
    camera.nearClip = s_NearestClip;
    camera.farClip = s_FarthestClip;
    if (Object* pObject = pNode->EvalWorldState(t, true).obj)
        ReadCamera(static_cast<GenCamera&>(*pObject), pNode, hostMatrix, t, camera);
    camera.rotation = ra::GetRotation(ModelTransform::LookAt(camera.position, camera.target, glm::vec3(0, 1, 0)));
    return camera;
}

} // namespace

namespace ModelNodes {

void AddMarkers(const ExportScene& scene, const ExportContext& context, RenderModel& model) {
    for (INode* pNode : scene.m_MarkerNodes) {
        if (!PVXUtil::IsMarker(pNode, context.m_Time))
            continue;
        Marker marker;
        marker.name = ra::Name(pNode->GetName());
        marker.m_transform = ModelTransform::FromHost(pNode->GetNodeTM(context.m_Time));
        if (INode* pParent = GetMarkerParent(pNode, context.m_Time)) {
            marker.m_parentName = ra::Name(pParent->GetName());
            const glm::mat4x3 parentMatrix = ModelTransform::FromHost(pParent->GetNodeTM(context.m_Time));
            marker.m_transform = ra::Multiply(marker.m_transform, ra::Inverse(parentMatrix));
        }
        model.AddMarker(marker);
    }
}

void AddCameras(const ExportScene& scene, const ExportContext& context, RenderModel& model) {
    for (INode* pNode : scene.m_CameraNodes)
        if (PVXUtil::IsCamera(pNode, context.m_Time))
            model.AddCamera(MakeCamera(pNode, context.m_Time));
}

void BuildSkeleton(ExportScene& scene) {
    scene.m_Skeleton.reset();
    if (scene.m_BoneNodes.empty())
        return;
    scene.m_Skeleton = std::make_unique<Skeleton>(static_cast<uint32_t>(scene.m_BoneNodes.size()));
    for (size_t i = 0; i < scene.m_BoneNodes.size(); ++i) {
        const BoneNode& bone = scene.m_BoneNodes[i];
        const auto index = static_cast<int32_t>(i);
        scene.m_Skeleton->SetBoneName(index, ra::Name(bone.name.c_str()));
        scene.m_Skeleton->SetReferenceMatrix(index, bone.transform);
        scene.m_Skeleton->SetParent(index, bone.parent);
    }
}

} // namespace ModelNodes
