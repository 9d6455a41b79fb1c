#include "Shared/Cross/RenderAnim/Chunks/AnimNodes.h"

#include <utility>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/AnimListGeneric.h"
#include "Shared/Cross/RenderAnim/LoadingModel.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"
#include "Shared/Cross/RenderAnim/RenderModelTypeInfo.h"
#include "Shared/Cross/RenderAnim/Skeleton.h"

namespace ra {

namespace {

std::unique_ptr<AnimListNode> MakeNode(const RenderModel& model, const AnimRef& anim) {
    const Skeleton* pSkeleton = model.GetSkeleton();
    auto pNode = std::make_unique<AnimListNode>(pSkeleton ? pSkeleton->GetBoneCount() : 0, model.GetCameraCount());
    pNode->SetAnim(anim);
    return pNode;
}

AnimRef FindAnim(const RenderModel* pModel, const char* pName) {
    const AnimList* pList = pModel ? pModel->GetAnimList() : nullptr;
    const int32_t index = pList ? pList->FindNode(pName) : AnimList::InvalidIndex;
    return index != AnimList::InvalidIndex ? pList->GetNode(static_cast<uint32_t>(index))->GetAnim() : AnimRef();
}

AnimRef FindXRefAnim(const char* pXRefModel, const char* pName) {
    if (const RenderModel* pLoading = LoadingModel::Find(pXRefModel))
        return FindAnim(pLoading, pName);
    const RenderModelRef model = XRefLoad(pXRefModel);
    return FindAnim(model.IsValid() ? model.GetData() : nullptr, pName);
}

AnimRef MakeEmptyAnim(const char* pName) {
    auto pAnim = std::make_unique<Anim>();
    pAnim->SetName(pName);
    AnimRef anim;
    anim.Set(std::move(pAnim));
    return anim;
}

} // namespace

bool CanHoldAnim(const RenderModel& model, const ChunkInfo& child) {
    if (model.GetSkeleton())
        return true;
    dbWarningf("%s: Animation '%s' - in a model without a valid skeleton!", model.GetName(), child.name.GetText());
    return false;
}

std::unique_ptr<AnimListNode> MakeLocalNode(const RenderModel& model, std::unique_ptr<Anim> pAnim) {
    AnimRef anim;
    anim.Set(std::move(pAnim));
    return MakeNode(model, anim);
}

std::unique_ptr<AnimListNode> MakeXRefNode(const RenderModel& model, const char* pXRefModel, const char* pAnimName) {
    const AnimList* pList = model.GetAnimList();
    if (pList && pList->FindNode(pAnimName) != AnimList::InvalidIndex) {
        dbWarningf("'%s': XRef'ed Anim '%s' is already present locally, resave the motion tree!", model.GetName(),
                   pAnimName);
        return nullptr;
    }
    AnimRef anim = FindXRefAnim(pXRefModel, pAnimName);
    if (!anim.IsValid()) {
        dbWarningf("'%s': XRef'ed Anim '%s' in model '%s' is missing!", model.GetName(), pAnimName, pXRefModel);
        anim = MakeEmptyAnim(pAnimName);
    }
    std::unique_ptr<AnimListNode> pNode = MakeNode(model, anim);
    pNode->SetXRefModel(Name(pXRefModel));
    return pNode;
}

void AddAnimNode(RenderModel& model, std::unique_ptr<AnimListNode> pNode, uint32_t version) {
    if (!model.GetAnimList())
        model.SetAnimList(std::make_unique<AnimListGeneric>(model));
    model.GetAnimList()->AddNode(std::move(pNode));
    if (auto* pList = dynamic_cast<AnimListGeneric*>(model.GetAnimList()))
        pList->SetFileVersion(version);
}

} // namespace ra
