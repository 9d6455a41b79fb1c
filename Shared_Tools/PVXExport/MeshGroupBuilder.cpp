#include "Shared_Tools/PVXExport/MeshGroupBuilder.h"

#include "Host/Sdk/Node.h"
#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/BoundVolume.h"
#include "Shared/Cross/RenderAnim/MeshGroup.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"
#include "Shared/Cross/RenderAnim/Skeleton.h"
#include "Shared_Tools/PVXExport/ExportContext.h"
#include "Shared_Tools/PVXExport/ExportScene.h"
#include "Shared_Tools/PVXExport/NodeRoles.h"
#include "Shared_Tools/PVXExport/PVXErrors.h"
#include "Shared_Tools/PVXExport/PVXUtil.h"

namespace {

void SetExternalName(INode* pNode, uint32_t index, ra::MeshGroup& group) {
    if (!PVXUtil::IsXRef(pNode))
        return;
    std::string modelName;
    if (PVXUtil::ExternalModelName(pNode, modelName))
        group.SetXRefName(index, ra::Name(modelName.c_str()));
    else
        dbWarningf("Mesh '%s' comes from a file outside of every project; it is exported as this model's own",
                   pNode->GetName());
}

// A mesh without skin hangs on its own bone, or on its parent's.
void AttachToBone(INode* pNode, uint32_t index, const ExportScene& scene, TimeValue t, ra::MeshGroup& group) {
    INode* pBone = pNode;
    if (!PVXUtil::IsBone(pNode, t)) {
        pBone = pNode->GetParentNode();
        dbAssertText(pBone, "m_MeshNodes[ i ].pNode->GetParentNode()");
        if (!PVXUtil::IsBone(pBone, t))
            return;
    }
    int32_t bone = scene.m_BoneNodes.Find(pBone);
    if (bone < 0) {
        PVXErrors::Get().Error("Mesh '%s' assigned to invalid bone! (Removed from Skeleton?)", pNode->GetName());
        bone = 0;
    }
    group.SetParentBone(index, bone);
}

} // namespace

namespace MeshGroupBuilder {

bool Build(ExportScene& scene, const ExportContext& context, RenderModel& model) {
    if (scene.m_MeshNodes.empty()) {
        if (context.m_ExportMeshes)
            PVXErrors::Get().Error("No meshes to export!");
        return false;
    }
    auto pMeshGroup = std::make_unique<ra::MeshGroup>();
    dbAssert(pMeshGroup);
    pMeshGroup->SetMeshCount(static_cast<uint32_t>(scene.m_MeshNodes.size()));
    BoundVolume bounds;
    for (uint32_t i = 0; i < pMeshGroup->GetMeshCount(); ++i) {
        const MeshNode& node = scene.m_MeshNodes[i];
        dbAssertText(node.meshRef.IsValid(), "m_MeshNodes[ i ].meshRef.IsValid()");
        // The group takes the mesh's shaders for its own as long as the mesh has no external name: the textures of all
        // shaders that are written go with them.
        pMeshGroup->SetMesh(i, node.meshRef);
        pMeshGroup->SetMeshName(i, ra::Name(node.pNode->GetName()));
        if (!context.m_XRefAsLocal)
            SetExternalName(node.pNode, i, *pMeshGroup);
        if (!node.meshRef->IsSkinned())
            AttachToBone(node.pNode, i, scene, context.m_Time, *pMeshGroup);
        bounds.Merge(node.meshRef->GetBoundVolume());
    }
    pMeshGroup->SetBoundVolume(bounds);
    model.SetMeshGroup(std::move(pMeshGroup));
    model.SetSkeleton(std::move(scene.m_Skeleton));
    return true;
}

} // namespace MeshGroupBuilder
