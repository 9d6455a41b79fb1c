#include "Shared/Cross/RenderAnim/Chunks/XRefMesh.h"

#include "Shared/Cross/RenderAnim/MeshGroup.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"
#include "Shared/Cross/RenderAnim/RenderModelTypeInfo.h"

namespace ra {

namespace {

const MeshGroup* GetGroup(const RenderModelRef& model) {
    return model.IsValid() ? model.GetData()->GetMeshGroup() : nullptr;
}

} // namespace

MeshRef FindXRefMesh(const std::string& meshName, const std::string& modelName) {
    const RenderModelRef model = XRefLoad(modelName.c_str());
    const MeshGroup* pGroup = GetGroup(model);
    const int32_t index = pGroup ? pGroup->FindMesh(Name(meshName.c_str())) : MeshGroup::InvalidIndex;
    return index != MeshGroup::InvalidIndex ? pGroup->GetMesh(static_cast<uint32_t>(index)) : MeshRef();
}

MeshRef GetMissingMesh() {
    const RenderModelRef model = XRefLoad(RenderModelTypeInfo::MissingModel);
    const MeshGroup* pGroup = GetGroup(model);
    return pGroup && pGroup->GetMeshCount() > 0 ? pGroup->GetMesh(0) : MeshRef();
}

} // namespace ra
