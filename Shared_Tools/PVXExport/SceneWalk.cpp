#include "Shared_Tools/PVXExport/SceneWalk.h"

#include <algorithm>

#include "Host/Sdk/Node.h"
#include "Shared_Tools/PVXExport/ExportContext.h"
#include "Shared_Tools/PVXExport/ExportScene.h"
#include "Shared_Tools/PVXExport/ModelTransform.h"
#include "Shared_Tools/PVXExport/NodeRoles.h"

namespace {

struct Visit {
    INode* pNode = nullptr;
    int32_t parentBone = -1; // the nearest ancestor in the list of bones
};

// Returns the bone that the node's children hang on.
int32_t AddBone(INode* pNode, int32_t parentBone, const ExportContext& context, ExportScene& scene) {
    if (pNode->UserPropExists("Remove"))
        return parentBone;
    const bool visible = !pNode->UserPropExists("Stale") && !pNode->UserPropExists("Inactive");
    return scene.m_BoneNodes.Add(pNode, parentBone, visible,
                                 ModelTransform::FromHost(pNode->GetNodeTM(context.m_Time)));
}

int32_t AddNode(const Visit& visit, ExportContext& context, ExportScene& scene) {
    const NodeRoles roles = PVXUtil::GetNodeRoles(visit.pNode, context.m_Time);
    int32_t boneOfChildren = visit.parentBone;
    if (roles.bone)
        boneOfChildren = AddBone(visit.pNode, visit.parentBone, context, scene);
    else if (roles.camera)
        scene.m_CameraNodes.push_back(visit.pNode);
    else if (roles.light)
        scene.m_LightNodes.push_back(visit.pNode);
    if (roles.marker)
        scene.m_MarkerNodes.push_back(visit.pNode);
    if (roles.mesh) {
        if (PVXUtil::IsXRef(visit.pNode))
            ++context.m_XRefMeshCount;
        scene.m_MeshNodes.push_back({visit.pNode, {}});
    }
    return boneOfChildren;
}

} // namespace

namespace SceneWalk {

// With a list in place of recursion, since nothing limits how deep a scene's tree goes.
void Collect(INode* pRoot, ExportContext& context, ExportScene& scene) {
    std::vector<Visit> open = {{pRoot, -1}};
    while (!open.empty()) {
        const Visit visit = open.back();
        open.pop_back();
        if (!visit.pNode)
            continue;
        const int32_t boneOfChildren = AddNode(visit, context, scene);
        for (int i = visit.pNode->NumberOfChildren(); i-- > 0;)
            open.push_back({visit.pNode->GetChildNode(i), boneOfChildren});
    }
}

void SortMeshNodes(ExportScene& scene) {
    struct Keyed {
        int priority = 0;
        MeshNode node;
    };
    std::vector<Keyed> keyed;
    keyed.reserve(scene.m_MeshNodes.size());
    for (MeshNode& node : scene.m_MeshNodes) {
        int priority = 0;
        if (!node.pNode->GetUserPropInt("RenderPriority", priority))
            priority = 0;
        keyed.push_back({priority, std::move(node)});
    }
    std::ranges::stable_sort(keyed, {}, &Keyed::priority);
    std::ranges::transform(keyed, scene.m_MeshNodes.begin(), [](Keyed& item) { return std::move(item.node); });
}

} // namespace SceneWalk
