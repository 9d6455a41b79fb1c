#include "Tools/pvxdump/AnimJson.h"

#include <cstring>
#include <utility>

#include <nlohmann/json.hpp>

#include "Tools/pvxdump/AnimNames.h"

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

json BonesToJson(const AnimInterm& anim, bool withKeys) {
    json bones = json::array();
    for (uint32_t i = 0; i < anim.GetBoneCount(); ++i) {
        const Anim::BoneStream& bone = anim.GetBone(static_cast<int32_t>(i));
        const MatrixStream* pStream = anim.GetMatrixStream(static_cast<int32_t>(i));
        json out = {
            {"name", bone.name.GetTextOrEmpty()}, {"animated", bone.isAnimated}, {"keyCount", GetKeyCount(pStream)}};
        if (withKeys)
            out["keys"] = KeysToJson(pStream);
        bones.push_back(std::move(out));
    }
    return bones;
}

json ControlsToJson(const AnimInterm& anim, bool withKeys) {
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

json CamerasToJson(const AnimInterm& anim, bool withKeys) {
    json cameras = json::array();
    for (uint32_t i = 0; i < anim.GetCameraCount(); ++i) {
        const Anim::CameraStream& camera = anim.GetCamera(static_cast<int32_t>(i));
        json out = {{"name", camera.name.GetTextOrEmpty()},
                    {"positionKeyCount", GetKeyCount(camera.pPosition.get())},
                    {"rotationKeyCount", GetKeyCount(camera.pRotation.get())}};
        if (withKeys) {
            out["positionKeys"] = KeysToJson(camera.pPosition.get());
            out["rotationKeys"] = KeysToJson(camera.pRotation.get());
        }
        cameras.push_back(std::move(out));
    }
    return cameras;
}

} // namespace

json ToJson(const AnimationContent& animation, bool withKeys) {
    json out = {{"name", animation.name}, {"version", animation.version}, {"size", animation.size}};
    if (!animation.pAnim)
        return out;
    const AnimInterm& anim = *animation.pAnim;
    out["frameCount"] = anim.GetFrameCount();
    out["duration"] = anim.GetDuration();
    out["framesPerSecond"] = GetFramesPerSecond(anim);
    out["bones"] = BonesToJson(anim, withKeys);
    out["controls"] = ControlsToJson(anim, withKeys);
    out["cameras"] = CamerasToJson(anim, withKeys);
    return out;
}
