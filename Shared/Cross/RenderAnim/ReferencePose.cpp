#include "Shared/Cross/RenderAnim/ReferencePose.h"

#include "Shared/Cross/RenderAnim/MeshGroup.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"
#include "Shared/Cross/RenderAnim/Shader.h"
#include "Shared/Cross/RenderAnim/Skeleton.h"

ReferencePose::ReferencePose(const RenderModel& model) {
    if (const ra::MeshGroup* pMeshGroup = model.GetMeshGroup()) {
        m_ShaderPoses.resize(pMeshGroup->GetShaderCount());
        for (uint32_t i = 0; i < pMeshGroup->GetShaderCount(); ++i) {
            const Shader& shader = *pMeshGroup->GetShader(i).GetData();
            for (uint32_t n = 0; n < ChannelCount; ++n)
                m_ShaderPoses[i][n].value = GetAnimatableValue(n, shader.GetChannelAnimatedColour(n));
        }
    }
    if (const Skeleton* pSkeleton = model.GetSkeleton()) {
        m_BoneMatrices.reserve(pSkeleton->GetBoneCount());
        for (uint32_t i = 0; i < pSkeleton->GetBoneCount(); ++i)
            m_BoneMatrices.push_back(pSkeleton->GetBone(static_cast<int32_t>(i)).GetReferenceMatrix());
    }
}

float ReferencePose::GetAnimatableValue(uint32_t channel, Colour colour) {
    // Greys stand for a strength, so one byte of them is as good as another; opacity lies in the alpha.
    return static_cast<float>(channel == CN_Opacity ? colour.a : colour.g) / 255.0f;
}
