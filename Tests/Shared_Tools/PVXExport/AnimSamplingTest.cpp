#include "Shared_Tools/PVXExport/AnimSampling.h"

#include <cmath>

#include "Host/Sdk/Core.h"
#include "Shared/Cross/RenderAnim/AnimInterm.h"
#include "Shared/Cross/RenderAnim/AnimListGeneric.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"
#include "Shared/Cross/RenderAnim/Shader.h"
#include "Shared/Cross/RenderAnim/Transform.h"
#include "Shared_Tools/PVXExport/FrameRange.h"
#include "Tests/Host/Scene/SceneFixture.h"
#include "Tests/Shared_Tools/PVXExport/ExportFixture.h"

namespace {

constexpr float s_Near = 1e-5f;
constexpr int s_FrameCount = 11;

// Exports a scene of eleven frames, a bone and a mesh, and looks at the animation of the file.
class AnimSamplingTest : public ExportTest {
protected:
    AnimSamplingTest() {
        SetFrames(s_FrameCount);
        AddQuad("Quad");
    }

    void SetFrames(int count) { m_Scene.SetAnimRange({0, (count - 1) * m_Ticks}); }
    // From the first frame to the last.
    scene::FloatTrack Ramp(float from, float to) const {
        return scene::FloatTrack({{.ticks = 0.0, .value = from}, {.ticks = 10.0 * m_Ticks, .value = to}});
    }
    void WithAnim(const std::function<void(const AnimInterm&)>& look) {
        Export();
        WithStoredAnim(look);
    }
    // Null without one.
    static const FloatStream* FindControl(const Anim& anim, const char* pName, int32_t type, int32_t channel = 0,
                                          int32_t property = ControlProperty_Amount) {
        const int32_t index =
            anim.FindControl(ra::Name(pName), {.type = type, .channel = channel, .property = property});
        return index < 0 ? nullptr : anim.GetControl(index).pValues.get();
    }

    const int m_Ticks = GetTicksPerFrame();
    scene::Node& m_Bone = scene::AddBone(m_Scene, "Bone");
};

TEST_F(AnimSamplingTest, FramesComeFromTheRange) {
    m_Scene.SetAnimRange({2 * m_Ticks, 5 * m_Ticks + m_Ticks / 2});
    const std::vector<AnimFrame> frames = GetFrameRange(m_Scene);
    ASSERT_EQ(frames.size(), 4u) << "what is left of a frame at the end doesn't count";
    EXPECT_EQ(frames[0].tick, 2 * m_Ticks);
    EXPECT_EQ(frames[3].tick, 5 * m_Ticks);
    EXPECT_EQ(frames[0].time, 0.0f);
    EXPECT_NEAR(frames[3].time, 1.0f, s_Near);
}

TEST_F(AnimSamplingTest, WhatHasATargetLooksAtIt) {
    scene::Node& target = scene::AddDummy(m_Scene, "Target");
    target.SetController(std::make_unique<SlideController>([this](TimeValue t) { return 4.0 * t / m_Ticks; }));
    m_Bone.SetLocal({0, 5, 1});
    m_Bone.SetTarget(&target);
    scene::AddBone(m_Scene, "Stale").GetUserProperties().Add("Stale", "");
    scene::AddCamera(m_Scene, "Eye", {}, &target).SetLocal({0, 5, 1});
    WithAnim([&](const AnimInterm& anim) {
        EXPECT_STREQ(anim.GetName(), "Foo");
        EXPECT_EQ(anim.GetFrameCount(), s_FrameCount);
        EXPECT_FLOAT_EQ(anim.GetDuration(), s_FrameCount / static_cast<float>(GetFrameRate()));
        EXPECT_TRUE(anim.GetBone(0).isAnimated);
        EXPECT_FALSE(anim.GetBone(1).isAnimated);
        const Anim::CameraStream& camera = anim.GetCamera(0);
        ASSERT_EQ(camera.pPosition->GetKeyCount(), s_FrameCount) << "a camera that stands still keeps all keys";
        const glm::vec3 eye(0, 1, -5);
        for (size_t frame = 0; frame < s_FrameCount; ++frame) {
            const glm::vec3 ahead = glm::normalize(glm::vec3(-4.0f * static_cast<float>(frame), 0, 0) - eye);
            const MatrixKey key = anim.GetMatrixStream(0)->GetKeys()[frame];
            EXPECT_NEAR(key.time, static_cast<float>(frame) / (s_FrameCount - 1), s_Near);
            EXPECT_LE(key.time, 1.0f);
            EXPECT_LT(glm::length(key.value[2] - ahead), s_Near) << frame;
            EXPECT_LT(glm::length(key.value[3] - eye), s_Near);
            EXPECT_LT(glm::length(camera.pPosition->GetKeys()[frame].value - eye), s_Near);
            const glm::mat4x3 m = ra::MakeTransform(camera.pRotation->GetKeys()[frame].value, {});
            EXPECT_LT(glm::length(m[2] - ahead), s_Near) << frame;
        }
    });
}

TEST_F(AnimSamplingTest, OneFrameGivesStreamsOfOneKey) {
    SetFrames(1);
    scene::AddCamera(m_Scene, "Eye", {});
    AddPainted("Glows", {.selfIllum = Ramp(0.0f, 1.0f)}).SetVisibility(Ramp(0.25f, 1.0f));
    WithAnim([&](const AnimInterm& anim) {
        EXPECT_EQ(anim.GetFrameCount(), 1);
        ASSERT_EQ(anim.GetMatrixStream(0)->GetKeyCount(), 1);
        EXPECT_EQ(anim.GetMatrixStream(0)->GetKeys()[0].time, 0.0f);
        EXPECT_EQ(anim.GetCamera(0).pRotation->GetKeyCount(), 1);
        ASSERT_EQ(anim.GetControlCount(), 2u) << "visibility alone";
        EXPECT_EQ(FindControl(anim, "OnGlows", ControlTarget_Mesh)->GetKeys()[0].value, 0.25f);
    });
}

TEST_F(AnimSamplingTest, EveryMeshHasAVisibility) {
    AddQuad("Fades").SetVisibility(Ramp(0.0f, 1.0f));
    AddQuad("Hidden").GetUserProperties().Add("ForceInvisible", "no matter what");
    WithAnim([&](const AnimInterm& anim) {
        const auto find = [&](const char* pName) { return FindControl(anim, pName, ControlTarget_Mesh); };
        ASSERT_TRUE(find("Quad") && find("Fades") && find("Hidden"));
        ASSERT_EQ(find("Quad")->GetKeyCount(), 1);
        EXPECT_EQ(find("Quad")->GetKeys()[0].value, 1.0f);
        ASSERT_EQ(find("Fades")->GetKeyCount(), 2) << "a ramp keeps its ends";
        EXPECT_EQ(find("Fades")->GetKeys()[1].value, 1.0f);
        EXPECT_EQ(find("Hidden")->GetKeys()[0].value, 0.0f);
    });
}

TEST_F(AnimSamplingTest, MaterialsGetTheTracksThatChange) {
    AddPainted("Glows", {.opacity = 0.5f, .selfIllum = Ramp(0.0f, 2.0f)});
    AddPainted("Vanishes", {.opacity = Ramp(1.0f, 0.25f)});
    WithAnim([&](const AnimInterm& anim) {
        const auto find = [&](const char* pName, int32_t channel) {
            return FindControl(anim, pName, ControlTarget_Shader, channel);
        };
        const FloatStream* pGlow = find("Glows", CN_SelfIllumination);
        ASSERT_TRUE(pGlow);
        EXPECT_EQ(pGlow->GetKeys().back().value, 1.0f) << "amounts end at 1";
        EXPECT_EQ(pGlow->GetKeyCount(), 3) << "the knee where it reaches 1 stays";
        EXPECT_FALSE(find("Glows", CN_Opacity));
        EXPECT_TRUE(find("Vanishes", CN_Opacity));
        EXPECT_FALSE(find("Vanishes", CN_SelfIllumination));
    });
}

TEST_F(AnimSamplingTest, MapsFadeAndMove) {
    scene::UVSettings uv;
    uv.uOffset = Ramp(0.0f, 1.0f);
    uv.vOffset = Ramp(0.0f, 1.0f);
    uv.vScale = Ramp(2.0f, 6.0f);
    auto& bitmap = m_Scene.Make<scene::Bitmap>("Map", "Z:\\nowhere\\map.tga", uv);
    scene::StandardSettings settings;
    settings.maps[ID_DI] = {.pMap = &bitmap, .amount = Ramp(0.0f, 1.0f)};
    settings.maps[ID_OP] = {.pMap = &bitmap, .amount = Ramp(1.0f, 0.0f)};
    AddPainted("Water", settings);
    WithAnim([&](const AnimInterm& anim) {
        const auto last = [&](int32_t channel, int32_t property) {
            const FloatStream* pStream = FindControl(anim, "Water", ControlTarget_Shader, channel, property);
            return pStream ? pStream->GetKeys().back().value : std::nanf("");
        };
        EXPECT_EQ(last(CN_Diffuse, ControlProperty_Amount), 1.0f);
        EXPECT_EQ(last(CN_Opacity, ControlProperty_Amount), 0.0f);
        EXPECT_EQ(last(CN_Diffuse, ControlProperty_OffsetU), -1.0f);
        EXPECT_EQ(last(CN_Diffuse, ControlProperty_OffsetV), -1.0f);
        EXPECT_EQ(last(CN_Diffuse, ControlProperty_ScaleV), 2.0f) << "against the scale at the start";
        EXPECT_TRUE(std::isnan(last(CN_Diffuse, ControlProperty_ScaleU))) << "what stands still has no stream";
    });
    WithShader(
        [](const Shader& shader) {
            EXPECT_EQ(shader.GetChannelMode(CN_Diffuse), ChannelMode_Animated);
            EXPECT_EQ(shader.GetChannelMode(CN_Opacity), ChannelMode_Animated);
        },
        1);
    EXPECT_THAT(m_Messages, testing::IsSupersetOf(
                                {"Warning : Material [Water]: Material opacity not set to zero when animating texture "
                                 "opacity - exported file may not look the same.",
                                 "Warning : Material [Water]: Material diffuse not set to black when animating "
                                 "texture diffuse amount - exported file may not look the same."}));
    EXPECT_EQ(ExportSilently("Run.pvx"), 1);
    EXPECT_TRUE(m_User.GetShown().empty()) << "a clip alone says nothing about its materials";
    WithStoredAnim(
        [](const AnimInterm& anim) { EXPECT_TRUE(FindControl(anim, "Water", ControlTarget_Shader, CN_Opacity)); },
        "Run.pvx");
}

TEST_F(AnimSamplingTest, WithoutBonesNothingIsSampled) {
    m_Bone.GetUserProperties().Add("Remove", "");
    Export();
    WithModel([](const RenderModel& model) { EXPECT_EQ(model.GetAnimList()->GetCount(), 0u); });
}

} // namespace
