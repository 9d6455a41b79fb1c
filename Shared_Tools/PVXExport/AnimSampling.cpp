#include "Shared_Tools/PVXExport/AnimSampling.h"

#include <algorithm>
#include <memory>
#include <span>
#include <utility>
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
#include "Shared/PC/Memory/OSMemory.h"
#include "Shared_Tools/PVXExport/ControlTracks.h"
#include "Shared_Tools/PVXExport/ExportContext.h"
#include "Shared_Tools/PVXExport/ExportScene.h"
#include "Shared_Tools/PVXExport/FrameRange.h"
#include "Shared_Tools/PVXExport/ModelTransform.h"

namespace {

// The host works out a whole frame at a time, so all bones are asked for it while it is in the processor's cache. Their
// keys wait until there are some frames of them: a stream of keys lies far from the next bone's.
constexpr size_t s_FramesInBlock = 8;

glm::vec3 GetTargetPosition(INode& node, TimeValue t) {
    Matrix3 target = IdentityMatrix();
    node.GetTargetTM(t, target);
    return ModelTransform::AxesFromHost(target[3]);
}

glm::mat4x3 LookAtTarget(const glm::mat4x3& m, INode& node, TimeValue t) {
    return ModelTransform::LookAt(m[3], GetTargetPosition(node, t), m[1]);
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

// Gathers the keys of all bones.
class BoneSampler {
public:
    BoneSampler(const BoneNodes& bones, size_t frameCount, AnimInterm& anim)
        : m_Bones(bones), m_Block(bones.size() * s_FramesInBlock) {
        OSMemory::HeapExpect(bones.size() * frameCount * sizeof(MatrixKey));
        m_Streams.reserve(bones.size());
        for (size_t bone = 0; bone < bones.size(); ++bone) {
            const auto index = static_cast<int32_t>(bone);
            anim.SetBoneName(index, ra::Name(bones[bone].name.c_str()));
            anim.SetBoneAnimated(index, bones[bone].visible);
            m_Streams.push_back(anim.MakeMatrixStream(index, static_cast<uint32_t>(frameCount)));
            if (bones[bone].pNode->GetTarget())
                m_BonesWithTarget.push_back(bone);
        }
    }

    // Frame after frame, and `Flush` at the end.
    void Sample(const AnimFrame& frame) {
        MatrixKey* pKeys = m_Block.data() + m_InBlock * m_Bones.size();
        const float time = std::clamp(frame.time, 0.0f, 1.0f);
        ModelTransform::FourMatrices matrices = {};
        for (size_t first = 0; first < m_Bones.size(); first += matrices.size()) {
            const size_t count = std::min(matrices.size(), m_Bones.size() - first);
            for (size_t i = 0; i < count; ++i)
                matrices[i] = m_Bones[first + i].pNode->GetNodeTM(frame.tick);
            ModelTransform::FromHost(matrices);
            for (size_t i = 0; i < count; ++i)
                pKeys[first + i] = {time, matrices[i]};
        }
        for (const size_t bone : m_BonesWithTarget)
            pKeys[bone].value = LookAtTarget(pKeys[bone].value, *m_Bones[bone].pNode, frame.tick);
        if (++m_InBlock == s_FramesInBlock)
            Flush();
    }
    void Flush() {
        for (size_t bone = 0; bone < m_Streams.size(); ++bone)
            for (size_t frame = 0; frame < m_InBlock; ++frame)
                m_Streams[bone][m_Done + frame] = m_Block[frame * m_Streams.size() + bone];
        m_Done += std::exchange(m_InBlock, 0);
    }

private:
    const BoneNodes& m_Bones;
    std::vector<std::span<MatrixKey>> m_Streams;
    std::vector<size_t> m_BonesWithTarget;
    std::vector<MatrixKey> m_Block; // frame by frame
    size_t m_InBlock = 0;
    size_t m_Done = 0;
};

class CameraSampler {
public:
    CameraSampler(INode& node, size_t frameCount)
        : m_Node(node), m_pPosition(std::make_unique<Vec3Stream>()), m_pRotation(std::make_unique<QuatStream>()),
          m_Positions(m_pPosition->SetKeyCount(static_cast<uint32_t>(frameCount))),
          m_Rotations(m_pRotation->SetKeyCount(static_cast<uint32_t>(frameCount))) {}

    void Sample(const AnimFrame& frame, size_t number) {
        const glm::mat4x3 m = GetCameraMatrix(m_Node, frame.tick);
        m_Positions[number] = {frame.time, m[3]};
        m_Rotations[number] = {frame.time, ra::GetRotation(m)};
    }
    void AddTo(Anim& anim) {
        anim.SetCameraStreams(anim.AddCamera(ra::Name(m_Node.GetName())), std::move(m_pPosition),
                              std::move(m_pRotation));
    }

private:
    INode& m_Node;
    std::unique_ptr<Vec3Stream> m_pPosition;
    std::unique_ptr<QuatStream> m_pRotation;
    std::span<Vec3Key> m_Positions;
    std::span<QuatKey> m_Rotations;
};

// One pass over the frames for all that moves. Returns the cameras, which come into the animation behind the materials.
std::vector<CameraSampler> SampleNodes(const ExportScene& scene, std::span<const AnimFrame> frames, AnimInterm& anim) {
    BoneSampler bones(scene.m_BoneNodes, frames.size(), anim);
    std::vector<CameraSampler> cameras;
    cameras.reserve(scene.m_CameraNodes.size());
    for (INode* pNode : scene.m_CameraNodes)
        cameras.emplace_back(*pNode, frames.size());
    for (size_t i = 0; i < frames.size(); ++i) {
        bones.Sample(frames[i]);
        for (CameraSampler& camera : cameras)
            camera.Sample(frames[i], i);
    }
    bones.Flush();
    return cameras;
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
    if (frames.size() < all.size())
        dbWarningf("Animation has exceeded %d key frames. Failing addition.",
                   static_cast<int>(MatrixStream::MaxKeyCount));

    const uint32_t boneCount = model.GetSkeleton()->GetBoneCount();
    auto pAnimNode = std::make_unique<AnimListNode>(boneCount, model.GetCameraCount());
    auto pAnim = std::make_unique<AnimInterm>();
    pAnim->SetName(context.m_ModelName.c_str());
    pAnim->SetLength(static_cast<int32_t>(all.size()), static_cast<float>(GetFrameRate()));
    pAnim->SetBoneCount(boneCount);

    std::vector<CameraSampler> cameras = SampleNodes(scene, frames, *pAnim);
    ControlTracks::AddMaterials(scene, context, frames, *pAnim);
    for (CameraSampler& camera : cameras)
        camera.AddTo(*pAnim);
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
