#include "Shared_Tools/PVXExport/SkinWeights.h"

#include <algorithm>
#include <array>
#include <memory>

#include "Host/Sdk/ClassIds.h"
#include "Host/Sdk/Node.h"
#include "Host/Sdk/Skin.h"
#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/Mesh.h"
#include "Shared_Tools/PVXExport/ExportContext.h"
#include "Shared_Tools/PVXExport/ExportScene.h"
#include "Shared_Tools/PVXExport/NodeRoles.h"
#include "Shared_Tools/PVXExport/PVXErrors.h"

namespace {

constexpr int s_MaxBonesPerVertex = 4;

Modifier* FindSkinIn(const IDerivedObject& object) {
    for (int i = 0; i < object.NumModifiers(); ++i)
        if (Modifier* pModifier = object.GetModifier(i); pModifier && pModifier->ClassID() == SKIN_CLASSID)
            return pModifier;
    return nullptr;
}

// With a skin on several levels the lowest one counts, which sees the points as they were modelled.
Modifier* FindSkin(Object* pObject) {
    Modifier* pFound = nullptr;
    while (pObject && pObject->SuperClassID() == GEN_DERIVOB_CLASS_ID) {
        const auto* pDerived = static_cast<IDerivedObject*>(pObject);
        if (Modifier* pModifier = FindSkinIn(*pDerived))
            pFound = pModifier;
        pObject = pDerived->GetObjRef();
    }
    return pFound;
}

struct SkinReleaser {
    Modifier* pModifier;
    void operator()(ISkin* pSkin) const { pModifier->ReleaseInterface(I_SKIN, pSkin); }
};

} // namespace

bool SkinWeights::Build(INode* pNode, MeshForm& form, ra::Mesh& mesh) {
    m_ReportedBones.clear();
    const Result result =
        pNode->UserPropExists("ForceSkinning") ? BuildForced(pNode, form) : BuildFromSkin(pNode, form);
    if (result == Result::Failed)
        return false;
    return result == Result::NoSkin || ListBones(form, mesh);
}

SkinWeights::Result SkinWeights::BuildFromSkin(INode* pNode, MeshForm& form) {
    Modifier* pModifier = FindSkin(pNode->GetObjectRef());
    if (!pModifier)
        return Result::NoSkin;
    const std::unique_ptr<ISkin, SkinReleaser> pSkin(static_cast<ISkin*>(pModifier->GetInterface(I_SKIN)),
                                                     SkinReleaser{pModifier});
    if (!pSkin) {
        PVXErrors::Get().Error("ISkin modifier not installed. Cannot export weighted mesh!");
        return Result::Failed;
    }
    MapBones(*pSkin);
    ISkinContextData* pData = pSkin->GetContextInterface(pNode);
    return pData ? ReadPoints(pNode, *pData, form) : Result::NoSkin;
}

void SkinWeights::MapBones(ISkin& skin) {
    m_BoneOfSkin.clear();
    for (int i = 0; i < skin.GetNumBones(); ++i) {
        INode* pBone = skin.GetBone(i);
        Matrix3 bindMatrix = IdentityMatrix();
        skin.GetBoneInitTM(pBone, bindMatrix); // has the host bring the bone's data up to date
        m_BoneOfSkin.push_back(m_Scene.m_BoneNodes.Find(pBone));
    }
}

SkinWeights::Result SkinWeights::ReadPoints(INode* pNode, ISkinContextData& data, MeshForm& form) {
    bool good = !m_Scene.m_BoneNodes.empty(); // otherwise there is no first bone that could stand in for others
    const int count = data.GetNumPoints();
    form.cWeight.assign(static_cast<size_t>(std::max(count, 0)), VertexWeight{});
    for (int point = 0; point < count; ++point)
        if (!ReadPoint(pNode->GetName(), data, point, form.cWeight[static_cast<size_t>(point)]))
            good = false;
    return good ? Result::Weights : Result::Failed;
}

bool SkinWeights::ReadPoint(const char* pMesh, ISkinContextData& data, int point, VertexWeight& out) {
    PVXErrors& errors = PVXErrors::Get();
    bool good = true;
    int count = 0;
    VertexWeightBuilder builder;
    const int assigned = data.GetNumAssignedBones(point);
    for (int i = 0; i < assigned; ++i) {
        const int skinBone = data.GetAssignedBone(point, i);
        const float w = skinBone < 0 ? 0.0f : data.GetBoneWeight(point, i);
        if (w == 0.0f)
            continue;
        if (!(w >= 0.0f && w <= 1.0f)) {
            errors.Error("Mesh '%s', vertex %d has an invalid weight!  Make sure it is normalized / weighted!", pMesh,
                         point);
            good = false;
            continue;
        }
        const int32_t bone = FindBone(pMesh, point, skinBone);
        good = IsWithinLimit(pMesh, bone) && good;
        builder.Add(static_cast<uint8_t>(std::min(bone, s_BoneLimit - 1)), w);
        ++count;
    }
    if (count > s_MaxBonesPerVertex) {
        errors.Error("Mesh '%s', vertex %d is weighted by too many bones!  A maximum of 4 bones is supported!", pMesh,
                     point);
        return false;
    }
    if (count < 1) {
        errors.Error("Mesh '%s', vertex %d is not weighted to any bones!", pMesh, point);
        return false;
    }
    if (builder.GetSum() > 1.0f) {
        errors.Error("Mesh '%s', vertex %d has an invalid bone weight!  Make sure it is normalized!", pMesh, point);
        return false;
    }
    out = builder.Finish();
    return good;
}

// The first bone in place of one that isn't there.
int32_t SkinWeights::FindBone(const char* pMesh, int point, int skinBone) const {
    const auto index = static_cast<size_t>(skinBone);
    const int32_t bone = index < m_BoneOfSkin.size() ? m_BoneOfSkin[index] : -1;
    if (bone >= 0)
        return bone;
    PVXErrors::Get().Error("Mesh '%s', vertex %d is weighted by an invalid bone! (Removed from Skeleton?)", pMesh,
                           point);
    return 0;
}

// Once for each bone and mesh: it is the skeleton that is too large, not the vertex that is wrong.
bool SkinWeights::IsWithinLimit(const char* pMesh, int32_t bone) {
    if (bone < s_BoneLimit)
        return true;
    if (std::ranges::find(m_ReportedBones, bone) == m_ReportedBones.end()) {
        m_ReportedBones.push_back(bone);
        PVXErrors::Get().Error(
            "Mesh '%s' is weighted by bone '%s', number %d of the skeleton!  Only the first %d bones "
            "can be skinned to!",
            pMesh, m_Scene.m_BoneNodes[static_cast<size_t>(bone)].name.c_str(), bone + 1, s_BoneLimit);
    }
    return false;
}

SkinWeights::Result SkinWeights::BuildForced(INode* pNode, MeshForm& form) {
    int32_t bone = -1;
    if (PVXUtil::IsBone(pNode, m_Context.m_Time)) {
        bone = m_Scene.m_BoneNodes.Find(pNode);
    } else {
        INode* pParent = pNode->GetParentNode();
        dbAssertText(pParent, "m_MeshNodes[ meshIndex ].pNode->GetParentNode()");
        if (PVXUtil::IsBone(pParent, m_Context.m_Time))
            bone = m_Scene.m_BoneNodes.Find(pParent);
    }
    if (bone < 0) {
        PVXErrors::Get().Error("Force Skinned Mesh '%s' is not a bone!", pNode->GetName());
        return Result::Weights;
    }
    if (!IsWithinLimit(pNode->GetName(), bone))
        return Result::Failed;
    VertexWeightBuilder builder;
    builder.Add(static_cast<uint8_t>(bone), 1.0f);
    form.cWeight.assign(form.cVertex.size(), builder.Finish());
    return Result::Weights;
}

// Each bone once, in the order of first use. The weights go on with the skeleton's numbers.
bool SkinWeights::ListBones(const MeshForm& form, ra::Mesh& mesh) {
    std::array<bool, 256> listed{};
    std::vector<int32_t> bones;
    for (const VertexWeight& weight : form.cWeight)
        for (const uint8_t bone : weight.bone)
            if (bone != VertexWeight::NoBone && !listed[bone]) {
                listed[bone] = true;
                bones.push_back(bone);
            }
    mesh.SetSkinnedTransformCount(static_cast<uint32_t>(bones.size()));
    for (size_t i = 0; i < bones.size(); ++i) {
        const int32_t index = bones[i];
        dbAssert(index != -1);
        dbAssertText(static_cast<size_t>(index) < m_Scene.m_BoneNodes.size(), "index < m_BoneNodes.size()");
        if (static_cast<size_t>(index) >= m_Scene.m_BoneNodes.size())
            return false;
        mesh.SetSkinnedTransform(static_cast<uint32_t>(i),
                                 ra::Name(m_Scene.m_BoneNodes[static_cast<size_t>(index)].name.c_str()), index);
    }
    return true;
}
