#include "Shared_Tools/PVXExport/AnimSampling.h"

#include <algorithm>
#include <memory>
#include <span>
#include <vector>

#include "Host/Sdk/Core.h"
#include "Host/Sdk/Node.h"
#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/AnimInterm.h"
#include "Shared/Cross/RenderAnim/AnimListGeneric.h"
#include "Shared/Cross/RenderAnim/MeshGroup.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"
#include "Shared/Cross/RenderAnim/Skeleton.h"
#include "Shared/Cross/RenderAnim/Transform.h"
#include "Shared_Tools/PVXExport/ControlTracks.h"
#include "Shared_Tools/PVXExport/ExportContext.h"
#include "Shared_Tools/PVXExport/ExportScene.h"
#include "Shared_Tools/PVXExport/FrameRange.h"
#include "Shared_Tools/PVXExport/ModelTransform.h"

namespace {

// Bones are sampled one after the other within a block of frames: the host still knows the block's frames from the
// first bone, and the keys of a bone are written where the last ones were.
constexpr size_t s_FramesInBlock = 32;

glm::vec3 GetTargetPosition(INode& node, TimeValue t) {
    Matrix3 target = IdentityMatrix();
    node.GetTargetTM(t, target);
    return ModelTransform::AxesFromHost(target[3]);
}

glm::mat4x3 LookAtTarget(const glm::mat4x3& m, INode& node, TimeValue t) {
    return ModelTransform::LookAt(m[3], GetTargetPosition(node, t), m[1]);
}

glm::mat4x3 GetBoneMatrix(INode& node, TimeValue t) {
    const glm::mat4x3 m = ModelTransform::FromHost(node.GetNodeTM(t));
    return node.GetTarget() ? LookAtTarget(m, node, t) : m;
}

// A camera looks along its own -Z in the host and along Z in the game.
glm::mat4x3 GetCameraMatrix(INode& node, TimeValue t) {
    glm::mat4x3 m = ModelTransform::FromHost(node.GetNodeTM(t));
    if (node.GetTarget())
        return LookAtTarget(m, node, t);
    m[0] = -m[0];
    m[2] = -m[2];
    return m;
}

void SampleBones(const BoneNodes& bones, std::span<const AnimFrame> frames, AnimInterm& anim) {
    std::vector<std::span<MatrixKey>> streams;
    streams.reserve(bones.size());
    for (size_t bone = 0; bone < bones.size(); ++bone) {
        const auto index = static_cast<int32_t>(bone);
        anim.SetBoneName(index, ra::Name(bones[bone].name.c_str()));
        anim.SetBoneAnimated(index, bones[bone].visible);
        streams.push_back(anim.MakeMatrixStream(index, static_cast<uint32_t>(frames.size())));
    }
    for (size_t begin = 0; begin < frames.size(); begin += s_FramesInBlock) {
        const size_t end = std::min(begin + s_FramesInBlock, frames.size());
        for (size_t bone = 0; bone < bones.size(); ++bone)
            for (size_t i = begin; i < end; ++i)
                streams[bone][i] = {std::clamp(frames[i].time, 0.0f, 1.0f),
                                    GetBoneMatrix(*bones[bone].pNode, frames[i].tick)};
    }
}

void SampleCamera(INode& node, std::span<const AnimFrame> frames, Anim& anim) {
    auto pPosition = std::make_unique<Vec3Stream>();
    auto pRotation = std::make_unique<QuatStream>();
    const std::span<Vec3Key> positions = pPosition->SetKeyCount(static_cast<uint32_t>(frames.size()));
    const std::span<QuatKey> rotations = pRotation->SetKeyCount(static_cast<uint32_t>(frames.size()));
    for (size_t i = 0; i < frames.size(); ++i) {
        const glm::mat4x3 m = GetCameraMatrix(node, frames[i].tick);
        positions[i] = {frames[i].time, m[3]};
        rotations[i] = {frames[i].time, ra::GetRotation(m)};
    }
    anim.SetCameraStreams(anim.AddCamera(ra::Name(node.GetName())), std::move(pPosition), std::move(pRotation));
}

// The group's index of each of the scene's meshes, by name; -1 for one that isn't there.
std::vector<int32_t> MapMeshes(const ExportScene& scene, const ra::MeshGroup& group) {
    std::vector<int32_t> meshIndexRemap;
    meshIndexRemap.reserve(scene.m_MeshNodes.size());
    for (const MeshNode& node : scene.m_MeshNodes)
        meshIndexRemap.push_back(group.FindMesh(ra::Name(node.pNode->GetName())));
    return meshIndexRemap;
}

bool RebindShader(const ExportScene& scene, const ra::MeshGroup& group, int32_t control, Anim& anim) {
    const UsedShader& used = scene.m_UsedShaders[static_cast<size_t>(anim.GetControl(control).ref.m_index)];
    const int32_t index = group.FindShader(used.shader->GetName());
    dbAssertText(index != ra::MeshGroup::InvalidIndex, "ref.m_index != ra::MeshGroup::InvalidIndex");
    if (index == ra::MeshGroup::InvalidIndex)
        return false;
    anim.SetControlIndex(control, index);
    anim.SetControlName(control, ra::Name(group.GetShader(static_cast<uint32_t>(index))->GetName()));
    return true;
}

bool RebindMesh(const std::vector<int32_t>& meshIndexRemap, const ra::MeshGroup& group, int32_t control, Anim& anim) {
    const int32_t before = anim.GetControl(control).ref.m_index;
    const int32_t index = meshIndexRemap[static_cast<size_t>(before)];
    dbAssertText(before == index, "ref.m_index == meshIndexRemap[ ref.m_index ]");
    if (index == ra::MeshGroup::InvalidIndex)
        return false;
    anim.SetControlIndex(control, index);
    anim.SetControlName(control, group.GetMeshName(static_cast<uint32_t>(index)));
    return true;
}

} // namespace

namespace AnimSampling {

void Sample(const ExportScene& scene, const ExportContext& context, const Interface& host, RenderModel& model) {
    dbAssertText(model.GetSkeleton(), "renderModel.GetSkeleton()");
    if (!model.GetSkeleton())
        return;
    const std::vector<AnimFrame> all = GetFrameRange(host);
    const std::span<const AnimFrame> frames(all.data(), std::min<size_t>(all.size(), MatrixStream::MaxKeyCount));

    const uint32_t boneCount = model.GetSkeleton()->GetBoneCount();
    auto pAnimNode = std::make_unique<AnimListNode>(boneCount, model.GetCameraCount());
    auto pAnim = std::make_unique<AnimInterm>();
    pAnim->SetName(context.m_ModelName.c_str());
    pAnim->SetLength(static_cast<int32_t>(all.size()), static_cast<float>(GetFrameRate()));
    pAnim->SetBoneCount(boneCount);

    SampleBones(scene.m_BoneNodes, frames, *pAnim);
    ControlTracks::AddMaterials(scene, context, frames, *pAnim);
    for (INode* pNode : scene.m_CameraNodes)
        SampleCamera(*pNode, frames, *pAnim);
    ControlTracks::AddVisibility(scene, frames, *pAnim);

    AnimRef anim;
    anim.Set(std::move(pAnim));
    pAnimNode->SetAnim(anim);
    model.GetAnimList()->AddNode(std::move(pAnimNode));
}

bool RebindToMeshGroup(const ExportScene& scene, RenderModel& model) {
    const AnimList& list = *model.GetAnimList();
    const ra::MeshGroup& group = *model.GetMeshGroup();
    if (list.GetCount() == 0)
        return true;
    Anim& anim = *list.GetNode(0)->GetAnim().GetData();
    const std::vector<int32_t> meshIndexRemap = MapMeshes(scene, group);
    for (uint32_t i = 0; i < anim.GetControlCount(); ++i) {
        const auto control = static_cast<int32_t>(i);
        const bool isShader = anim.GetControl(control).ref.type == ControlTarget_Shader;
        if (!(isShader ? RebindShader(scene, group, control, anim) : RebindMesh(meshIndexRemap, group, control, anim)))
            return false;
    }
    return true;
}

} // namespace AnimSampling
