#include "Host/Scene/Modifiers.h"

#include "Host/Scene/Node.h"
#include "Host/Sdk/ClassIds.h"
#include "Host/Sdk/Mesh.h"

#include <algorithm>

namespace scene {

SkinSource::~SkinSource() = default;

// The weights as a module reads them.
class SkinModifier::Context : public ISkinContextData {
public:
    Context(std::shared_ptr<const SkinWeights> pWeights, int boneCount)
        : m_pWeights(std::move(pWeights)), m_BoneCount(boneCount) {}

    int GetNumPoints() const override { return static_cast<int>(m_pWeights->GetPointCount()); }

    int GetNumAssignedBones(int point) const override { return static_cast<int>(GetPoint(point).size()); }

    int GetAssignedBone(int point, int index) const override {
        const SkinWeights::Influence* pInfluence = Find(point, index);
        return pInfluence && pInfluence->bone >= 0 && pInfluence->bone < m_BoneCount ? pInfluence->bone : -1;
    }

    float GetBoneWeight(int point, int index) const override {
        const SkinWeights::Influence* pInfluence = Find(point, index);
        return pInfluence ? pInfluence->weight : 0.0f;
    }

private:
    std::span<const SkinWeights::Influence> GetPoint(int point) const {
        if (point < 0 || point >= GetNumPoints())
            return {};
        return m_pWeights->GetPoint(static_cast<size_t>(point));
    }

    const SkinWeights::Influence* Find(int point, int index) const {
        const auto influences = GetPoint(point);
        return index >= 0 && static_cast<size_t>(index) < influences.size() ? &influences[static_cast<size_t>(index)]
                                                                            : nullptr;
    }

    std::shared_ptr<const SkinWeights> m_pWeights;
    int m_BoneCount;
};

namespace {

// From the mesh's space at binding to world space at `t`, for each bone.
std::vector<Affine> GetBoneTransforms(std::span<const SkinBone> bones, TimeValue t) {
    std::vector<Affine> transforms;
    transforms.reserve(bones.size());
    for (const SkinBone& bone : bones) {
        const Affine inverseBind = ToAffine(bone.inverseBind);
        transforms.push_back(bone.pNode ? Concatenate(inverseBind, bone.pNode->GetWorld(t)) : inverseBind);
    }
    return transforms;
}

// A point without an influence that counts stays where it is.
void DeformPoint(Point3& point, std::span<const SkinWeights::Influence> influences, std::span<const Affine> bones) {
    const glm::dvec3 p(point);
    glm::dvec3 sum(0.0);
    bool any = false;
    for (const SkinWeights::Influence& influence : influences) {
        if (influence.bone < 0 || static_cast<size_t>(influence.bone) >= bones.size())
            continue;
        const Affine& m = bones[static_cast<size_t>(influence.bone)];
        sum += static_cast<double>(influence.weight) * (p.x * m[0] + p.y * m[1] + p.z * m[2] + m[3]);
        any = true;
    }
    if (any)
        point = Point3(sum);
}

bool CarriesModifier(const INode* pNode, const Modifier* pModifier) {
    Object* pObject = pNode ? pNode->GetObjectRef() : nullptr;
    while (pObject && pObject->SuperClassID() == GEN_DERIVOB_CLASS_ID) {
        const auto& derived = static_cast<const IDerivedObject&>(*pObject);
        for (int i = 0; i < derived.NumModifiers(); ++i)
            if (derived.GetModifier(i) == pModifier)
                return true;
        pObject = derived.GetObjRef();
    }
    return false;
}

} // namespace

SkinModifier::SkinModifier(std::vector<SkinBone> bones, std::unique_ptr<SkinSource> pSource)
    : m_Bones(std::move(bones)), m_pSource(std::move(pSource)) {}

SkinModifier::~SkinModifier() = default;

Class_ID SkinModifier::ClassID() const { return SKIN_CLASSID; }
void SkinModifier::GetClassName(std::string& out) const { out = "Skin"; }

void* SkinModifier::GetInterface(uint32_t id) { return id == I_SKIN ? static_cast<ISkin*>(this) : nullptr; }

void SkinModifier::ReleaseInterface(uint32_t id, void*) {
    if (id == I_SKIN)
        m_pContext.reset();
}

void SkinModifier::Deform(Mesh& mesh, TimeValue t, INode*) {
    const std::vector<Affine> bones = GetBoneTransforms(m_Bones, t);
    const std::shared_ptr<const SkinWeights> pWeights = m_pSource->Build();
    const size_t count = std::min(mesh.verts.size(), pWeights->GetPointCount());
    for (size_t i = 0; i < count; ++i)
        DeformPoint(mesh.verts[i], pWeights->GetPoint(i), bones);
}

INode* SkinModifier::GetBone(int index) const {
    return index >= 0 && index < GetNumBones() ? m_Bones[static_cast<size_t>(index)].pNode : nullptr;
}

int SkinModifier::GetBoneInitTM(INode* pBone, Matrix3& tm, bool) const {
    const auto it = std::ranges::find(m_Bones, pBone, [](const SkinBone& bone) -> INode* { return bone.pNode; });
    if (it == m_Bones.end())
        return ISkin::Failed;
    tm = Inverse(it->inverseBind);
    return ISkin::Ok;
}

ISkinContextData* SkinModifier::GetContextInterface(INode* pNode) {
    if (!CarriesModifier(pNode, this))
        return nullptr;
    if (!m_pContext)
        m_pContext = std::make_unique<Context>(m_pSource->Build(), GetNumBones());
    return m_pContext.get();
}

} // namespace scene
