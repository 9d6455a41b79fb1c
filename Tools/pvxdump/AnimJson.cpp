#include "Tools/pvxdump/AnimJson.h"

#include <cstring>
#include <utility>

#include "Shared/Cross/RenderAnim/AnimInterm.h"
#include "Tools/pvxdump/AnimNames.h"
#include "Tools/pvxdump/JsonValues.h"

namespace {

using nlohmann::json;

template <class V>
json KeysToJson(const AnimStream<V>* pStream) {
    json keys = json::array();
    if (!pStream)
        return keys;
    for (const AnimKey<V>& key : pStream->GetKeys()) {
        // A key is nothing but floats, in the file as in memory.
        float values[sizeof(key) / sizeof(float)];
        std::memcpy(values, &key, sizeof(key));
        keys.push_back(values);
    }
    return keys;
}

void AddMatrices(json& out, const MatrixStream* pStream, bool withKeys) {
    out["keyCount"] = GetKeyCount(pStream);
    if (withKeys)
        out["keys"] = KeysToJson(pStream);
}

void AddPlaces(json& out, const Vec3Stream* pPosition, const QuatStream* pRotation, bool withKeys) {
    out["positionKeyCount"] = GetKeyCount(pPosition);
    out["rotationKeyCount"] = GetKeyCount(pRotation);
    if (!withKeys)
        return;
    out["positionKeys"] = KeysToJson(pPosition);
    out["rotationKeys"] = KeysToJson(pRotation);
}

json BonesToJson(const Anim& anim, bool withKeys) {
    const auto* pInterm = dynamic_cast<const AnimInterm*>(&anim);
    json bones = json::array();
    for (uint32_t i = 0; i < anim.GetBoneCount(); ++i) {
        const auto index = static_cast<int32_t>(i);
        const Anim::BoneStream& bone = anim.GetBone(index);
        json out = {{"name", bone.name.GetTextOrEmpty()}, {"animated", bone.isAnimated}};
        if (pInterm)
            AddMatrices(out, pInterm->GetMatrixStream(index), withKeys);
        else
            AddPlaces(out, bone.pPosition.get(), bone.pRotation.get(), withKeys);
        bones.push_back(std::move(out));
    }
    return bones;
}

json ControlsToJson(const Anim& anim, bool withKeys) {
    json controls = json::array();
    for (uint32_t i = 0; i < anim.GetControlCount(); ++i) {
        const Anim::ControlStream& control = anim.GetControl(static_cast<int32_t>(i));
        json out = {{"target", GetTargetName(control.ref.type)},
                    {"targetKind", control.ref.type},
                    {"name", control.name.GetTextOrEmpty()},
                    {"channel", control.ref.channel},
                    {"parameter", control.ref.property},
                    {"drives", GetDrivenName(control.ref)},
                    {"keyCount", GetKeyCount(control.pValues.get())}};
        if (withKeys)
            out["keys"] = KeysToJson(control.pValues.get());
        controls.push_back(std::move(out));
    }
    return controls;
}

json CamerasToJson(const Anim& anim, bool withKeys) {
    json cameras = json::array();
    for (uint32_t i = 0; i < anim.GetCameraCount(); ++i) {
        const Anim::CameraStream& camera = anim.GetCamera(static_cast<int32_t>(i));
        json out = {{"name", camera.name.GetTextOrEmpty()}};
        AddPlaces(out, camera.pPosition.get(), camera.pRotation.get(), withKeys);
        cameras.push_back(std::move(out));
    }
    return cameras;
}

} // namespace

json ToJson(const AnimationContent& animation, bool withKeys) {
    json out = {{"name", animation.name}, {"version", animation.version}, {"size", animation.size}};
    if (animation.bounds)
        out["bounds"] = ValueToJson(*animation.bounds);
    if (!animation.pAnim) {
        out["xref"] = {{"model", animation.xrefModel}, {"animation", animation.xrefAnim}};
        return out;
    }
    const Anim& anim = *animation.pAnim;
    out["frameCount"] = anim.GetFrameCount();
    out["duration"] = anim.GetDuration();
    out["framesPerSecond"] = GetFramesPerSecond(anim);
    out["bones"] = BonesToJson(anim, withKeys);
    out["controls"] = ControlsToJson(anim, withKeys);
    out["cameras"] = CamerasToJson(anim, withKeys);
    return out;
}
