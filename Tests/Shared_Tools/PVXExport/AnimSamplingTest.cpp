#include "Shared_Tools/PVXExport/AnimSampling.h"

#include <cmath>

#include "Host/Sdk/Core.h"
#include "Shared/Cross/RenderAnim/AnimInterm.h"
#include "Shared/Cross/RenderAnim/AnimListGeneric.h"
#include "Shared/Cross/RenderAnim/MeshGroup.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"
#include "Shared/Cross/RenderAnim/Skeleton.h"
#include "Shared/Cross/RenderAnim/Transform.h"
#include "Shared_Tools/PVXExport/ControlTracks.h"
#include "Shared_Tools/PVXExport/ExportContext.h"
#include "Shared_Tools/PVXExport/FrameRange.h"
#include "Shared_Tools/PVXExport/MeshBuilder.h"
#include "Shared_Tools/PVXExport/ModelNodes.h"
#include "Shared_Tools/PVXExport/PVXErrors.h"
#include "Shared_Tools/PVXExport/SceneWalk.h"
#include "Tests/Host/Scene/SceneFixture.h"
#include "Tests/Shared_Tools/PVXExport/ExportFixture.h"

namespace {

constexpr float s_Near = 1e-5f;

scene::FloatTrack Ramp(double ticks, float from, float to) {
    return scene::FloatTrack({{.ticks = 0.0, .value = from}, {.ticks = ticks, .value = to}});
}

// Exports the scene whole and looks at the animation of the file.
class AnimSamplingTest : public ExportTest {
protected:
    AnimSamplingTest() { m_Ticks = GetTicksPerFrame(); }

    void SetFrames(int count) { m_Scene.SetAnimRange({0, (count - 1) * m_Ticks}); }
    scene::Node& AddQuad(const std::string& name, Mtl* pMaterial = nullptr) {
        return scene::AddMesh(m_Scene, name, MakeQuad(), pMaterial);
    }
    void WithAnim(const std::function<void(const AnimInterm&)>& look) {
        Export();
        WithStoredAnim(look);
    }
    // Null without one.
    static const FloatStream* FindControl(const Anim& anim, const char* pName, int32_t type, int32_t channel,
                                          int32_t property) {
        const int32_t index =
            anim.FindControl(ra::Name(pName), {.type = type, .channel = channel, .property = property});
        return index < 0 ? nullptr : anim.GetControl(index).pValues.get();
    }

    int m_Ticks;
};

TEST_F(AnimSamplingTest, FramesComeFromTheRange) {
    m_Scene.SetAnimRange({2 * m_Ticks, 5 * m_Ticks + m_Ticks / 2});
    const std::vector<AnimFrame> frames = GetFrameRange(m_Scene);
    ASSERT_EQ(frames.size(), 4u) << "what is left of a frame at the end doesn't count";
    EXPECT_EQ(frames[0].tick, 2 * m_Ticks);
    EXPECT_EQ(frames[3].tick, 5 * m_Ticks);
    EXPECT_EQ(frames[0].time, 0.0f);
    EXPECT_NEAR(frames[3].time, 1.0f, s_Near);
    m_Scene.SetAnimRange({0, 0});
    ASSERT_EQ(GetFrameRange(m_Scene).size(), 1u);
    EXPECT_EQ(GetFrameRange(m_Scene)[0].time, 0.0f);
}

TEST_F(AnimSamplingTest, BonesKeepTheirWorldMatrixAtEveryFrame) {
    constexpr int frameCount = 70; // more than two blocks of frames
    SetFrames(frameCount);
    scene::Node& root = scene::AddBone(m_Scene, "Root");
    scene::Node& child = scene::AddBone(m_Scene, "Child", &root);
    child.SetLocal({0, 0, 5});
    root.SetController(std::make_unique<SlideController>([this](TimeValue t) { return 2.0 * t / m_Ticks; }));
    child.GetUserProperties().Add("Stale", "");
    AddQuad("Quad");
    WithAnim([&](const AnimInterm& anim) {
        EXPECT_STREQ(anim.GetName(), "Foo");
        EXPECT_EQ(anim.GetFrameCount(), frameCount);
        EXPECT_FLOAT_EQ(anim.GetDuration(), static_cast<float>(frameCount) / static_cast<float>(GetFrameRate()));
        ASSERT_EQ(anim.GetBoneCount(), 2u);
        EXPECT_TRUE(anim.GetBone(0).isAnimated);
        EXPECT_FALSE(anim.GetBone(1).isAnimated) << "a stale bone";
        ASSERT_EQ(anim.GetMatrixStream(1)->GetKeyCount(), frameCount);
        for (int frame = 0; frame < frameCount; ++frame) {
            const MatrixKey key = anim.GetMatrixStream(1)->GetKeys()[static_cast<size_t>(frame)];
            EXPECT_NEAR(key.time, static_cast<float>(frame) / (frameCount - 1), s_Near);
            EXPECT_LE(key.time, 1.0f);
            // The host's (x, 0, 5) in the game's axes.
            EXPECT_LT(glm::length(key.value[3] - glm::vec3(-2.0f * static_cast<float>(frame), 5, 0)), 1e-4f) << frame;
        }
    });
}

TEST_F(AnimSamplingTest, ABoneWithATargetLooksAtIt) {
    SetFrames(2);
    scene::Node& target = scene::AddDummy(m_Scene, "Target");
    target.SetLocal({0, -10, 0}); // ahead of the origin along the game's Z
    target.SetController(std::make_unique<SlideController>([](TimeValue t) { return t > 0 ? 3.0 : 0.0; }));
    scene::Node& bone = scene::AddBone(m_Scene, "Eye");
    bone.SetLocal({0, 4, 0});
    bone.SetTarget(&target);
    AddQuad("Quad");
    WithAnim([&](const AnimInterm& anim) {
        for (const MatrixKey& key : anim.GetMatrixStream(0)->GetKeys()) {
            const glm::vec3 eye = key.value[3];
            const glm::vec3 ahead(key.time > 0.5f ? -3.0f : 0.0f, 0, 0);
            EXPECT_LT(glm::length(key.value[2] - glm::normalize(ahead - eye)), s_Near);
        }
    });
}

TEST_F(AnimSamplingTest, ACameraWithATargetFollowsIt) {
    SetFrames(3);
    scene::AddBone(m_Scene, "Bone");
    AddQuad("Quad");
    scene::Node& target = scene::AddDummy(m_Scene, "Target");
    target.SetController(std::make_unique<SlideController>([this](TimeValue t) { return 4.0 * t / m_Ticks; }));
    scene::AddCamera(m_Scene, "Eye", {}, &target).SetLocal({0, 5, 1});
    WithAnim([&](const AnimInterm& anim) {
        const Anim::CameraStream& camera = anim.GetCamera(0);
        ASSERT_EQ(camera.pPosition->GetKeyCount(), 3) << "a camera that stands still keeps all keys";
        for (size_t frame = 0; frame < 3; ++frame) {
            const glm::vec3 eye(0, 1, -5);
            EXPECT_LT(glm::length(camera.pPosition->GetKeys()[frame].value - eye), s_Near);
            const glm::mat4x3 m = ra::MakeTransform(camera.pRotation->GetKeys()[frame].value, {});
            const glm::vec3 ahead = glm::vec3(-4.0f * static_cast<float>(frame), 0, 0) - eye;
            EXPECT_LT(glm::length(m[2] - glm::normalize(ahead)), s_Near) << frame;
        }
    });
}

TEST_F(AnimSamplingTest, OneFrameGivesStreamsOfOneKey) {
    SetFrames(1);
    scene::AddBone(m_Scene, "Bone").SetLocal({1, 2, 3});
    scene::AddCamera(m_Scene, "Eye", {});
    AddQuad("Quad", &AddMaterial("Glows", {.selfIllum = Ramp(10.0 * m_Ticks, 0.0f, 1.0f)}))
        .SetVisibility(Ramp(10.0 * m_Ticks, 0.25f, 1.0f));
    WithAnim([&](const AnimInterm& anim) {
        EXPECT_EQ(anim.GetFrameCount(), 1);
        ASSERT_EQ(anim.GetMatrixStream(0)->GetKeyCount(), 1);
        EXPECT_EQ(anim.GetMatrixStream(0)->GetKeys()[0].time, 0.0f);
        EXPECT_LT(glm::length(anim.GetMatrixStream(0)->GetKeys()[0].value[3] - glm::vec3(-1, 3, -2)), s_Near);
        EXPECT_EQ(anim.GetCamera(0).pRotation->GetKeyCount(), 1);
        ASSERT_EQ(anim.GetControlCount(), 1u) << "visibility alone";
        EXPECT_EQ(anim.GetControl(0).pValues->GetKeys()[0].value, 0.25f);
    });
}

TEST_F(AnimSamplingTest, EveryMeshHasAVisibility) {
    SetFrames(11);
    scene::AddBone(m_Scene, "Bone");
    AddQuad("Still");
    AddQuad("Fades").SetVisibility(Ramp(10.0 * m_Ticks, 0.0f, 1.0f));
    AddQuad("Hidden").GetUserProperties().Add("ForceInvisible", "no matter what");
    WithAnim([&](const AnimInterm& anim) {
        const auto find = [&](const char* pName) { return FindControl(anim, pName, ControlTarget_Mesh, 0, 0); };
        ASSERT_TRUE(find("Still") && find("Fades") && find("Hidden"));
        ASSERT_EQ(find("Still")->GetKeyCount(), 1);
        EXPECT_EQ(find("Still")->GetKeys()[0].value, 1.0f);
        ASSERT_EQ(find("Fades")->GetKeyCount(), 2) << "a ramp keeps its ends";
        EXPECT_EQ(find("Fades")->GetKeys()[1].value, 1.0f);
        EXPECT_EQ(find("Hidden")->GetKeys()[0].value, 0.0f);
    });
}

TEST_F(AnimSamplingTest, MaterialsGetTheTracksThatChange) {
    SetFrames(11);
    scene::AddBone(m_Scene, "Bone");
    const double end = 10.0 * m_Ticks;
    AddQuad("A", &AddMaterial("Glows", {.opacity = 0.5f, .selfIllum = Ramp(end, 0.0f, 2.0f)}));
    AddQuad("B", &AddMaterial("Vanishes", {.opacity = Ramp(end, 1.0f, 0.25f)}));
    WithAnim([&](const AnimInterm& anim) {
        const FloatStream* pGlow = FindControl(anim, "Glows", ControlTarget_Shader, 3, ControlProperty_Amount);
        ASSERT_TRUE(pGlow);
        EXPECT_EQ(pGlow->GetKeys().back().value, 1.0f) << "amounts end at 1";
        EXPECT_EQ(pGlow->GetKeyCount(), 3) << "the knee where it reaches 1 stays";
        EXPECT_FALSE(FindControl(anim, "Glows", ControlTarget_Shader, 4, ControlProperty_Amount));
        EXPECT_TRUE(FindControl(anim, "Vanishes", ControlTarget_Shader, 4, ControlProperty_Amount));
        EXPECT_FALSE(FindControl(anim, "Vanishes", ControlTarget_Shader, 3, ControlProperty_Amount));
    });
}

TEST_F(AnimSamplingTest, MapsFadeAndMove) {
    SetFrames(11);
    scene::AddBone(m_Scene, "Bone");
    const double end = 10.0 * m_Ticks;
    scene::UVSettings uv;
    uv.uOffset = Ramp(end, 0.0f, 1.0f);
    uv.vScale = Ramp(end, 2.0f, 6.0f);
    auto& bitmap = m_Scene.Make<scene::Bitmap>("Map", "Z:\\nowhere\\map.tga", uv);
    scene::StandardSettings settings;
    settings.maps[ID_DI] = {.pMap = &bitmap, .amount = Ramp(end, 0.0f, 1.0f)};
    settings.maps[ID_OP] = {.pMap = &bitmap, .amount = Ramp(end, 1.0f, 0.0f)};
    AddQuad("Quad", &AddMaterial("Water", settings));
    WithAnim([&](const AnimInterm& anim) {
        const auto last = [&](int32_t channel, int32_t property) {
            const FloatStream* pStream = FindControl(anim, "Water", ControlTarget_Shader, channel, property);
            return pStream ? pStream->GetKeys().back().value : std::nanf("");
        };
        EXPECT_EQ(last(0, ControlProperty_Amount), 1.0f);
        EXPECT_EQ(last(4, ControlProperty_Amount), 0.0f);
        EXPECT_EQ(last(0, ControlProperty_OffsetU), -1.0f);
        EXPECT_EQ(last(0, ControlProperty_ScaleV), 2.0f) << "against the scale at the start";
        EXPECT_TRUE(std::isnan(last(0, ControlProperty_OffsetV))) << "what stands still has no stream";
    });
    WithModel([](const RenderModel& model) {
        EXPECT_EQ(model.GetMeshGroup()->GetShader(0)->GetChannelMode(0), 3);
        EXPECT_EQ(model.GetMeshGroup()->GetShader(0)->GetChannelMode(4), 3);
    });
    EXPECT_THAT(m_Messages, testing::Contains("Warning : Material [Water]: Material opacity not set to zero when "
                                              "animating texture opacity - exported file may not look the same."));
    EXPECT_THAT(m_Messages,
                testing::Contains("Warning : Material [Water]: Material diffuse not set to black when animating "
                                  "texture diffuse amount - exported file may not look the same."));
}

TEST_F(AnimSamplingTest, AClipAloneSaysNothingAboutItsMaterials) {
    SetFrames(11);
    scene::AddBone(m_Scene, "Bone");
    auto& bitmap = m_Scene.Make<scene::Bitmap>("Map", "Z:\\nowhere\\map.tga", scene::UVSettings{});
    scene::StandardSettings settings;
    settings.maps[ID_OP] = {.pMap = &bitmap, .amount = Ramp(10.0 * m_Ticks, 1.0f, 0.0f)};
    AddQuad("Quad", &AddMaterial("Water", settings));
    EXPECT_EQ(Export("Run.pvx", true), 1);
    EXPECT_EQ(m_ErrorsShown, 0);
    WithStoredAnim(
        [&](const AnimInterm& anim) {
            EXPECT_TRUE(FindControl(anim, "Water", ControlTarget_Shader, 4, ControlProperty_Amount));
        },
        "Run.pvx");
}

TEST_F(AnimSamplingTest, WithoutBonesNothingIsSampled) {
    SetFrames(5);
    AddQuad("Quad");
    Export();
    WithModel([](const RenderModel& model) { EXPECT_EQ(model.GetAnimList()->GetCount(), 0u); });
}

} // namespace
