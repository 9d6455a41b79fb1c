#include "Shared/Cross/RenderAnim/Intermediate/ControlOffsets.h"

#include <algorithm>
#include <cmath>
#include <unordered_set>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/MeshGroup.h"
#include "Shared/Cross/RenderAnim/ReferencePose.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"
#include "Shared/Cross/RenderAnim/Shader.h"

namespace ra::intermediate {

namespace {

constexpr float s_Tolerance = 0.005f; // that of the exporter, which thins the keys

// -1 for a target that the model lacks.
int32_t FindTarget(const Anim::ControlStream& control, const MeshGroup* pGroup) {
    if (!pGroup)
        return MeshGroup::InvalidIndex;
    return control.ref.type == ControlTarget_Shader ? pGroup->FindShader(control.name.GetTextOrEmpty())
                                                    : pGroup->FindMesh(control.name);
}

bool IsTargetMissing(const Anim::ControlStream& control, const RenderModel& model, const char* pAnimName) {
    const bool isShader = control.ref.type == ControlTarget_Shader;
    if (!isShader && control.ref.type != ControlTarget_Mesh)
        return false;
    if (FindTarget(control, model.GetMeshGroup()) != MeshGroup::InvalidIndex)
        return false;
    dbWarningf("Could not find %s '%s' in model '%s' for animation '%s'", isShader ? "shader" : "mesh",
               control.name.GetTextOrEmpty(), model.GetName(), pAnimName);
    return true;
}

float GetTextureOffset(const Shader& shader, uint32_t channel, int component) {
    // Of the two one is the identity: a matrix that all maps of a material share is baked into the vertices.
    const glm::mat4 matrix = shader.GetChannelMatrix(channel) * shader.GetChannelBakedMatrix(channel);
    return matrix[3][component];
}

// What the shader has without an animation.
float GetBase(const ControlRef& ref, const Shader& shader) {
    const auto channel = static_cast<uint32_t>(ref.channel);
    if (channel >= ChannelCount)
        return 0.0f;
    switch (ref.property) {
    case ControlProperty_Amount:
        return ReferencePose::GetAnimatableValue(channel, shader.GetChannelAnimatedColour(channel));
    case ControlProperty_OffsetU:
        return GetTextureOffset(shader, channel, 0);
    case ControlProperty_OffsetV:
        return GetTextureOffset(shader, channel, 1);
    default:
        return 0.0f; // scales are offsets to 1 already
    }
}

void SubtractBase(FloatStream& values, float base) {
    if (base == 0.0f)
        return;
    for (FloatKey& key : values.GetKeys())
        key.value -= base;
}

bool StaysAtZero(const FloatStream& values) {
    return std::ranges::all_of(values.GetKeys(),
                               [](const FloatKey& key) { return std::abs(key.value) <= s_Tolerance; });
}

} // namespace

bool MakeOffsets(Anim::ControlStream& control, const RenderModel& model, const char* pAnimName) {
    if (IsTargetMissing(control, model, pAnimName) || !control.pValues)
        return false;
    if (control.ref.type == ControlTarget_Shader) {
        const MeshGroup& group = *model.GetMeshGroup();
        const auto shader = static_cast<uint32_t>(FindTarget(control, &group));
        SubtractBase(*control.pValues, GetBase(control.ref, *group.GetShader(shader).GetData()));
    }
    const bool isVisibility = control.ref.type == ControlTarget_Mesh && control.ref.property == ControlProperty_Amount;
    return isVisibility || !StaysAtZero(*control.pValues);
}

void AddMissingVisibility(Anim& anim, const MeshGroup& group) {
    std::unordered_set<Name> driven; // only ever looked up
    for (uint32_t i = 0; i < anim.GetControlCount(); ++i) {
        const Anim::ControlStream& control = anim.GetControl(static_cast<int32_t>(i));
        if (control.ref.type == ControlTarget_Mesh && control.ref.channel == 0)
            driven.insert(control.name);
    }
    for (uint32_t i = 0; i < group.GetMeshCount(); ++i) {
        const Name& name = group.GetMeshName(i);
        if (!driven.insert(name).second)
            continue;
        auto pValues = std::make_unique<FloatStream>();
        pValues->AddKey(0.0f, 0.0f);
        anim.TakeControl({.name = name, .ref = {.type = ControlTarget_Mesh}, .pValues = std::move(pValues)});
    }
}

} // namespace ra::intermediate
